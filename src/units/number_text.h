// Numbers of description-language statements in text: "%.Ng" with N the
// smallest precision from 6 to 17 whose text reads back as what the
// statement must mean, so a printed number matches "%g" wherever "%g" is
// exact. Texts are built in ASCII on the stack; std::to_chars with a
// precision is specified to write what printf's "%.*g" writes in the "C"
// locale, and most texts are derived from the shortest decimal of the number
// without formatting and reading back at each precision.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace quantor::detail {

constexpr int kShortestPrecision = 6;  // the precision of plain "%g"
constexpr int kExactPrecision = 17;    // enough digits for every double

// A number's text and the double that the text reads back as.
struct NumberText {
    char chars[32] = {};  // room for "-1.2345678901234567e-308"
    std::size_t size = 0;
    double readBack = 0.0;

    std::string_view View() const { return {chars, size}; }
};

// A decimal number: significant digits without trailing zeros and the
// decimal exponent of the first digit.
struct Decimal {
    char digits[kExactPrecision + 1] = {};
    int count = 0;
    int exponent = 0;
    bool negative = false;
};

// The "%.Ng" texts of one finite, non-zero double. Those of precisions up to
// 15 are derived from the double's shortest decimal, which every precision
// from its digit count to 15 writes, and which rounds to the texts of
// precisions two or more below the fewest digits any text of the double
// needs; the others are formatted.
class NumberTexts {
public:
    explicit NumberTexts(double value);

    double Value() const { return value_; }
    // No text of fewer significant digits reads back as the value.
    int FewestDigits() const { return fewestDigits_; }
    // The text at `precision` (6 to 17) with its read-back.
    NumberText At(int precision) const;

private:
    double value_;
    Decimal shortest_;
    int fewestDigits_;
};

// The fewest significant digits of any text that reads back as `value`, or
// one less (finite, non-zero `value`).
int FewestDigitsReadingAs(double value);

// The text at the smallest precision from 6 (or from `fewestDigits`, when the
// caller knows that no shorter text can do) whose read-back satisfies
// `reproduces`; the 17-digit text, which reads back as the value itself, when
// none does.
template <class Reproduces>
NumberText NumberTextMatching(const NumberTexts& texts, const Reproduces& reproduces,
                              int fewestDigits = kShortestPrecision) {
    for (int precision = std::max(kShortestPrecision, fewestDigits); precision < kExactPrecision; ++precision) {
        const NumberText number = texts.At(precision);
        if (reproduces(number.readBack)) return number;
    }
    return texts.At(kExactPrecision);
}

// The shortest of the texts that read back as the value itself.
NumberText NumberTextShortest(const NumberTexts& texts);

// The 17-digit text of a finite `value`, which reads back as `value` itself.
NumberText NumberTextExact(double value);

// Appends ASCII `text` to a wide string.
inline void AppendAscii(std::wstring& out, std::string_view text) { out.append(text.begin(), text.end()); }

// Appends `value` in decimal ("%d") to a wide string.
void AppendInteger(std::wstring& out, int value);

}  // namespace quantor::detail
