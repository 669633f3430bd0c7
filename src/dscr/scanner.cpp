// The description-language scanner: line reading with comment removal, the
// two- and one-character tokens, and the state machine for numbers, names and
// strings. The character classes and the transition table are data, so that
// they can be checked line by line against the language's lexical rules.
#include "dscr/scanner.h"

#include <array>
#include <cstdint>

#include "etc/diag_log.h"

namespace {

// Character classes; the first rule that matches gives the class, and a
// character that matches none is of class kClassOther.
struct CharClassRule {
    int charClass;
    bool (*matches)(wchar_t);
};

constexpr int kClassOther = 8;
constexpr CharClassRule kCharClassRules[] = {
    {1, [](wchar_t c) { return c == L'e' || c == L'E'; }},
    {0, [](wchar_t c) { return IsDscrLetter(c) || c == L'_'; }},
    {2, [](wchar_t c) { return IsDscrDigit(c); }},
    {3, [](wchar_t c) { return c == L'+' || c == L'-'; }},
    {4, [](wchar_t c) { return c == L'.'; }},
    {5, [](wchar_t c) { return c == L'['; }},
    {6, [](wchar_t c) { return c == L']'; }},
    {7, [](wchar_t c) { return c == L'"'; }},
    {9, [](wchar_t c) { return c == L'\n'; }},
};

int CharClassByRules(wchar_t c) {
    for (const CharClassRule& rule : kCharClassRules)
        if (rule.matches(c)) return rule.charClass;
    return kClassOther;
}

// The rules' classes of the ASCII characters, looked up instead of searched.
int CharClass(wchar_t c) {
    static const std::array<int, 128> kAsciiClasses = [] {
        std::array<int, 128> classes{};
        for (size_t code = 0; code < classes.size(); ++code)
            classes[code] = CharClassByRules(static_cast<wchar_t>(code));
        return classes;
    }();
    const auto code = static_cast<uint32_t>(c);
    return code < kAsciiClasses.size() ? kAsciiClasses[code] : CharClassByRules(c);
}

// States 0 to 8 scan; a next state of kFirstFinalState or more ends the scan.
constexpr int kStateStart = 0;
constexpr int kStateQuoted = 6;
constexpr int kStateBracketed = 7;
constexpr int kFirstFinalState = 9;

// Rows: current state; columns: character class; entries: next state.
constexpr int kTransitions[9][10] = {
    // letter  e/E  digit  +/-    .    [    ]  quote other  eol
    {      8,    8,    1,   21,  21,   7,  21,    6,   21,  10},  // 0 start
    {     14,    3,    1,   14,   2,  14,  14,   14,   14,  14},  // 1 integer digits
    {     12,    3,    2,   12,  12,  12,  12,   12,   12,  12},  // 2 fraction digits
    {     18,   18,    5,    4,  18,  18,  18,   18,   18,  18},  // 3 after e/E
    {     18,   18,    5,   18,  18,  18,  18,   18,   18,  18},  // 4 after the exponent's sign
    {     11,   11,    5,   11,  11,  11,  11,   11,   11,  11},  // 5 exponent digits
    {      6,    6,    6,    6,   6,   6,   6,   16,    6,  20},  // 6 inside a quoted string
    {      7,    7,    7,    7,   7,   7,  15,    7,    7,  19},  // 7 inside a bracketed string
    {      8,    8,    8,   13,  13,  13,  13,   13,   13,  13},  // 8 inside an identifier
};

// Final states that complete a token: 10 end of line, 11 number with an
// exponent, 12 number with a point, 13 identifier, 14 integer, 15 bracketed and
// 16 quoted string. The others are scan errors: 18 malformed exponent, 19 and
// 20 bracketed and quoted string open at the end of the line, 21 a character
// that cannot start a token.
struct FinalState {
    int state;
    int tokenId;
    int advance;  // characters to step past, the closing delimiter included
};

constexpr FinalState kFinalStates[] = {
    {10, TOKID_EOL, 1},    {11, TOKID_FLTEXP, 0}, {12, TOKID_FLOAT, 0},   {13, TOKID_ID, 0},
    {14, TOKID_INT, 0},    {15, TOKID_STRBRA, 1}, {16, TOKID_STRQUOT, 1},
};

struct PairToken {
    wchar_t first;
    wchar_t second;
    int tokenId;
};

constexpr PairToken kPairTokens[] = {
    {L'-', L'>', TOKID_ARROWRIGHT},
    {L'<', L'-', TOKID_ARROWLEFT},
    {L'=', L'>', TOKID_CONVARROW},
};

struct SingleToken {
    wchar_t character;
    int tokenId;
};

constexpr SingleToken kSingleTokens[] = {
    {L'(', TOKID_BRALEFT}, {L')', TOKID_BRARGHT}, {L'*', TOKID_MULT},      {L'+', TOKID_PLUS},
    {L',', TOKID_COMMA},   {L'-', TOKID_MINUS},   {L'/', TOKID_DIV},       {L':', TOKID_COLON},
    {L';', TOKID_SEMIC},   {L'=', TOKID_ASSIGN},  {L'{', TOKID_CURLBLEFT}, {L'}', TOKID_CURLBRGHT},
};

bool IsHexPrefix(wchar_t first, wchar_t second) { return first == L'0' && (second == L'x' || second == L'X'); }

}  // namespace

bool X_New_Scanfile::SFOpen(const std::wstring& path) {
    Close();
    lastLineLength_ = 0;
    faultCount_ = 0;
    lastFault_ = X_ScanFault{};
    if (!file_.Open(path)) {
        Error_Report(kSrcScan, 393, L"X_New_Scanfile::SFOpen(\"%s\"): cannot open\n", path);
        return false;
    }
    fileName_ = file_.FullPath();
    lineNumber_ = 0;
    endOfFile_ = false;
    if (!Token_Load()) {
        ScanError_Report(L"X_New_Scanfile::SFOpen(\"%s\"): cannot get 1. token\n", path);
        Close();
        return false;
    }
    return true;
}

void X_New_Scanfile::Close() {
    file_.Close();
    lineNumber_ = -1;
    line_.clear();
    lineLength_ = -1;
    position_ = 9999;  // beyond the line, so that the next load reads one
    token_ = X_Token{};
    endOfFile_ = true;
    fileName_.clear();
}

bool X_New_Scanfile::Token_Load() {
    WhiteSpaceSkip();
    while (position_ >= lineLength_) {
        if (endOfFile_) {
            TokenStart(TOKID_EOF);
            return true;
        }
        LineRead();
        WhiteSpaceSkip();
    }
    TokenStart(TOKID_ERROR);
    if (!PairTokenScan() && !SingleTokenScan()) StateMachineScan();
    if (token_.id == TOKID_ID) {
        if (const int keywordId = KeywordTokenId(token_.text)) token_.id = keywordId;
    }
    if (token_.id == TOKID_ERROR) {
        ScanError_Report(L"X_New_Scanfile::Token_Load(), line %d: scan err\n", lineNumber_);
        return false;
    }
    return true;
}

// The current token starts at the position, with no text yet; its text
// keeps its room, so that scanning a name allocates nothing.
void X_New_Scanfile::TokenStart(int id) {
    token_.line = lineNumber_;
    token_.column = position_;
    token_.id = id;
    token_.text.clear();
}

int X_New_Scanfile::TokenGet(X_Token& token) {
    token = token_;
    if (!Token_Load()) {
        Error_Report(kSrcScan, __LINE__, L"X_New_Scanfile::TokenGet(^%s): Token_Load err\n", TokenPrintForm(token));
        token.id = TOKID_ERROR;
    }
    return token.id;
}

bool X_New_Scanfile::TokenUse(int expectedId, X_Token& token) {
    if (token_.id != expectedId) {
        Error_Report(kSrcScan, __LINE__, L"X_New_Scanfile::TokenUse(,%s): %s avail\n", TokenIdName(expectedId),
                     TokenIdName(token_.id));
        return false;
    }
    if (TokenGet(token) != TOKID_ERROR) return true;
    Error_Report(kSrcScan, __LINE__, L"X_New_Scanfile::TokenUse(,%s): error\n", TokenIdName(expectedId));
    return false;
}

std::wstring X_New_Scanfile::PositionPrefix(int line, int column) const {
    return QtrFormat(L"%s(%d,%d): ", fileName_, line < 0 ? token_.line : line, column < 0 ? token_.column : column);
}

// Reads the next physical line, cuts it at the first "//" (also inside a
// string) and removes trailing white space. At the end of the file the line
// stays empty and the end-of-file flag is set.
void X_New_Scanfile::LineRead() {
    position_ = 0;
    lineLength_ = 0;
    line_.clear();
    if (endOfFile_) return;
    if (file_.AtEnd() || !file_.ReadLine(line_)) {
        endOfFile_ = true;
        return;
    }
    ++lineNumber_;
    if (const size_t comment = line_.find(L"//"); comment != std::wstring::npos) line_.resize(comment);
    while (!line_.empty() && IsDscrSpace(line_.back())) line_.pop_back();
    lineLength_ = static_cast<int>(line_.size());
    lastLineLength_ = lineLength_;
}

void X_New_Scanfile::WhiteSpaceSkip() {
    while (position_ < lineLength_ && IsDscrSpace(line_[position_])) ++position_;
}

// The character at the position; a line feed beyond the end of the line.
wchar_t X_New_Scanfile::CharCurrent() const { return position_ < lineLength_ ? line_[position_] : L'\n'; }

// "->", "<-", "=>" and "0x" with its hexadecimal digits. A pair is only
// recognised while at least one more character follows it on the line.
bool X_New_Scanfile::PairTokenScan() {
    if (position_ >= lineLength_ - 2) return false;
    const wchar_t first = line_[position_];
    const wchar_t second = line_[position_ + 1];
    if (IsHexPrefix(first, second)) {
        uint32_t value = 0;
        int digitCount = 0;
        HexNumber_Scan(line_.c_str() + position_ + 2, value, digitCount);
        token_.id = TOKID_HEXNUM;
        token_.text = line_.substr(position_ + 2, digitCount);
        position_ += digitCount;
    } else {
        for (const PairToken& pair : kPairTokens)
            if (pair.first == first && pair.second == second) token_.id = pair.tokenId;
        if (token_.id == TOKID_ERROR) return false;
    }
    position_ += 2;
    return true;
}

bool X_New_Scanfile::SingleTokenScan() {
    for (const SingleToken& single : kSingleTokens) {
        if (single.character == line_[position_]) {
            token_.id = single.tokenId;
            ++position_;
            return true;
        }
    }
    return false;
}

// Runs the state machine from the position and sets the token's id and text.
// Inside strings a backslash makes the next character (a line feed if there
// is none) an ordinary one. Quotes and brackets around strings are not kept.
void X_New_Scanfile::StateMachineScan() {
    int state = kStateStart;
    wchar_t current = CharCurrent();
    for (;;) {
        int charClass = CharClass(current);
        if ((state == kStateQuoted || state == kStateBracketed) && current == L'\\') {
            ++position_;
            current = CharCurrent();
            charClass = kClassOther;
        }
        const int next = kTransitions[state][charClass];
        if (next >= kFirstFinalState) {
            FinalStateApply(state, next, charClass, current);
            return;
        }
        if (!(state == kStateStart && (next == kStateQuoted || next == kStateBracketed))) token_.text += current;
        ++position_;
        state = next;
        current = CharCurrent();
    }
}

// Completes the token for a final state, or reports the scan error and steps
// over the character that caused it.
void X_New_Scanfile::FinalStateApply(int state, int finalState, int charClass, wchar_t current) {
    for (const FinalState& candidate : kFinalStates) {
        if (candidate.state == finalState) {
            token_.id = candidate.tokenId;
            position_ += candidate.advance;
            return;
        }
    }
    ++position_;
    const std::wstring message =
        QtrFormat(L"X_New_Scanfile::Token_Load(), line %d scan err: stCur %d, stNxt %d, chClss %d, chr %d '%c'\n",
                  lineNumber_, state, finalState, charClass, static_cast<int>(current), current);
    ScanFault_Note(finalState, current, message);
    ScanError_Write(message);
}

// A scan error stands at the character that stopped the scan (the position
// has moved past it); a string left open stands at its opening delimiter.
void X_New_Scanfile::ScanFault_Note(int finalState, wchar_t character, const std::wstring& message) {
    const bool openString = finalState == kScanOpenBracketed || finalState == kScanOpenQuoted;
    lastFault_ = X_ScanFault{lineNumber_, openString ? token_.column : position_ - 1, finalState, character, message};
    ++faultCount_;
}

void X_New_Scanfile::ScanError_Write(const std::wstring& message) const {
    Trace_Write(L"%s %s", QtrFormat(L"%s(%d,%d): ##### scanner-error: ", fileName_, lineNumber_, position_), message);
}
