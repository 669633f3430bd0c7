// Writing statement text to a file or the trace, and the exact rendering of
// numbers and names in description-language statements.
#include "units/statement_text.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <string>

#include "etc/diag_log.h"
#include "etc/name_chars.h"

namespace quantor::detail {
namespace {

constexpr int kShortestPrecision = 6;  // the precision of plain "%g"
constexpr int kExactPrecision = 17;    // enough digits for every double

// A number's text in ASCII, as printf's "%.*g" in the "C" locale writes it:
// std::to_chars with a precision is specified to give that very text.
struct NarrowText {
    char chars[40];
    std::size_t size = 0;
};

NarrowText FormatGeneral(double value, int precision) {
    NarrowText text;
    text.size = static_cast<std::size_t>(
        std::to_chars(text.chars, text.chars + sizeof text.chars, value, std::chars_format::general, precision).ptr -
        text.chars);
    return text;
}

// The number that a text of ASCII digits, signs, '.' and 'e' reads back as.
double ReadBack(const NarrowText& text) {
    double value = 0.0;
    std::from_chars(text.chars, text.chars + text.size, value);
    return value;
}

StatementNumberText TextOf(double value, int precision) {
    const NarrowText narrow = FormatGeneral(value, precision);
    return {std::wstring(narrow.chars, narrow.chars + narrow.size), ReadBack(narrow)};
}

// How many significant digits the shortest text that reads back as `value`
// has. No text of fewer digits reads back as `value`, so no smaller
// precision needs to be tried.
int ShortestDigits(double value) {
    char chars[40];
    const char* end = std::to_chars(chars, chars + sizeof chars, value, std::chars_format::scientific).ptr;
    int digits = 0;
    for (const char* c = chars; c != end && *c != 'e'; ++c) digits += std::isdigit(static_cast<unsigned char>(*c)) ? 1 : 0;
    return digits;
}

bool NeedsEscape(wchar_t c) { return c == L'"' || c == L'\\' || c == L'/'; }

}  // namespace

void StatementWrite(QtrTextFile* file, const std::wstring& text) {
    if (file)
        file->WriteString(text);
    else
        Trace_Write(L"%s", text);
}

std::wstring StatementNumber(double value) { return StatementNumberExact(value).text; }

StatementNumberText StatementNumberExact(double value) {
    if (!std::isfinite(value)) return {QtrFormat(L"%g", value), value};
    for (int precision = std::max(kShortestPrecision, ShortestDigits(value)); precision < kExactPrecision; ++precision) {
        const NarrowText narrow = FormatGeneral(value, precision);
        if (ReadBack(narrow) == value) return {std::wstring(narrow.chars, narrow.chars + narrow.size), value};
    }
    return TextOf(value, kExactPrecision);
}

StatementNumberText StatementNumberMatching(double value, const std::function<bool(double)>& reproduces) {
    if (!std::isfinite(value)) return {QtrFormat(L"%g", value), value};
    for (int precision = kShortestPrecision; precision < kExactPrecision; ++precision) {
        const NarrowText narrow = FormatGeneral(value, precision);
        const double readBack = ReadBack(narrow);
        if (reproduces(readBack)) return {std::wstring(narrow.chars, narrow.chars + narrow.size), readBack};
    }
    return TextOf(value, kExactPrecision);
}

std::wstring StatementName(std::wstring_view name) {
    if (IsPlainIdentifier(name)) return std::wstring(name);
    std::wstring quoted = L"\"";
    for (wchar_t c : name) {
        if (NeedsEscape(c)) quoted += L'\\';
        quoted += c;
    }
    quoted += L'"';
    return quoted;
}

}  // namespace quantor::detail
