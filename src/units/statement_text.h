// Text of description-language statements as the printers of rules, units,
// categories and the administration write it: where the text goes (a file or
// the debug trace), how a number is written so that it reads back to the same
// double, and how a name is written so that it reads back as the same name.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "quantor/types.h"

namespace quantor::detail {

// Writes `text` to `file`, or to the debug trace when `file` is null.
void StatementWrite(QtrTextFile* file, const std::wstring& text);

// `value` as "%.Ng" with N the smallest precision from 6 to 17 whose text
// reads back to exactly `value`; so it matches "%g" wherever "%g" is exact.
// Infinities and NaN, which no precision reproduces, are written as "%g".
std::wstring StatementNumber(double value);

// A number's statement text and the double that the text reads back as.
struct StatementNumberText {
    std::wstring text;
    double readBack = 0.0;
};

// StatementNumber's text with the double it reads back as, which is `value`
// unless `value` is not finite.
StatementNumberText StatementNumberExact(double value);

// Like StatementNumber, but the smallest precision whose number read back
// `reproduces` what the statement must mean (say, a rule's factor after the
// reader has inverted it); the 17-digit text when no precision does.
StatementNumberText StatementNumberMatching(double value, const std::function<bool(double)>& reproduces);

// `name` as it stands when it reads back as an identifier; otherwise in
// double quotes, with '"', '\\' and '/' escaped by a backslash (a bare "//"
// would start a comment).
std::wstring StatementName(std::wstring_view name);

}  // namespace quantor::detail
