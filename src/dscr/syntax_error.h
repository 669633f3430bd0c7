// What a syntax or scan error means to a catalogue author: the token found,
// the tokens expected, and where the fault stands. A token that follows a
// line break is often not the fault: a missing ";" or "}" belongs at the end
// of the line before, so the error is placed there. The end of the file is
// placed at the end of its last line.
#pragma once

#include <string>
#include <vector>

#include "dscr/scanner.h"
#include "dscr/token.h"

// A syntax error as the parser met it.
struct X_SyntaxError {
    X_Token found;               // the token the parser could not take
    int precedingLine = -1;      // the line where the token before it ends; -1 when there is none
    int precedingEnd = 0;        // 0-based column just after that token
    int lastLine = 0;            // the file's last line and the length of its text
    int lastLineLength = 0;
    std::vector<int> expected;   // token ids the parser could have taken (TOKID_EOF: the end of the file)
};

// An explanation for the author at a 1-based line and a 0-based column.
struct X_PlacedText {
    int line = 1;
    int column = 0;
    std::wstring message;
};

X_PlacedText SyntaxError_Explain(const X_SyntaxError& error);
X_PlacedText ScanFault_Explain(const X_ScanFault& fault);
