// Writing statement text to a file or the trace, and the rendering of names
// in description-language statements so that they read back.
#include "units/statement_text.h"

#include <string>

#include "etc/diag_log.h"
#include "etc/name_chars.h"

namespace quantor::detail {
namespace {

bool NeedsEscape(wchar_t c) { return c == L'"' || c == L'\\' || c == L'/'; }

}  // namespace

void StatementWrite(QtrTextFile* file, const std::wstring& text) {
    if (file)
        file->WriteString(text);
    else
        Trace_Write(L"%s", text);
}

std::wstring StatementName(std::wstring_view name) {
    std::wstring text;
    AppendStatementName(text, name);
    return text;
}

void AppendStatementName(std::wstring& text, std::wstring_view name) {
    if (IsPlainIdentifier(name)) {
        text.append(name);
        return;
    }
    text += L'"';
    for (wchar_t c : name) {
        if (NeedsEscape(c)) text += L'\\';
        text += c;
    }
    text += L'"';
}

}  // namespace quantor::detail
