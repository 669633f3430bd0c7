// Rendering a double as "%.Ng" text in ASCII and reading the text back,
// through std::to_chars/std::from_chars (no locale, no allocation), and
// deriving most such texts from the double's shortest decimal instead.
#include "units/number_text.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

namespace quantor::detail {
namespace {

// The highest precision whose text is derived from the shortest decimal: a
// normal double lies within 2^-53 of its magnitude of that decimal, less than
// half a unit in the 15th digit, so every precision from the decimal's digit
// count to 15 rounds the double to that very decimal.
constexpr int kDerivedPrecision = 15;

// The number that a text of ASCII digits, signs, '.' and 'e' reads back as;
// 0 when it is out of range.
double ReadBack(const NumberText& text) {
    double value = 0.0;
    std::from_chars(text.chars, text.chars + text.size, value);
    return value;
}

NumberText Formatted(double value, int precision) {
    NumberText text;
    text.size = static_cast<std::size_t>(
        std::to_chars(text.chars, text.chars + sizeof text.chars, value, std::chars_format::general, precision).ptr -
        text.chars);
    text.readBack = precision == kExactPrecision ? value : ReadBack(text);
    return text;
}

// The shortest decimal of a finite, non-zero `value`, read off std::to_chars's
// shortest scientific text "-d.ddde+XX" (which has no trailing zeros).
Decimal ShortestDecimalOf(double value) {
    char chars[32];
    const char* end = std::to_chars(chars, chars + sizeof chars, value, std::chars_format::scientific).ptr;
    Decimal decimal;
    const char* c = chars;
    decimal.negative = *c == '-';
    if (decimal.negative) ++c;
    for (; c != end && *c != 'e'; ++c) {
        if (*c != '.') decimal.digits[decimal.count++] = *c;
    }
    const char* exponent = c + 1;
    if (exponent != end && *exponent == '+') ++exponent;
    std::from_chars(exponent, end, decimal.exponent);
    return decimal;
}

// The shortest scientific text has the fewest characters, which is the
// fewest digits except where the exponent changes length: a text of one
// digit more before "e+99" ties with one before "e+100".
int FewestDigitsOf(const Decimal& shortest) { return shortest.exponent == 99 ? shortest.count - 1 : shortest.count; }

// `decimal` rounded to `precision` significant digits, fewer than it has,
// half away from zero (its digits never end in an exact half here).
Decimal RoundedTo(const Decimal& decimal, int precision) {
    Decimal rounded = decimal;
    rounded.count = precision;
    if (decimal.digits[precision] >= '5') {
        int at = precision - 1;
        for (; at >= 0 && rounded.digits[at] == '9'; --at) rounded.digits[at] = '0';
        if (at < 0) {
            rounded.digits[0] = '1';
            rounded.count = 1;
            ++rounded.exponent;
            return rounded;
        }
        ++rounded.digits[at];
    }
    while (rounded.count > 1 && rounded.digits[rounded.count - 1] == '0') --rounded.count;
    return rounded;
}

// "%.<precision>g" of a decimal of at most `precision` digits: fixed notation
// for exponents from -4 to precision - 1, scientific otherwise, no trailing
// zeros.
NumberText Rendered(const Decimal& decimal, int precision) {
    NumberText text;
    char* out = text.chars;
    if (decimal.negative) *out++ = '-';
    const int exponent = decimal.exponent;
    const auto digitsFrom = [&](int first) {
        for (int i = first; i < decimal.count; ++i) *out++ = decimal.digits[i];
    };
    if (exponent >= 0 && exponent < precision) {
        for (int i = 0; i <= exponent; ++i) *out++ = i < decimal.count ? decimal.digits[i] : '0';
        if (decimal.count > exponent + 1) *out++ = '.';
        digitsFrom(exponent + 1);
    } else if (exponent < 0 && exponent >= -4) {
        *out++ = '0';
        *out++ = '.';
        for (int i = -1; i > exponent; --i) *out++ = '0';
        digitsFrom(0);
    } else {
        *out++ = decimal.digits[0];
        if (decimal.count > 1) *out++ = '.';
        digitsFrom(1);
        *out++ = 'e';
        *out++ = exponent < 0 ? '-' : '+';
        if (std::abs(exponent) < 10) *out++ = '0';
        out = std::to_chars(out, text.chars + sizeof text.chars, std::abs(exponent)).ptr;
    }
    text.size = static_cast<std::size_t>(out - text.chars);
    return text;
}

}  // namespace

NumberTexts::NumberTexts(double value) : value_(value), fewestDigits_(1) {
    if (!std::isfinite(value) || value == 0.0) return;
    shortest_ = ShortestDecimalOf(value);
    fewestDigits_ = FewestDigitsOf(shortest_);
}

NumberText NumberTexts::At(int precision) const {
    if (std::isnormal(value_) && precision <= kDerivedPrecision) {
        if (precision >= shortest_.count) {
            NumberText text = Rendered(shortest_, precision);
            text.readBack = value_;
            return text;
        }
        // No text of precision + 1 digits reads back as the value, so no
        // rounding boundary lies between the value and its shortest decimal.
        if (precision <= fewestDigits_ - 2) {
            NumberText text = Rendered(RoundedTo(shortest_, precision), precision);
            text.readBack = ReadBack(text);
            return text;
        }
    }
    // Seventeen digits are the shortest decimal itself when it has that
    // many: the nearest 17-digit decimal always reads back.
    if (std::isnormal(value_) && precision == kExactPrecision && shortest_.count == kExactPrecision &&
        shortest_.exponent != 99) {
        NumberText text = Rendered(shortest_, precision);
        text.readBack = value_;
        return text;
    }
    return Formatted(value_, precision);
}

int FewestDigitsReadingAs(double value) { return FewestDigitsOf(ShortestDecimalOf(value)); }

NumberText NumberTextShortest(const NumberTexts& texts) {
    const double value = texts.Value();
    return NumberTextMatching(texts, [value](double read) { return read == value; }, texts.FewestDigits());
}

NumberText NumberTextExact(double value) { return Formatted(value, kExactPrecision); }

void AppendInteger(std::wstring& out, int value) {
    char chars[16];
    const char* end = std::to_chars(chars, chars + sizeof chars, value).ptr;
    AppendAscii(out, std::string_view(chars, static_cast<std::size_t>(end - chars)));
}

}  // namespace quantor::detail
