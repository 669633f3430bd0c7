// The parser error report: positions a message in the description file,
// sends it to the debug trace and counts it in the current parse state.
#include "dscr/parse_error.h"

#include "dscr/pars_node.h"
#include "etc/diag_log.h"

namespace {

thread_local X_ParseState* tInstalled = nullptr;
thread_local X_ParseState tFallback;

}  // namespace

X_ParseStateScope::X_ParseStateScope(X_ParseState& state) : previous_(tInstalled) { tInstalled = &state; }

X_ParseStateScope::~X_ParseStateScope() { tInstalled = previous_; }

X_ParseState& ParseState_Current() { return tInstalled ? *tInstalled : tFallback; }

void ParseError_WriteAt(int32_t line, int32_t column, const std::wstring& message) {
    X_ParseState& state = ParseState_Current();
    Trace_Write(L"%s(%d,%d): ##### parser-error: %s", state.fileName, line, column, message);
    ++state.errorCount;
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
