// The parser error report: positions a message in the description file,
// sends it to the debug trace, counts it in the current parse state and
// records it as a finding.
#include "dscr/parse_error.h"

#include "dscr/error_explanations.h"
#include "dscr/pars_node.h"
#include "etc/diag_log.h"

namespace {

thread_local X_ParseState* tInstalled = nullptr;
thread_local X_ParseState tFallback;

}  // namespace

X_ParseStateScope::X_ParseStateScope(X_ParseState& state) : previous_(tInstalled) { tInstalled = &state; }

X_ParseStateScope::~X_ParseStateScope() { tInstalled = previous_; }

X_ParseState& ParseState_Current() { return tInstalled ? *tInstalled : tFallback; }

bool ParseError_Count(bool endsParse) {
    X_ParseState& state = ParseState_Current();
    ++state.errorCount;
    const bool admitted = state.findings.ErrorAdmit();
    return endsParse || admitted;
}

void ParseError_Trace(int32_t line, int32_t column, const std::wstring& text) {
    Trace_Write(L"%s(%d,%d): ##### parser-error: %s", ParseState_Current().fileName, line, column, text);
}

void ParseError_WriteAt(int32_t line, int32_t column, const wchar_t* format, const std::wstring& text,
                        const std::wstring& explanation) {
    X_ParseState& state = ParseState_Current();
    ParseError_Trace(line, column, text);
    if (state.findings.IsCollecting())
        state.findings.AddError(line, column, explanation.empty() ? ParseError_Explain(format) : explanation, text);
}

void ParseError_Position(const X_ParsNode* node, int32_t& line, int32_t& column) {
    const X_ParsNode* earliest = node ? node->EarliestPosition() : nullptr;
    if (earliest) {
        line = earliest->Line();
        column = earliest->Column();
        return;
    }
    const X_Token& last = ParseState_Current().lastToken;
    line = last.line;
    column = last.column;
}

void ParseError_WriteAtNode(const X_ParsNode* node, const wchar_t* format, const std::wstring& text,
                            const std::wstring& explanation) {
    int32_t line = 0;
    int32_t column = 0;
    ParseError_Position(node, line, column);
    X_ParseFindings& findings = ParseState_Current().findings;
    const X_Token& statement = findings.Statement();
    const bool inStatement = line > statement.line || (line == statement.line && column >= statement.column);
    int32_t missingLine = 0;
    int32_t missingColumn = 0;
    if (!inStatement || !findings.MissingOperand(missingLine, missingColumn)) {
        ParseError_WriteAt(line, column, format, text, explanation);
        return;
    }
    ParseError_Trace(line, column, text);
    if (findings.IsCollecting()) findings.AddError(missingLine, missingColumn, MissingOperand_Explain(), text);
}

void ParseError_ReportFinal(const X_ParsNode* node, const wchar_t* message, const std::wstring& explanation) {
    ParseError_Count(true);
    int32_t line = 0;
    int32_t column = 0;
    ParseError_Position(node, line, column);
    ParseError_WriteAt(line, column, message, ParseError_Text(message), explanation);
}
