// The free functions and the value-with-unit strings over the test catalogue:
// lookups, conversions, the exact round trip of every double, what is refused.
#include "quantor/functions.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <random>

#include "quantor/admin.h"

namespace {

// Points the defaults, built on first use, at the test catalogue (m, km, foot, s, min).
class Functions : public ::testing::Test {
protected:
    void SetUp() override {
        setenv("QUANTOR_UNITS_DIR", QUANTOR_TEST_DATA_DIR "/../tests/data/defaults", 1);
        unsetenv("QUANTOR_CURRENCY_MODE");
    }
};

bool RoundTrips(double value) {
    std::wstring text, name;
    double read = 0.0;
    return QtrAdminStd::UnitAndValueStringGen(L"unit", value, text) &&
           QtrAdminStd::UnitAndValueGetFromString(name, read, text.c_str()) && name == L"unit" &&
           std::bit_cast<uint64_t>(read) == std::bit_cast<uint64_t>(value);
}

TEST_F(Functions, FindByExactNameAndDefaultUnitsAndValueStringsOfUnits) {
    ASSERT_NE(UnitSearch(L"km"), nullptr);
    EXPECT_EQ(UnitSearch(L"km")->Category(), CategorySearch(L"Length"));
    EXPECT_EQ(DefaultSurfaceUnitFromUnit(L"foot"), UnitSearch(L"km"));
    for (const wchar_t* noUnit : {L"Length", L"parsec", static_cast<const wchar_t*>(nullptr)})
        EXPECT_EQ(DefaultInternUnitNameFromUnit(noUnit), L"");
    const QtrUnitBase *foot = UnitSearch(L"foot"), *unit = nullptr;
    std::wstring text;
    double value = 0.0;
    ASSERT_TRUE(QtrAdminStd::UnitAndValueStringGen(foot, 3.0, text));
    ASSERT_TRUE(QtrAdminStd::UnitAndValueGetFromString(unit, value, text.c_str()));
    EXPECT_EQ(std::tie(unit, value), std::make_tuple(foot, 3.0));
    EXPECT_FALSE(QtrAdminStd::UnitAndValueGetFromString(unit, value, L"u:Length i:3FF0000000000000"));
}

// A category as the source stands for its default internal unit; the target
// is looked for only in the source's category.
TEST_F(Functions, ConvertWithinTheSourceCategory) {
    double result = 0.0;
    EXPECT_TRUE(UnitConvert(result, L"m", 2.5, L"km"));
    EXPECT_DOUBLE_EQ(result, 2500.0);
    EXPECT_TRUE(UnitConvert(result, L"km", 2500.0, L"Length"));
    EXPECT_DOUBLE_EQ(result, 2.5);
    EXPECT_TRUE(UnitConvert(result, UnitSearch(L"foot"), 0.3048, L"Length"));
    EXPECT_DOUBLE_EQ(result, 1.0);
    result = -1.0;
    const std::pair<const wchar_t*, const wchar_t*> refused[] = {
        {L"s", L"km"}, {L"Length", L"km"}, {L"m", L"parsec"}, {nullptr, L"km"}, {L"m", nullptr}};
    for (const auto& [target, source] : refused) EXPECT_FALSE(UnitConvert(result, target, 1.0, source));
    EXPECT_FALSE(UnitConvert(result, UnitSearch(L"m"), 1.0, L"min"));
    EXPECT_FALSE(UnitConvert(result, static_cast<const QtrUnitBase*>(nullptr), 1.0, L"km"));
    EXPECT_EQ(result, -1.0);
}

TEST(ValueString, EveryDoubleRoundTripsBitForBit) {
    std::wstring text;
    ASSERT_TRUE(QtrAdminStd::UnitAndValueStringGen(L"metre", 2.5, text));
    EXPECT_EQ(text, L"u:metre i:4004000000000000 n:2.5");
    using limits = std::numeric_limits<double>;
    for (const double special : {0.0, -0.0, limits::infinity(), -limits::infinity(), limits::denorm_min(),
                                 -std::bit_cast<double>(0x000FFFFFFFFFFFFFull), limits::min(), limits::max(),
                                 std::bit_cast<double>(0x7FF0000000000001ull),  // NaN payloads
                                 std::bit_cast<double>(0xFFFABCDEF0123456ull)})
        EXPECT_TRUE(RoundTrips(special)) << std::hexfloat << special;
    std::mt19937_64 random(20240611);
    int failures = 0;
    for (int i = 0; i < 1'000'000; ++i) failures += !RoundTrips(std::bit_cast<double>(random()));
    EXPECT_EQ(failures, 0);
}

TEST(ValueString, NamesShorterThanFourAndMalformedStringsAreRefused) {
    std::wstring text = L"kept";
    EXPECT_FALSE(QtrAdminStd::UnitAndValueStringGen(L"abc", 1.0, text));
    EXPECT_FALSE(QtrAdminStd::UnitAndValueStringGen(static_cast<const QtrUnitBase*>(nullptr), 1.0, text));
    EXPECT_EQ(text, L"kept");
    for (const wchar_t* malformed : {L"u:abc i:3FF0000000000000",     // a name shorter than four
                                     L"u:metre n:1",                  // no image
                                     L"u: metre i:3FF0000000000000",  // a blank after "u:"
                                     L"u:taxi:x i:3FF0000000000000",  // the first "i:" lies in the name
                                     static_cast<const wchar_t*>(nullptr)}) {
        std::wstring name = L"kept";
        double value = 7.0;
        EXPECT_FALSE(QtrAdminStd::UnitAndValueGetFromString(name, value, malformed)) << malformed;
        EXPECT_EQ(std::tie(name, value), std::make_tuple(std::wstring(L"kept"), 7.0));
    }
    std::wstring name;
    double value = 0.0;
    EXPECT_TRUE(QtrAdminStd::UnitAndValueGetFromString(name, value, L"i:3FF0000000000000 u:abcd n:ignored"));
    EXPECT_EQ(std::tie(name, value), std::make_tuple(std::wstring(L"abcd"), 1.0));
}

}  // namespace
