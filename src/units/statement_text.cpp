// Writing statement text to a file or the trace, and the exact rendering of
// numbers and names in description-language statements.
#include "units/statement_text.h"

#include <charconv>
#include <cmath>
#include <string>

#include "etc/diag_log.h"
#include "etc/name_chars.h"

namespace quantor::detail {
namespace {

constexpr int kShortestPrecision = 6;  // the precision of plain "%g"
constexpr int kExactPrecision = 17;    // enough digits for every double

// The number that a text of ASCII digits, signs, '.' and 'e' reads back as.
double ReadBack(const std::wstring& text) {
    const std::string narrow(text.begin(), text.end());
    double value = 0.0;
    std::from_chars(narrow.data(), narrow.data() + narrow.size(), value);
    return value;
}

StatementNumberText TextOf(double value, int precision) {
    StatementNumberText number{QtrFormat(L"%.*g", precision, value), 0.0};
    number.readBack = ReadBack(number.text);
    return number;
}

bool NeedsEscape(wchar_t c) { return c == L'"' || c == L'\\' || c == L'/'; }

}  // namespace

void StatementWrite(QtrTextFile* file, const std::wstring& text) {
    if (file)
        file->WriteString(text);
    else
        Trace_Write(L"%s", text);
}

std::wstring StatementNumber(double value) {
    return StatementNumberMatching(value, [value](double readBack) { return readBack == value; }).text;
}

StatementNumberText StatementNumberMatching(double value, const std::function<bool(double)>& reproduces) {
    if (!std::isfinite(value)) return {QtrFormat(L"%g", value), value};
    for (int precision = kShortestPrecision; precision < kExactPrecision; ++precision) {
        StatementNumberText number = TextOf(value, precision);
        if (reproduces(number.readBack)) return number;
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
