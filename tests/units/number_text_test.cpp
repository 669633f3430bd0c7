// Number texts derived from a double's shortest decimal must be exactly what
// printf's "%.*g" writes at every precision, and read back as that text does:
// checked on doubles of every kind, especially those next to short decimals,
// to powers of ten and to rounding boundaries, where a derivation would slip.
#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "units/number_text.h"

namespace {

using quantor::detail::NumberTexts;

std::string Printf(double value, int precision) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*g", precision, value);
    return text;
}

double Read(const std::string& text) {
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

void ExpectPrintfTexts(double value) {
    const NumberTexts texts(value);
    for (int precision = 6; precision <= 17; ++precision) {
        const std::string expected = Printf(value, precision);
        const quantor::detail::NumberText text = texts.At(precision);
        ASSERT_EQ(std::string(text.View()), expected) << Printf(value, 17) << " at precision " << precision;
        ASSERT_EQ(text.readBack, Read(expected)) << Printf(value, 17) << " at precision " << precision;
    }
}

// Short decimals, their neighbouring doubles and values with runs of nines
// or zeros, which round across a power of ten.
std::vector<double> DoublesNearShortDecimals(std::mt19937_64& random) {
    std::uniform_int_distribution<int> digits(1, 999999), exponent(-40, 40);
    const double decimal = digits(random) * std::pow(10.0, exponent(random));
    std::vector<double> values{decimal, 1.0 - std::pow(10.0, -exponent(random) / 4 - 1)};
    double above = decimal, below = decimal;
    for (int step = 0; step < 3; ++step) {
        above = std::nextafter(above, HUGE_VAL);
        below = std::nextafter(below, -HUGE_VAL);
        values.push_back(above);
        values.push_back(-below);
    }
    return values;
}

TEST(NumberTexts, WriteWhatPrintfWritesAtEveryPrecision) {
    std::mt19937_64 random(1234);
    for (int i = 0; i < 3000; ++i) {
        for (double value : DoublesNearShortDecimals(random)) ExpectPrintfTexts(value);
        const double any = std::bit_cast<double>(random());
        if (std::isfinite(any)) ExpectPrintfTexts(any);
    }
    for (double value : {1e100, 9.999999999999999e99, 1e99, 9.9999999999999997e98, 5e-324, 2.2250738585072014e-308,
                         2.2250738585072009e-308, 1.7976931348623157e308, 0.1, 0.3, 2.0 / 3.0, 999999.5, 9.5, 0.5}) {
        ExpectPrintfTexts(value);
        ExpectPrintfTexts(-value);
    }
}

}  // namespace
