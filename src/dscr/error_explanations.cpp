// The explanations of parser errors, as a table from the beginning of each
// message format to the sentence shown to the author.
#include "dscr/error_explanations.h"

#include <string_view>

namespace {

struct Explanation {
    std::wstring_view messageHead;
    const wchar_t* text;
};

constexpr const wchar_t* kRewriteFormula =
    L"This formula cannot be simplified. Write it as a unit times or divided by one number, plus or minus one "
    L"number, as in 'convert degF <- degC * 1.8 + 32'.";

constexpr Explanation kExplanations[] = {
    {L"parse error", L"The text here does not follow the description language. Check the statement against "
                     L"'unit m, km;' and 'convert km <- m / 1000;'."},
    {L"parser stack overflow", L"The text is nested too deeply to be read. Remove the extra parentheses."},
    {L"expression too deep", L"This expression is too long or nested too deeply (over 1000 levels or 10000 "
                             L"parts). Write it shorter, without runs of signs or parentheses."},
    {L"out of memory", L"There was not enough memory to read this expression. Write it shorter."},
    {L"unknown default internal unit", L"The defaultintern statement must name a unit declared before it in this "
                                       L"category. Declare the unit first or correct the name."},
    {L"unknown default surface unit", L"The defaultsurface statement must name a unit declared before it in this "
                                      L"category. Declare the unit first or correct the name."},
    {L"Conv_FmtShft(,): constant expected", L"The format clause needs two constant numbers, as in 'format 3, 0'."},
    {L"Conv_FmtShft(,): no ConvInfo-Ptr", L"A format clause belongs at the end of a convert statement."},
    {L"no constant expression", L"A constant number is needed here, such as 1000 or 2 * 3; it cannot contain a "
                                L"unit name. Replace the names by numbers."},
    {L"Conv_GetFromRight(.): ND_CONVFORM-node expected", L"The convert statement could not be read as 'target <- "
                                                         L"source'. Write it as 'convert km <- m / 1000;'."},
    {L"Conv_GetFromRight(.): left name-node expected", L"Left of '<-' there must be one unit name, the target. "
                                                       L"Write it as 'convert km <- m / 1000;'."},
    {L"Conv_GetFromRight(): error in formula", L"The formula must be the source unit times or divided by one "
                                               L"non-zero number, plus or minus one number, as in 'convert degF <- "
                                               L"degC * 1.8 + 32'. Rewrite it in that form."},
    {L"X_ParsNode::Tree_Opt:", kRewriteFormula},
    {L"Tree_ExprElim: cannot delete subexprs", L"Parts of this formula cancel each other out, so that the source "
                                               L"unit drops out of it, as with a factor of 0 or 'm - m'. Write the "
                                               L"source unit times or divided by one non-zero number, plus or "
                                               L"minus one number, as in 'convert degF <- degC * 1.8 + 32'."},
    {L"Tree_ExprElim:", kRewriteFormula},
    {L"X_ParsNode::Inv_NodeId()", kRewriteFormula},
    {L"X_ParsNode::SubExpr_Del(", kRewriteFormula},
    {L"X_ParsNode::Tree_ConstCalc", L"This expression divides by zero. Use a divisor other than zero."},
    {L"X_ParsNode::X_ParsNode(", L"A value in this expression could not be read. Write plain numbers and unit "
                                 L"names."},
};

}  // namespace

std::wstring MissingOperand_Explain() {
    return L"An operand is missing here: a sign or an operator has no number or unit beside it, as in '--3' or "
           L"'m * ;', and the value read just before would stand in for it. Write the number or unit that belongs "
           L"here, as in 'format -3, 3' or 'convert km <- m / 1000'.";
}

std::wstring ParseError_Explain(const wchar_t* format) {
    const std::wstring_view message = format ? format : L"";
    for (const Explanation& explanation : kExplanations)
        if (message.starts_with(explanation.messageHead)) return explanation.text;
    return L"This text could not be read. The library's message below says what it met.";
}
