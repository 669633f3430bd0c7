// The expression tree, the parser error report that positions its messages, and
// the simplifier, also compared with a plain version that marks no fixed points.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <regex>
#include <string>
#include <tuple>

#include "dscr/pars_node.h"
#include "dscr/parse_error.h"
#include "dscr/tree_opt.h"
#include "support/sink_capture.h"
#include "support/tree_reference.h"

namespace {

using namespace quantor::detail;

X_ParsNodePtr Leaf(TE_PNodeId id, const std::wstring& text, int line = 1, int column = 1) {
    return X_ParsNode::NewLeaf(id, X_Token{line, column, TOKID_ERROR, text});
}
X_ParsNodePtr Name(const std::wstring& name, int line = 1, int column = 1) { return Leaf(ND_NAME, name, line, column); }
X_ParsNodePtr Number(const std::wstring& text, int line = 1, int column = 1) {
    return Leaf(text.find(L'.') == std::wstring::npos ? ND_INT : ND_FLOAT, text, line, column);
}
X_ParsNodePtr Op(TE_PNodeId id, X_ParsNodePtr left, X_ParsNodePtr right = nullptr) {
    return X_ParsNode::NewOperator(id, std::move(left), std::move(right));
}

// "(x <- ((y / 1.8) - 17.77777778))", "(u- a)": constants with "%.10g".
std::wstring InfixText(const X_ParsNode* node) {
    static const std::map<int, std::wstring> kSymbols = {{ND_PLUS, L"+"}, {ND_MINUS, L"-"},    {ND_MULT, L"*"},
                                                         {ND_DIV, L"/"},  {ND_CONVFORM, L"<-"}, {ND_UNMINUS, L"u-"},
                                                         {ND_UNPLUS, L"u+"}};
    if (!node) return L"null";
    if (node->IsName()) return node->Name();
    if (node->IsConstant()) return QtrFormat(L"%.10g", node->Value());
    const std::wstring& op = kSymbols.at(node->Type());
    if (!node->Right()) return L"(" + op + L" " + InfixText(node->Left()) + L")";
    return L"(" + InfixText(node->Left()) + L" " + op + L" " + InfixText(node->Right()) + L")";
}

class TreeTest : public ::testing::Test {
protected:
    TreeTest() : scope_(state_) {
        state_.fileName = L"f.dscr";
        state_.lastToken = X_Token{9, 1, TOKID_SEMIC, L""};
    }

    X_ParseState state_;
    X_ParseStateScope scope_;
    TraceCapture trace_;
};

TEST_F(TreeTest, LeavesTakeTheirTokensAndOperatorsTheirInverses) {
    auto hex = Leaf(ND_HEXNUM, L"1F", 3, 7);
    EXPECT_EQ(std::tuple(hex->Value(), hex->Name(), hex->Column()), std::tuple(31.0, std::wstring(L"1F"), 7));
    // An operator type cannot come from a token: reported, type kept.
    EXPECT_EQ(Leaf(ND_PLUS, L"+", 2, 5)->Type(), ND_PLUS);
    const std::pair<TE_PNodeId, TE_PNodeId> inverses[] = {{ND_DIV, ND_MULT}, {ND_MINUS, ND_PLUS},
                                                          {ND_MULT, ND_DIV}, {ND_PLUS, ND_MINUS},
                                                          {ND_UNMINUS, ND_UNPLUS}, {ND_UNPLUS, ND_UNMINUS}};
    for (const auto& [type, inverse] : inverses) EXPECT_EQ(Op(type, Name(L"a"))->Inv_NodeId(), inverse);
    EXPECT_EQ(Op(ND_CONVFORM, Name(L"x", 5, 2), Name(L"y", 5, 7))->Inv_NodeId(), ND_NOTYPE);
    EXPECT_EQ(trace_.Text(), L"f.dscr(2,5): ##### parser-error: X_ParsNode::X_ParsNode(ND_PLUS,(token)): error\n"
                             L"f.dscr(5,2): ##### parser-error: X_ParsNode::Inv_NodeId(): no inverting operation "
                             L"for ND_CONVFORM\n");
}

TEST_F(TreeTest, SubExprDelKeepsTheOtherOperand) {
    const auto afterDeleting = [](X_ParsNodePtr tree, bool left) {
        tree->SubExpr_Del(left ? tree->Left() : tree->Right());
        return InfixText(tree.get());
    };
    EXPECT_EQ(afterDeleting(Op(ND_MINUS, Name(L"a"), Name(L"b")), true), L"(u- b)");
    EXPECT_EQ(afterDeleting(Op(ND_MINUS, Name(L"a"), Name(L"b")), false), L"a");
    EXPECT_EQ(afterDeleting(Op(ND_PLUS, Name(L"a"), Op(ND_MULT, Name(L"b"), Name(L"c"))), true), L"(b * c)");
    EXPECT_EQ(afterDeleting(Op(ND_UNMINUS, Name(L"a")), true), L"(u- null)");
    auto tree = Op(ND_PLUS, Name(L"a", 6, 6), Name(L"b", 6, 10));
    tree->SubExpr_Del(Name(L"a").get());
    EXPECT_EQ(InfixText(tree.get()), L"(a + b)");
    EXPECT_EQ(trace_.Text(), L"f.dscr(6,6): ##### parser-error: X_ParsNode::SubExpr_Del(.): param is no subexpr\n");
}

TEST_F(TreeTest, CopiesAreDeepAndIndependent) {
    auto source = Op(ND_PLUS, Name(L"a", 1, 2), Op(ND_MULT, Name(L"b"), Number(L"2")));
    X_ParsNode copy(*source);
    X_ParsNode assigned;
    assigned = *source;
    copy.Right()->Right()->SetFloat(7.0);
    EXPECT_EQ(InfixText(&copy), L"(a + (b * 7))");
    source->Right()->SubExpr_Del(source->Right()->Right());
    EXPECT_EQ(InfixText(&assigned), L"(a + (b * 2))");
    assigned = *assigned.Right();  // from inside its own subtree
    EXPECT_EQ(InfixText(&assigned), L"(b * 2)");
}

TEST_F(TreeTest, ParseErrorsArePlacedAndCounted) {
    ParseError_Report(L"unit %s: %d\n", L"km", 2);
    // At the earliest position in the subtree, which an operand further right may hold.
    auto formula = Op(ND_CONVFORM, Name(L"km", 3, 8), Op(ND_DIV, Name(L"m", 4, 14), Number(L"1000", 3, 18)));
    ParseError_ReportAt(formula->Right(), L"bad\n");
    ParseError_ReportAt(nullptr, L"none\n");
    EXPECT_EQ(trace_.Text(), L"f.dscr(9,1): ##### parser-error: unit km: 2\nf.dscr(3,18): ##### parser-error: bad\n"
                             L"f.dscr(9,1): ##### parser-error: none\n");
    EXPECT_EQ(state_.errorCount, 3);
}

TEST_F(TreeTest, SimplifiedShapes) {
    const std::pair<X_ParsNodePtr, std::wstring> cases[] = {
        {Op(ND_CONVFORM, Op(ND_PLUS, Op(ND_MULT, Name(L"x"), Number(L"1.8")), Number(L"32")), Name(L"y")),
         L"(x <- ((y / 1.8) - 17.77777778))"},
        {Op(ND_MULT, Number(L"-1"), Name(L"x")), L"(u- x)"},
        {Op(ND_MULT, Name(L"x"), Number(L"-1")), L"(u- x)"},
        {Op(ND_DIV, Name(L"x"), Number(L"-1.0")), L"(u- x)"},
        {Op(ND_MINUS, Name(L"a"), Name(L"a")), L"0"},
        {Op(ND_PLUS, Name(L"a"), Op(ND_UNMINUS, Name(L"a"))), L"0"},
        {Op(ND_MULT, Name(L"a"), Name(L"a")), L"1"},
        {Op(ND_MINUS, Name(L"a"), Op(ND_PLUS, Name(L"b"), Name(L"a"))), L"(u- b)"},
        {Op(ND_UNMINUS, Op(ND_UNMINUS, Name(L"a"))), L"a"},
        {Op(ND_MULT, Op(ND_MULT, Number(L"2"), Name(L"m")), Number(L"500")), L"(m * 1000)"},
    };
    for (const auto& [tree, simplified] : cases) {
        const std::wstring before = InfixText(tree.get());
        EXPECT_GE(tree->Tree_Opt(), 0) << before;
        EXPECT_EQ(InfixText(tree.get()), simplified) << before;
    }
    EXPECT_EQ(state_.errorCount, 0);
}

TEST_F(TreeTest, DivisionsByZero) {
    // The zero test is on the dividend: 0 / 5 is reported and gives 1. A constant divisor zero is left to the
    // floating-point division; a name divided by zero is reported at the divisor and gives 1.
    const std::pair<X_ParsNodePtr, std::wstring> cases[] = {{Op(ND_DIV, Number(L"0", 2, 4), Number(L"5", 2, 8)), L"1"},
                                                            {Op(ND_DIV, Number(L"5"), Number(L"0")), L"inf"},
                                                            {Op(ND_DIV, Name(L"x", 3, 1), Number(L"0", 3, 5)), L"1"}};
    for (const auto& [tree, simplified] : cases) {
        EXPECT_EQ(tree->Tree_Opt(), 1);
        EXPECT_EQ(InfixText(tree.get()), simplified);
    }
    EXPECT_EQ(trace_.Text(), L"f.dscr(2,4): ##### parser-error: X_ParsNode::Tree_ConstCalc, div by zero\n"
                             L"f.dscr(3,5): ##### parser-error: X_ParsNode::Tree_ConstCalc: div by zero!!!\n");
}

TEST_F(TreeTest, SimplifyingStopsAtTheBoundOnRounds) {
    // x <- x: the sides cannot be deleted, reported every round; depth 1 allows 3 rounds.
    auto formula = Op(ND_CONVFORM, Name(L"x", 4, 9), Name(L"x", 4, 14));
    const std::wstring cannot =
        L"f.dscr(4,9): ##### parser-error: Tree_ExprElim: cannot delete subexprs in " + formula->NodeText() + L"\n";
    EXPECT_EQ(formula->Tree_Opt(), -1);
    EXPECT_EQ(InfixText(formula.get()), L"(x <- x)");
    EXPECT_EQ(trace_.Text(), cannot + cannot + cannot +
                                 L"f.dscr(4,9): ##### parser-error: X_ParsNode::Tree_Opt: break after 0 changes and "
                                 L"3 loops\n");
}

int Pick(int n) {
    static std::mt19937 random(20240917u);
    return std::uniform_int_distribution<int>(0, n - 1)(random);
}

X_ParsNodePtr RandomTree(int depth) {
    static const std::pair<TE_PNodeId, const wchar_t*> kLeaves[] = {
        {ND_NAME, L"a"},   {ND_NAME, L"b"},   {ND_NAME, L"x"},     {ND_ABBREV, L"a"}, {ND_ABBREV, L"x"},
        {ND_HEXNUM, L"1"}, {ND_HEXNUM, L"2"}, {ND_FLTEXP, L"1e0"}, {ND_INT, L"0"},    {ND_INT, L"1"},
        {ND_INT, L"-1"},   {ND_INT, L"2"},    {ND_FLOAT, L"0.5"},  {ND_FLOAT, L"1.8"}, {ND_INT, L"32"}};
    static constexpr TE_PNodeId kOperators[] = {ND_PLUS, ND_MINUS, ND_MULT, ND_DIV, ND_UNMINUS, ND_UNPLUS};
    if (depth == 0 || Pick(3) == 0) {
        const auto& [type, text] = kLeaves[Pick(std::size(kLeaves))];
        const int line = 1 + Pick(3);
        return Leaf(type, text, line, Pick(30));
    }
    const TE_PNodeId op = kOperators[Pick(std::size(kOperators))];
    X_ParsNodePtr left = RandomTree(depth - 1);
    return Op(op, std::move(left), op == ND_UNMINUS || op == ND_UNPLUS ? nullptr : RandomTree(depth - 1));
}

TEST(TreeOptReference, MarkedFixedPointsChangeNothingObservable) {
    int treesSetAside = 0, runsStoppedAtBound = 0;
    for (int i = 0; i < 10000; ++i) {
        const int depth = i % 7;  // sometimes a formula at the root
        const X_ParsNodePtr original = depth > 0 && Pick(4) == 0
                                           ? Op(ND_CONVFORM, RandomTree(depth - 1), RandomTree(depth - 1))
                                           : RandomTree(depth);
        X_ParsNode plain(*original), fast(*original);
        // Twice each: the second run starts from the first one's result.
        for (int run = 0; run < 2; ++run) {
            std::wstring expected;
            try {
                expected = OutcomeOf(plain, PlainTreeOptBounded);
            } catch (const TooExpensive&) {
                ++treesSetAside;
                break;
            }
            const std::wstring actual = OutcomeOf(fast, [](X_ParsNode& node) { return node.Tree_Opt(); });
            ASSERT_EQ(actual, expected) << "tree " << i << " run " << run << ": " << InfixText(original.get());
            runsStoppedAtBound += expected.starts_with(L"result -1,");
        }
    }
    // Few trees are set aside, and the others reach the interesting cases.
    EXPECT_LT(treesSetAside, 200);
    EXPECT_GT(runsStoppedAtBound, 100);
}

TEST(TreeOptReference, PlainScalingFormulasAndNegatedNumbersNeedNoRun) {
    // "T <- S op c" is left as it is and "u- c" folded without a run; each
    // number that a pass does act on, a name cancelling itself and
    // hexadecimal numbers must give what the plain algorithm gives.
    const std::wstring numbers[] = {L"1000", L"0.0254", L"2",   L"1",      L"1.0", L"-1",      L"0",
                                    L"0.0",  L"-2",     L"1e-300", L"1e999", L"1.0000000000001"};
    for (const TE_PNodeId op : {ND_MULT, ND_DIV, ND_PLUS, ND_MINUS}) {
        for (const std::wstring& source : {std::wstring(L"m"), std::wstring(L"km")}) {
            std::vector<X_ParsNodePtr> constants;
            for (const std::wstring& number : numbers) constants.push_back(Number(number));
            constants.push_back(Leaf(ND_HEXNUM, L"0x10"));
            constants.push_back(Leaf(ND_HEXNUM, L"0x1"));
            for (const X_ParsNodePtr& constant : constants) {
                const X_ParsNodePtr formula =
                    Op(ND_CONVFORM, Name(L"km"), Op(op, Name(source, 1, 7), std::make_unique<X_ParsNode>(*constant)));
                X_ParsNode plain(*formula), fast(*formula);
                EXPECT_EQ(OutcomeOf(fast, [](X_ParsNode& node) { return node.Tree_Opt(); }),
                          OutcomeOf(plain, PlainTreeOptBounded))
                    << InfixText(formula.get());
            }
        }
    }
    for (const std::wstring& number : numbers) {
        const X_ParsNodePtr negated = Op(ND_UNMINUS, Number(number, 2, 9));
        X_ParsNode plain(*negated), fast(*negated);
        EXPECT_EQ(OutcomeOf(fast, [](X_ParsNode& node) { return node.Tree_Opt(); }),
                  OutcomeOf(plain, PlainTreeOptBounded))
            << number;
    }
}

}  // namespace
