// Numbers of description-language statements in text: "%.Ng" with N the
// smallest precision from 6 to 17 whose text reads back as what the
// statement must mean, so a printed number matches "%g" wherever "%g" is
// exact. Texts are built in ASCII on the stack with std::to_chars, which is
// specified to write what printf's "%.*g" writes in the "C" locale.
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

// A finite `value` as "%.<precision>g" with its read-back.
NumberText NumberTextOf(double value, int precision);

// The 17-digit text of a finite `value`, which reads back as `value` itself.
NumberText NumberTextExact(double value);

// No text of fewer significant digits than this reads back as `value`, so no
// smaller precision needs to be tried for it.
int FewestDigitsReadingAs(double value);

// The shortest text of a finite `value` that reads back as `value`.
NumberText NumberTextShortest(double value);

// The text of a finite `value` at the smallest precision from 6 (or from
// `fewestDigits`, when the caller knows that no shorter text can do) whose
// read-back satisfies `reproduces`; the 17-digit text when none does.
template <class Reproduces>
NumberText NumberTextMatching(double value, const Reproduces& reproduces, int fewestDigits = kShortestPrecision) {
    for (int precision = std::max(kShortestPrecision, fewestDigits); precision < kExactPrecision; ++precision) {
        const NumberText number = NumberTextOf(value, precision);
        if (reproduces(number.readBack)) return number;
    }
    return NumberTextExact(value);
}

// Appends ASCII `text` to a wide string.
inline void AppendAscii(std::wstring& out, std::string_view text) { out.append(text.begin(), text.end()); }

// Appends `value` in decimal ("%d") to a wide string.
void AppendInteger(std::wstring& out, int value);

}  // namespace quantor::detail
