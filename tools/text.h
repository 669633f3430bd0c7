// Text conversions at the command's edges: the library speaks wide strings,
// the terminal and files speak UTF-8; numbers are read and written in the C
// locale's form whatever the process locale says.
#pragma once

#include <string>
#include <string_view>

namespace quantor_cli {

std::string Utf8(std::wstring_view text);
std::wstring Wide(std::string_view text);

// Reads `text` as one finite decimal number and nothing else: an optional
// sign, digits with an optional point and fraction, an optional exponent.
// "1,5", "1/3", "0x10", "2.5abc", "inf" and "1e400" are refused.
bool NumberRead(std::string_view text, double& value);

// `value` for a person: at most 15 significant digits, as %.15g writes them
// ("2500", "0.9144", "5e-05", "1e+20").
std::string NumberText(double value);

// Appends NumberText(value) to `out` without a temporary string.
void NumberAppend(std::string& out, double value);

// Appends the shortest text that reads back exactly as `value`, for
// machine-readable output.
void NumberAppendExact(std::string& out, double value);

}  // namespace quantor_cli
