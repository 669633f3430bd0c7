// Number helpers: decimal reading independent of the locale, comparison to a
// number of digits, and the IEEE image that must round-trip every bit.
#include "quantor/numeric.h"

#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace {

// Reads `text` and checks that it was accepted; answers the value.
double Scan(const wchar_t* text) {
    double value = -1.0;
    int status = -1;
    EXPECT_TRUE(FloatScan(value, status, text)) << "text: " << testing::PrintToString(std::wstring(text));
    EXPECT_EQ(status, 0);
    return value;
}

uint64_t Bits(double value) { return std::bit_cast<uint64_t>(value); }

// Switches LC_NUMERIC to a German locale for the lifetime of the object.
class GermanNumericLocale {
public:
    GermanNumericLocale() {
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE"}) {
            if (std::setlocale(LC_NUMERIC, name)) {
                active_ = true;
                return;
            }
        }
    }
    ~GermanNumericLocale() { std::setlocale(LC_NUMERIC, "C"); }
    bool active() const { return active_; }

private:
    bool active_ = false;
};

}  // namespace

TEST(FloatScan, ReadsTheNumberFormsOfTheDescriptionLanguage) {
    EXPECT_EQ(Scan(L"1000"), 1000.0);
    EXPECT_EQ(Scan(L"0.0254"), 0.0254);
    EXPECT_EQ(Scan(L"12."), 12.0);
    EXPECT_EQ(Scan(L"1e5"), 1e5);
    EXPECT_EQ(Scan(L"1.5E-3"), 1.5e-3);
    EXPECT_EQ(Scan(L"2.e+7"), 2e7);
    EXPECT_EQ(Scan(L".5"), 0.5);
    EXPECT_EQ(Scan(L"-1.8"), -1.8);
    EXPECT_EQ(Scan(L"+3"), 3.0);
}

TEST(FloatScan, StopsAtTheFirstCharacterThatEndsTheNumber) {
    EXPECT_EQ(Scan(L"2.5 km"), 2.5);
    EXPECT_EQ(Scan(L"1e+x"), 1.0);
    EXPECT_EQ(Scan(L"7e"), 7.0);
    EXPECT_EQ(Scan(L"3,5"), 3.0);
    // The C library's extra forms are not decimal numbers.
    EXPECT_EQ(Scan(L"0x1p3"), 0.0);
}

TEST(FloatScan, OutOfRangeValuesSaturateOrUnderflow) {
    EXPECT_EQ(Scan(L"1e400"), std::numeric_limits<double>::infinity());
    EXPECT_EQ(Scan(L"-1e400"), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(Scan(L"4.9406564584124654e-324"), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(Scan(L"1e-310"), 1e-310);
    EXPECT_EQ(Bits(Scan(L"1e-400")), Bits(0.0));
    EXPECT_EQ(Scan(L"1.7976931348623157e308"), std::numeric_limits<double>::max());
}

TEST(FloatScan, RejectsTextWithoutANumber) {
    for (const wchar_t* text : {L"", L".", L"-", L"+.", L"e5", L" 1", L"inf", L"nan", L"km"}) {
        double value = 42.0;
        int status = 0;
        EXPECT_FALSE(FloatScan(value, status, text)) << testing::PrintToString(std::wstring(text));
        EXPECT_NE(status, 0);
        EXPECT_EQ(value, 0.0);
    }
    double value = 42.0;
    int status = 0;
    EXPECT_FALSE(FloatScan(value, status, nullptr));
}

TEST(FloatScan, IgnoresTheProcessLocale) {
    GermanNumericLocale german;
    if (!german.active()) GTEST_SKIP() << "no German locale installed";
    EXPECT_EQ(Scan(L"0.5"), 0.5);
    EXPECT_EQ(Scan(L"2.e+7"), 2e7);
    EXPECT_EQ(Scan(L"0,5"), 0.0);
}

TEST(IsDblEqual, ComparesToTheGivenNumberOfSignificantDigits) {
    EXPECT_TRUE(IsDblEqual(1.0, 1.0 + 1e-11, 10));
    EXPECT_TRUE(IsDblEqual(1.0, 1.0 + 0.9e-10, 10));
    EXPECT_FALSE(IsDblEqual(1.0, 1.0 + 1.1e-10, 10));
    EXPECT_TRUE(IsDblEqual(1e20, 1e20 + 1e9, 10));
    EXPECT_FALSE(IsDblEqual(1e-20, 2e-20, 10));
    EXPECT_TRUE(IsDblEqual(-2.5, -2.5000000000001, 10));
    EXPECT_FALSE(IsDblEqual(2.5, -2.5, 10));
    EXPECT_TRUE(IsDblEqual(1.25, 1.3, 1));
    EXPECT_FALSE(IsDblEqual(1.25, 1.3, 2));
}

TEST(IsDblEqual, ZerosInfinitiesAndNaNs) {
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(IsDblEqual(0.0, -0.0, 10));
    EXPECT_FALSE(IsDblEqual(0.0, std::numeric_limits<double>::denorm_min(), 10));
    EXPECT_TRUE(IsDblEqual(inf, inf, 10));
    EXPECT_FALSE(IsDblEqual(inf, -inf, 10));
    EXPECT_FALSE(IsDblEqual(inf, 1e308, 10));
    EXPECT_FALSE(IsDblEqual(nan, nan, 10));
    EXPECT_FALSE(IsDblEqual(nan, 1.0, 10));
}

TEST(IeeeImage, IsSixteenUpperCaseHexDigitsOfTheBitPattern) {
    std::wstring text = L"previous";
    Cnvrt_Dbl2IEEE(2.5, text);
    EXPECT_EQ(text, L"4004000000000000");
    Cnvrt_Dbl2IEEE(-0.0, text);
    EXPECT_EQ(text, L"8000000000000000");
    Cnvrt_Dbl2IEEE(std::bit_cast<double>(uint64_t{0x0123456789ABCDEF}), text);
    EXPECT_EQ(text, L"0123456789ABCDEF");
}

TEST(IeeeImage, RoundTripsEveryBit) {
    const double samples[] = {
        0.0,
        -0.0,
        1.0,
        -2.5,
        0.1,
        std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::max(),
        std::numeric_limits<double>::lowest(),
        std::numeric_limits<double>::min(),
        std::numeric_limits<double>::denorm_min(),
        -std::numeric_limits<double>::denorm_min(),
        std::bit_cast<double>(uint64_t{0x000FFFFFFFFFFFFF}),  // largest subnormal
        std::bit_cast<double>(uint64_t{0x7FF8000000000001}),  // quiet NaN with payload
        std::bit_cast<double>(uint64_t{0xFFF0000000000F0F}),  // signalling NaN with sign and payload
    };
    for (const double sample : samples) {
        std::wstring text;
        Cnvrt_Dbl2IEEE(sample, text);
        double back = 0.0;
        ASSERT_TRUE(Cnvrt_IEEE2Dbl(text.c_str(), back)) << testing::PrintToString(text);
        EXPECT_EQ(Bits(back), Bits(sample)) << testing::PrintToString(text);
        ASSERT_TRUE(Cnvrt_IEEE2Dbl((L"i:" + text + L" n:x").c_str(), back));
        EXPECT_EQ(Bits(back), Bits(sample));
    }
}

TEST(IeeeImage, ReadingAcceptsLowerCaseAndAMarker) {
    double value = 0.0;
    EXPECT_TRUE(Cnvrt_IEEE2Dbl(L"400c000000000000", value));
    EXPECT_EQ(value, 3.5);
    EXPECT_TRUE(Cnvrt_IEEE2Dbl(L"i:4004000000000000 n:2.5", value));
    EXPECT_EQ(value, 2.5);
}

TEST(IeeeImage, MalformedImagesAreRejectedAndLeaveTheValue) {
    const wchar_t* malformed[] = {
        L"",
        L"i:",
        L"400400000000000",     // 15 digits
        L"40040000000000000",   // 17 digits
        L"400400000000000G",    // not a hex digit
        L"4004000000000000x",   // trailing non-blank
        L"4004000000000000\t",  // only a blank ends the image
        L" 4004000000000000",   // leading blank
        L"i: 4004000000000000",
        L"I:4004000000000000",
        L"0x4004000000000000",
        L"i:i:4004000000000000",
    };
    for (const wchar_t* text : malformed) {
        double value = 7.0;
        EXPECT_FALSE(Cnvrt_IEEE2Dbl(text, value)) << testing::PrintToString(std::wstring(text));
        EXPECT_EQ(value, 7.0);
    }
    double value = 7.0;
    EXPECT_FALSE(Cnvrt_IEEE2Dbl(nullptr, value));
    EXPECT_EQ(value, 7.0);
}
