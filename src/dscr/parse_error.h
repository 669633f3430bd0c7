// The parser error report: the one way the parser, the expression tree, the
// simplifier and the semantic actions report an error in a description file.
// A report is positioned in the file, sent to the debug trace as
// "file(line,column): ##### parser-error: message", counted, and recorded as
// a finding with an explanation for the author. File name, last token, error
// count and findings belong to one parse (X_ParseState); a parse installs its
// state on its thread with X_ParseStateScope, and reports made while none is
// installed go to a per-thread fallback state. Only the first error of a
// statement is written and recorded; every error is counted.
#pragma once

#include <cstdint>
#include <string>

#include "dscr/parse_findings.h"
#include "dscr/token.h"
#include "etc/diag_log.h"
#include "etc/format.h"

class X_ParsNode;

// What the error report needs to know about the parse it belongs to.
struct X_ParseState {
    std::wstring fileName;   // printed in the position prefix
    X_Token lastToken;       // the token the scanner handed out last
    int32_t errorCount = 0;  // reports made while this state was current
    X_ParseFindings findings;
};

// Makes `state` the current parse state of this thread for the lifetime of
// the scope, and restores the previous one (possibly none) afterwards.
class X_ParseStateScope {
public:
    explicit X_ParseStateScope(X_ParseState& state);
    ~X_ParseStateScope();
    X_ParseStateScope(const X_ParseStateScope&) = delete;
    X_ParseStateScope& operator=(const X_ParseStateScope&) = delete;

private:
    X_ParseState* previous_;
};

// The installed parse state of this thread, or the thread's fallback state.
X_ParseState& ParseState_Current();

// Counts one error in the current parse state; true when it is to be
// written. An error that ends the parse is always written; any other only as
// the first error of its statement.
bool ParseError_Count(bool endsParse = false);

// Sends "file(line,column): ##### parser-error: " + text to the trace.
void ParseError_Trace(int32_t line, int32_t column, const std::wstring& text);

// Writes a counted error: the trace text, and a finding at the same place
// that explains the message of `format` (or says `explanation` when given).
void ParseError_WriteAt(int32_t line, int32_t column, const wchar_t* format, const std::wstring& text,
                        const std::wstring& explanation = {});

// The message text, composed only when a trace sink or a finding takes it.
template <class... Args>
std::wstring ParseError_Text(const wchar_t* format, const Args&... args) {
    const bool wanted = Trace_IsActive() || ParseState_Current().findings.IsCollecting();
    return wanted ? QtrFormat(format, args...) : std::wstring();
}

// Where a node-form report is placed: the earliest token of the node's
// subtree, or the last token when there is no node.
void ParseError_Position(const X_ParsNode* node, int32_t& line, int32_t& column);

// Plain form: positioned at the last token.
template <class... Args>
void ParseError_Report(const wchar_t* format, const Args&... args) {
    if (!ParseError_Count()) return;
    const X_Token& last = ParseState_Current().lastToken;
    ParseError_WriteAt(last.line, last.column, format, ParseError_Text(format, args...));
}

// Writes a node-form report: the trace line at ParseError_Position. The
// finding stands there too, with `explanation` (or the one of `format`),
// unless the node belongs to a statement that misses an operand: then the
// finding names that, at the place where the operand is missing, since it is
// what the author has to mend.
void ParseError_WriteAtNode(const X_ParsNode* node, const wchar_t* format, const std::wstring& text,
                            const std::wstring& explanation = std::wstring());

// Node form: positioned at the earliest token of `node` (may be null).
template <class... Args>
void ParseError_ReportAt(const X_ParsNode* node, const wchar_t* format, const Args&... args) {
    if (!ParseError_Count()) return;
    ParseError_WriteAtNode(node, format, ParseError_Text(format, args...));
}

// Node form with the author's explanation given by the caller.
template <class... Args>
void ParseError_ExplainAt(const X_ParsNode* node, const std::wstring& explanation, const wchar_t* format,
                          const Args&... args) {
    if (!ParseError_Count()) return;
    ParseError_WriteAtNode(node, format, ParseError_Text(format, args...), explanation);
}

// An error that ends the parse (a syntax error, a full stack, an expression
// too deep), positioned at the earliest token of `node` or the last token.
void ParseError_ReportFinal(const X_ParsNode* node, const wchar_t* message, const std::wstring& explanation = {});
