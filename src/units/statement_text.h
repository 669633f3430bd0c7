// Text of description-language statements as the printers of rules, units,
// categories and the administration write it: where the text goes (a file or
// the debug trace) and how a name is written so that it reads back as the
// same name (numbers: units/number_text.h).
#pragma once

#include <string>
#include <string_view>

#include "quantor/types.h"

namespace quantor::detail {

// Writes `text` to `file`, or to the debug trace when `file` is null.
void StatementWrite(QtrTextFile* file, const std::wstring& text);

// `name` as it stands when it reads back as an identifier; otherwise in
// double quotes, with '"', '\\' and '/' escaped by a backslash (a bare "//"
// would start a comment).
std::wstring StatementName(std::wstring_view name);

// Appends StatementName(name) to `text`.
void AppendStatementName(std::wstring& text, std::wstring_view name);

}  // namespace quantor::detail
