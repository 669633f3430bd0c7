// Number helpers: decimal reading independent of the locale, comparison to a
// number of digits, and the IEEE image that must round-trip every bit.
#include "quantor/numeric.h"

#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cstdint>
#include <limits>
#include <string>
#include <tuple>

namespace {

using Limits = std::numeric_limits<double>;

// The value read from `text`, which must be accepted.
double Scan(const wchar_t* text) {
    double value = -1.0;
    int status = -1;
    EXPECT_TRUE(FloatScan(value, status, text) && status == 0) << testing::PrintToString(std::wstring(text));
    return value;
}

TEST(FloatScan, ReadsTheLeadingDecimalNumber) {
    const std::pair<const wchar_t*, double> cases[] = {
        {L"1000", 1000.0}, {L"12.", 12.0}, {L"1.5E-3", 1.5e-3}, {L"2.e+7", 2e7}, {L".5", 0.5}, {L"-1.8", -1.8},
        {L"+3", 3.0}, {L"2.5 km", 2.5}, {L"1e+x", 1.0}, {L"3,5", 3.0}, {L"0x1p3", 0.0}, {L"1e-400", 0.0},
        {L"1e400", Limits::infinity()}, {L"4.9406564584124654e-324", Limits::denorm_min()},
    };
    for (const auto& [text, value] : cases) EXPECT_EQ(Scan(text), value) << testing::PrintToString(std::wstring(text));
    double value = 42.0;
    int status = 0;
    for (const wchar_t* text : {L"", L".", L"-", L"+.", L"e5", L" 1", L"inf", L"nan", L"km"})
        EXPECT_FALSE(FloatScan(value, status, text)) << testing::PrintToString(std::wstring(text));
    EXPECT_FALSE(FloatScan(value, status, nullptr));
}

TEST(FloatScan, IgnoresTheProcessLocale) {
    if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") == nullptr) GTEST_SKIP() << "no German locale installed";
    EXPECT_EQ(Scan(L"2.e+7"), 2e7);
    EXPECT_EQ(Scan(L"0,5"), 0.0);
    std::setlocale(LC_NUMERIC, "C");
}

TEST(IsDblEqual, ComparesToTheGivenNumberOfSignificantDigits) {
    const double inf = Limits::infinity();
    const std::tuple<double, double, int, bool> cases[] = {
        {1.0, 1.0 + 0.9e-10, 10, true}, {1.0, 1.0 + 1.1e-10, 10, false}, {1e20, 1e20 + 1e9, 10, true},
        {1e-20, 2e-20, 10, false},      {2.5, -2.5, 10, false},          {1.25, 1.3, 1, true},
        {1.25, 1.3, 2, false},          {0.0, -0.0, 10, true},           {0.0, Limits::denorm_min(), 10, false},
        {inf, inf, 10, true},           {inf, Limits::max(), 10, false}, {Limits::quiet_NaN(), 1.0, 10, false},
    };
    for (const auto& [a, b, digits, equal] : cases) EXPECT_EQ(IsDblEqual(a, b, digits), equal) << a << " " << b;
}

TEST(IeeeImage, RoundTripsEveryBitAndRejectsMalformedImages) {
    // 2.5, -0.0, the infinities, subnormals, NaNs with payloads and sign.
    for (const std::wstring image : {L"4004000000000000", L"8000000000000000", L"7FF0000000000000",
                                     L"FFF0000000000000", L"0000000000000001", L"000FFFFFFFFFFFFF",
                                     L"7FF8000000000001", L"FFF0000000000F0F", L"0123456789ABCDEF"}) {
        double value = 0.0;
        ASSERT_TRUE(Cnvrt_IEEE2Dbl((L"i:" + image + L" n:x").c_str(), value)) << testing::PrintToString(image);
        EXPECT_EQ(std::bit_cast<uint64_t>(value), std::stoull(image, nullptr, 16));
        std::wstring text;
        Cnvrt_Dbl2IEEE(value, text);
        EXPECT_EQ(text, image);
    }
    // Malformed images are rejected and leave the value.
    double value = 7.0;
    for (const wchar_t* text : {L"", L"i:", L"400400000000000", L"40040000000000000", L"400400000000000G",
                                L"4004000000000000x", L"4004000000000000\t", L" 4004000000000000",
                                L"i: 4004000000000000", L"I:4004000000000000", L"i:i:4004000000000000"})
        EXPECT_FALSE(Cnvrt_IEEE2Dbl(text, value)) << testing::PrintToString(std::wstring(text));
    EXPECT_FALSE(Cnvrt_IEEE2Dbl(nullptr, value));
    EXPECT_EQ(value, 7.0);
}

}  // namespace
