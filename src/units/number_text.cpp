// Rendering a double as "%.Ng" text in ASCII and reading the text back,
// both through std::to_chars/std::from_chars: no locale, no allocation.
#include "units/number_text.h"

#include <charconv>

namespace quantor::detail {
namespace {

// The number that a text of ASCII digits, signs, '.' and 'e' reads back as;
// 0 when it is out of range.
double ReadBack(const NumberText& text) {
    double value = 0.0;
    std::from_chars(text.chars, text.chars + text.size, value);
    return value;
}

std::size_t WriteGeneral(char* chars, std::size_t room, double value, int precision) {
    return static_cast<std::size_t>(std::to_chars(chars, chars + room, value, std::chars_format::general, precision).ptr -
                                    chars);
}

}  // namespace

NumberText NumberTextOf(double value, int precision) {
    NumberText text;
    text.size = WriteGeneral(text.chars, sizeof text.chars, value, precision);
    text.readBack = ReadBack(text);
    return text;
}

NumberText NumberTextExact(double value) {
    NumberText text;
    text.size = WriteGeneral(text.chars, sizeof text.chars, value, kExactPrecision);
    text.readBack = value;  // seventeen significant digits tell every double apart
    return text;
}

// The shortest scientific text that std::to_chars writes has the fewest
// characters, which is the fewest digits except where the exponent changes
// length: a text of one digit more before "e+99" ties with one before
// "e+100", so there the count may be one too high.
int FewestDigitsReadingAs(double value) {
    char chars[32];
    const char* end = std::to_chars(chars, chars + sizeof chars, value, std::chars_format::scientific).ptr;
    int digits = 0;
    const char* c = chars;
    for (; c != end && *c != 'e'; ++c) digits += (*c >= '0' && *c <= '9') ? 1 : 0;
    const std::string_view exponent(c, static_cast<std::size_t>(end - c));
    return exponent == "e+99" ? digits - 1 : digits;
}

void AppendInteger(std::wstring& out, int value) {
    char chars[16];
    AppendAscii(out, std::string_view(chars, static_cast<std::size_t>(std::to_chars(chars, chars + sizeof chars, value).ptr - chars)));
}

NumberText NumberTextShortest(double value) {
    return NumberTextMatching(value, [value](double read) { return read == value; }, FewestDigitsReadingAs(value));
}

}  // namespace quantor::detail
