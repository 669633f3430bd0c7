// The scanner of the unit description language. It reads a description file
// line by line, cuts comments, and turns the text into tokens with a small
// state machine driven by a character-class table. It keeps one token of
// look-ahead: after SFOpen the first token is loaded, and every TokenGet hands
// it out and loads the next. One scanner serves one parse.
#pragma once

#include <string>

#include "dscr/token.h"
#include "etc/format.h"
#include "etc/text_reader.h"

// The final states of the scanner's state machine that are scan errors.
enum X_ScanFaultState : int {
    kScanBadExponent = 18,    // "e" not followed by digits
    kScanOpenBracketed = 19,  // bracketed string open at the end of the line
    kScanOpenQuoted = 20,     // quoted string open at the end of the line
    kScanBadStart = 21,       // a character that cannot start a token
};

// A scan error as the scanner met it: where it stands, the final state it
// led to and the scanner's own message.
struct X_ScanFault {
    int line = -1;
    int column = -1;  // 0-based
    int finalState = 0;
    wchar_t character = 0;
    std::wstring text;
};

class X_New_Scanfile {
public:
    X_New_Scanfile() { Close(); }
    ~X_New_Scanfile() { Close(); }
    X_New_Scanfile(const X_New_Scanfile&) = delete;
    X_New_Scanfile& operator=(const X_New_Scanfile&) = delete;

    // Opens the file and loads its first token; false (and closed) if the
    // file cannot be read or its first token cannot be scanned.
    bool SFOpen(const std::wstring& path);
    // Closes the file and resets every field.
    void Close();

    // Scans the next token into the current token; false on a scan error,
    // which leaves a TOKID_ERROR token and skips the offending character.
    bool Token_Load();
    // Hands out the current token and loads the next. If that load fails,
    // the handed-out token's id becomes TOKID_ERROR. Returns the handed-out id.
    int TokenGet(X_Token& token);
    // TokenGet if the current token has the expected id; true if that gave a
    // valid token. Another id is reported and nothing is consumed.
    bool TokenUse(int expectedId, X_Token& token);

    const X_Token& CurrentToken() const { return token_; }
    // The full path of the open file; empty when closed.
    const std::wstring& FileName() const { return fileName_; }
    int LineNumber() const { return lineNumber_; }
    // Where the current token ends on its line (0-based, exclusive).
    int TokenEndColumn() const { return position_; }
    // The length of the last line read, comment and trailing blanks removed.
    int LastLineLength() const { return lastLineLength_; }
    // The scan errors met since the file was last opened, and the latest of
    // them; kept when the scanner closes.
    int ScanFaultCount() const { return faultCount_; }
    const X_ScanFault& LastScanFault() const { return lastFault_; }

    // "file(line,column): "; a negative line or column stands for that of the
    // current token.
    std::wstring PositionPrefix(int line, int column) const;

private:
    void TokenStart(int id);
    void LineRead();
    void WhiteSpaceSkip();
    wchar_t CharCurrent() const;
    bool PairTokenScan();
    bool SingleTokenScan();
    void StateMachineScan();
    void FinalStateApply(int state, int finalState, int charClass, wchar_t current);

    // Composes a scanner error positioned at the current line and position
    // and hands it to the debug trace.
    template <class... Args>
    void ScanError_Report(const wchar_t* format, const Args&... args) const {
        ScanError_Write(QtrFormat(format, args...));
    }
    void ScanError_Write(const std::wstring& message) const;
    // Keeps the scan error just met as the latest fault.
    void ScanFault_Note(int finalState, wchar_t character, const std::wstring& message);

    // Close sets the values of a closed scanner.
    quantor::detail::TextReader file_;
    int lineNumber_;
    std::wstring line_;  // comment and trailing white space removed
    int lineLength_;
    int position_;  // index of the next character to scan in line_
    X_Token token_;  // the loaded look-ahead token
    bool endOfFile_;
    std::wstring fileName_;
    int lastLineLength_ = 0;
    int faultCount_ = 0;
    X_ScanFault lastFault_;
};
