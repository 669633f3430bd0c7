// Printable names of the token ids and the one-line print form of a token,
// used in the scanner's and the parser's messages.
#include "dscr/token.h"

#include <iterator>

#include "etc/format.h"

namespace {

// Indexed by id - TOKID_ERROR, in the order of the ids.
constexpr const wchar_t* kTokenIdNames[] = {
    L"TOKID_ERROR",        L"TOKID_EOF",          L"TOKID_EOL",       L"TOKID_ARROWLEFT", L"TOKID_ARROWRIGHT",
    L"TOKID_ASSIGN",       L"TOKID_BRALEFT",      L"TOKID_BRARGHT",   L"TOKID_COLON",     L"TOKID_COMMA",
    L"TOKID_CONVARROW",    L"TOKID_CURLBLEFT",    L"TOKID_CURLBRGHT", L"TOKID_DIV",       L"TOKID_FLOAT",
    L"TOKID_FLTEXP",       L"TOKID_HEXNUM",       L"TOKID_ID",        L"TOKID_INT",       L"TOKID_KW_CATEG",
    L"TOKID_KW_CONV",      L"TOKID_KW_DFLTINTRN", L"TOKID_KW_DFLTSURFC", L"TOKID_KW_FORMAT", L"TOKID_KW_UNIT",
    L"TOKID_MINUS",        L"TOKID_MULT",         L"TOKID_PLUS",      L"TOKID_SEMIC",     L"TOKID_STRBRA",
    L"TOKID_STRQUOT",
};
static_assert(std::size(kTokenIdNames) == TOKID_STRQUOT - TOKID_ERROR + 1);

}  // namespace

std::wstring TokenIdName(int id) {
    if (id < TOKID_ERROR || id > TOKID_STRQUOT) return QtrFormat(L"TE_TokenId %d ??", id);
    return kTokenIdNames[id - TOKID_ERROR];
}

std::wstring TokenPrintForm(const X_Token& token) {
    // Widened so that a column at the top of the int range cannot overflow.
    const long long column = static_cast<long long>(token.column) + 1;
    if (token.text.empty()) return QtrFormat(L"%d/%d: %s", token.line, column, TokenIdName(token.id));
    return QtrFormat(L"%d/%d: %s <%s>", token.line, column, TokenIdName(token.id), token.text);
}
