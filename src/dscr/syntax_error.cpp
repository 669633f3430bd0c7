// Explanations of syntax and scan errors: token descriptions in the author's
// words, the list of what was expected, and the place of the fault.
#include "dscr/syntax_error.h"

#include <algorithm>

#include "etc/format.h"

namespace {

// Indexed by id - TOKID_ERROR, in the order of the ids.
constexpr const wchar_t* kTokenDescriptions[] = {
    L"a character that cannot be read", L"the end of the file", L"a line end", L"'<-'", L"'->'", L"'='", L"'('",
    L"')'", L"':'", L"','", L"'=>'", L"'{'", L"'}'", L"'/'", L"a number", L"a number", L"a number", L"a name",
    L"a number", L"'category'", L"'convert'", L"'defaultintern'", L"'defaultsurface'", L"'format'", L"'unit'",
    L"'-'", L"'*'", L"'+'", L"';'", L"a bracketed text", L"a quoted name",
};

std::wstring IdDescription(int id) {
    if (id < TOKID_ERROR || id > TOKID_STRQUOT) return L"an unknown token";
    return kTokenDescriptions[id - TOKID_ERROR];
}

// The found token with its own text where it has one.
std::wstring FoundDescription(const X_Token& token) {
    switch (token.id) {
        case TOKID_ID: return L"the name '" + token.text + L"'";
        case TOKID_STRQUOT: return L"the quoted name \"" + token.text + L"\"";
        case TOKID_STRBRA: return L"the bracketed text [" + token.text + L"] (names are quoted with \")";
        case TOKID_INT:
        case TOKID_FLOAT:
        case TOKID_FLTEXP: return L"the number " + token.text;
        case TOKID_HEXNUM: return L"the number 0x" + token.text;
        default: return IdDescription(token.id);
    }
}

// "a", "a or b", "a, b or c"; at most five, then "or another".
std::wstring ExpectedList(const std::vector<int>& ids) {
    std::vector<std::wstring> names;
    for (int id : ids) {
        std::wstring name = IdDescription(id);
        if (std::ranges::find(names, name) == names.end()) names.push_back(std::move(name));
    }
    constexpr size_t kShown = 5;
    const bool more = names.size() > kShown;
    if (more) names.resize(kShown);
    std::wstring list;
    for (size_t i = 0; i < names.size(); ++i) {
        if (i > 0) list += (i + 1 == names.size() && !more) ? L" or " : L", ";
        list += names[i];
    }
    return more ? list + L" or another" : list;
}

bool IsEndOfFile(const X_Token& token) { return token.id == TOKID_EOF; }

}  // namespace

X_PlacedText SyntaxError_Explain(const X_SyntaxError& error) {
    const std::wstring expected = error.expected.empty() ? L"more text" : ExpectedList(error.expected);
    if (IsEndOfFile(error.found) && error.precedingLine < 0)
        return {1, 0, L"Unexpected end of file: the file holds no category. A description file needs at least one "
                      L"block such as 'category Length { unit m; }'."};
    if (IsEndOfFile(error.found))
        return {std::max(error.lastLine, 1), error.lastLineLength,
                L"Unexpected end of file; expected " + expected + L". Complete the last statement or block."};
    const std::wstring found = FoundDescription(error.found);
    if (error.precedingLine >= 1 && error.precedingLine < error.found.line)
        return {error.precedingLine, error.precedingEnd,
                QtrFormat(L"Expected %s at the end of this line, but the next line begins with %s (line %d).",
                          expected, found, error.found.line)};
    return {error.found.line, error.found.column, L"Found " + found + L" where " + expected + L" was expected."};
}

X_PlacedText ScanFault_Explain(const X_ScanFault& fault) {
    std::wstring message;
    switch (fault.finalState) {
        case kScanBadExponent:
            message = L"A number's exponent needs digits after 'e', as in 1.5e-3.";
            break;
        case kScanOpenBracketed:
            message = L"This bracketed text is not closed with ']' on its line (a '//' inside it starts a comment).";
            break;
        case kScanOpenQuoted:
            message = L"This quoted name is not closed with '\"' on its line (a '//' inside it starts a comment).";
            break;
        default:
            message = QtrFormat(L"The character '%c' cannot start a word, number or sign here. Remove it, or quote "
                                L"a name that contains it.",
                                fault.character);
            break;
    }
    return {fault.line, fault.column, message};
}
