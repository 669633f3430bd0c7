// Number helpers shared by the description language and the value strings:
// reading a decimal number whatever the host's locale, comparing doubles to a
// number of significant digits, and writing and reading the exact image of a
// double's IEEE 754 bits as sixteen hexadecimal digits.
#include "quantor/numeric.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "etc/classic_locale.h"

namespace {

constexpr int kImageDigits = 16;
constexpr wchar_t kUpperHexDigits[] = L"0123456789ABCDEF";

bool IsDecimalDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

size_t DigitRunLength(const wchar_t* text) {
    size_t n = 0;
    while (IsDecimalDigit(text[n])) ++n;
    return n;
}

// Length of the exponent part ("e", optional sign, digits) at `text`, or 0
// when there is no complete exponent there.
size_t ExponentLength(const wchar_t* text) {
    if (text[0] != L'e' && text[0] != L'E') return 0;
    const size_t signLength = (text[1] == L'+' || text[1] == L'-') ? 1 : 0;
    const size_t digits = DigitRunLength(text + 1 + signLength);
    return digits == 0 ? 0 : 1 + signLength + digits;
}

// Length of the longest decimal number at the start of `text`: an optional
// sign, digits with an optional point and fraction (at least one digit in
// all), and an optional exponent. 0 when no number starts there.
size_t DecimalNumberLength(const wchar_t* text) {
    size_t n = (text[0] == L'+' || text[0] == L'-') ? 1 : 0;
    const size_t integerDigits = DigitRunLength(text + n);
    n += integerDigits;
    size_t fractionDigits = 0;
    if (text[n] == L'.') {
        fractionDigits = DigitRunLength(text + n + 1);
        n += 1 + fractionDigits;
    }
    if (integerDigits + fractionDigits == 0) return 0;
    return n + ExponentLength(text + n);
}

int HexDigitValue(wchar_t c) {
    if (c >= L'0' && c <= L'9') return c - L'0';
    if (c >= L'A' && c <= L'F') return c - L'A' + 10;
    if (c >= L'a' && c <= L'f') return c - L'a' + 10;
    return -1;
}

}  // namespace

// The number is checked here and converted by strtod_l in the "C" locale, so
// neither a host's decimal comma nor the C library's extra forms (hexadecimal
// floats, "inf", "nan") are read. Out-of-range values become an infinity, a
// subnormal or zero. On failure the value is 0.
bool FloatScan(double& value, int& status, const wchar_t* text, wchar_t /*separator*/) {
    value = 0.0;
    status = 1;
    const size_t length = text ? DecimalNumberLength(text) : 0;
    if (length == 0) return false;
    const std::string narrow(text, text + length);
    value = strtod_l(narrow.c_str(), nullptr, quantor::detail::ClassicLocale());
    status = 0;
    return true;
}

// Infinities only equal themselves: the relative tolerance would otherwise
// make an infinity equal to every finite number.
namespace {

// 10^-digits; the common precisions come from a table made once with the
// same std::pow, since the simplifier compares values in its inner loops.
double NegativePowerOfTen(int digits) {
    static const auto kTable = [] {
        std::array<double, 18> table{};
        for (int i = 0; i < static_cast<int>(table.size()); ++i) table[i] = std::pow(10.0, -i);
        return table;
    }();
    return digits >= 0 && digits < static_cast<int>(kTable.size()) ? kTable[digits] : std::pow(10.0, -digits);
}

}  // namespace

bool IsDblEqual(double a, double b, int digits) {
    if (a == b) return true;
    if (!std::isfinite(a) || !std::isfinite(b)) return false;
    const double tolerance = NegativePowerOfTen(digits) * std::fmax(std::fabs(a), std::fabs(b));
    return std::fabs(a - b) <= tolerance;
}

void Cnvrt_Dbl2IEEE(double value, std::wstring& text) {
    uint64_t bits = std::bit_cast<uint64_t>(value);
    std::wstring image(kImageDigits, L'0');
    for (int i = kImageDigits - 1; i >= 0; --i, bits >>= 4) image[i] = kUpperHexDigits[bits & 0xF];
    text = std::move(image);
}

bool Cnvrt_IEEE2Dbl(const wchar_t* text, double& value) {
    if (!text) return false;
    if (text[0] == L'i' && text[1] == L':') text += 2;
    uint64_t bits = 0;
    for (int i = 0; i < kImageDigits; ++i) {
        const int digit = HexDigitValue(text[i]);
        if (digit < 0) return false;
        bits = (bits << 4) | static_cast<uint64_t>(digit);
    }
    const wchar_t next = text[kImageDigits];
    if (next != L'\0' && next != L' ') return false;
    value = std::bit_cast<double>(bits);
    return true;
}
