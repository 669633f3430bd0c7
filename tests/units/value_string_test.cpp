// Value-with-unit strings: their form, the bit-exact round trip of every
// double, what reading refuses, and reading to a unit of the defaults.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <random>

#include "quantor/admin.h"
#include "quantor/functions.h"
#include "units/defaults_test_support.h"

namespace {

bool RoundTrips(double value) {
    std::wstring text, name;
    double read = 0.0;
    return QtrAdminStd::UnitAndValueStringGen(L"unit", value, text) &&
           QtrAdminStd::UnitAndValueGetFromString(name, read, text.c_str()) && name == L"unit" &&
           std::bit_cast<uint64_t>(read) == std::bit_cast<uint64_t>(value);
}

TEST(ValueString, WritesUnitImageAndReadableValue) {
    std::wstring text;
    ASSERT_TRUE(QtrAdminStd::UnitAndValueStringGen(L"metre", 2.5, text));
    EXPECT_EQ(text, L"u:metre i:4004000000000000 n:2.5");
}

TEST(ValueString, SpecialDoublesRoundTripBitForBit) {
    using limits = std::numeric_limits<double>;
    const uint64_t specials[] = {0x0000000000000000,
                                 0x8000000000000000,  // both zeros
                                 0x7FF0000000000000,
                                 0xFFF0000000000000,  // both infinities
                                 0x7FF8000000000000,
                                 0x7FF0000000000001,
                                 0xFFFABCDEF0123456,  // NaNs with payloads
                                 0x0000000000000001,
                                 0x800FFFFFFFFFFFFF,  // smallest and largest subnormal
                                 std::bit_cast<uint64_t>(limits::min()),
                                 std::bit_cast<uint64_t>(limits::max()),
                                 std::bit_cast<uint64_t>(limits::lowest()),
                                 std::bit_cast<uint64_t>(1.0 / 3.0)};
    for (const uint64_t bits : specials) EXPECT_TRUE(RoundTrips(std::bit_cast<double>(bits))) << std::hex << bits;
}

TEST(ValueString, RandomBitPatternsRoundTrip) {
    std::mt19937_64 random(20240611);
    int failures = 0;
    for (int i = 0; i < 1'000'000; ++i) failures += !RoundTrips(std::bit_cast<double>(random()));
    EXPECT_EQ(failures, 0);
}

TEST(ValueString, UnitNamesShorterThanFourAreRefused) {
    std::wstring text = L"kept";
    EXPECT_FALSE(QtrAdminStd::UnitAndValueStringGen(L"abc", 1.0, text));
    EXPECT_FALSE(QtrAdminStd::UnitAndValueStringGen(static_cast<const wchar_t*>(nullptr), 1.0, text));
    EXPECT_FALSE(QtrAdminStd::UnitAndValueStringGen(static_cast<const QtrUnitBase*>(nullptr), 1.0, text));
    EXPECT_EQ(text, L"kept");
    std::wstring name;
    double value = 0.0;
    EXPECT_FALSE(QtrAdminStd::UnitAndValueGetFromString(name, value, L"u:abc i:3FF0000000000000 n:1"));
    EXPECT_TRUE(QtrAdminStd::UnitAndValueGetFromString(name, value, L"u:abcd i:3FF0000000000000 n:1"));
    EXPECT_EQ(name, L"abcd");
}

TEST(ValueString, ReadingRejectsMalformedStringsAndKeepsItsOutputs) {
    const wchar_t* const malformed[] = {L"u:metre n:1",                  // no image
                                        L"u: metre i:3FF0000000000000",  // a blank after "u:"
                                        L"u:metre i:3FF00000",           // a short image
                                        L"u:metre i:3FF0000000000000x",  // an image not followed by a blank
                                        L"i:3FF0000000000000",           // no unit
                                        L"i:3FF0000000000000 u:abc",     // too little after "u:"
                                        L"u:taxi:x i:3FF0000000000000",  // the first "i:" lies in the name
                                        nullptr};
    for (const wchar_t* text : malformed) {
        std::wstring name = L"kept";
        double value = 7.0;
        EXPECT_FALSE(QtrAdminStd::UnitAndValueGetFromString(name, value, text)) << (text ? text : L"(null)");
        EXPECT_EQ(name, L"kept");
        EXPECT_EQ(value, 7.0);
    }
    std::wstring name;
    double value = 0.0;
    EXPECT_TRUE(QtrAdminStd::UnitAndValueGetFromString(name, value, L"i:3FF0000000000000 u:metre n:ignored"));
    EXPECT_EQ(name, L"metre");
    EXPECT_EQ(value, 1.0);
}

TEST(ValueString, ReadingToAUnitFindsItInTheDefaults) {
    defaults_test::CatalogueScriptInstall();
    const QtrUnitBase* foot = UnitSearch(L"foot");
    ASSERT_NE(foot, nullptr);
    std::wstring text;
    ASSERT_TRUE(QtrAdminStd::UnitAndValueStringGen(foot, 3.0, text));
    EXPECT_EQ(text, L"u:foot i:4008000000000000 n:3");
    const QtrUnitBase* unit = nullptr;
    double value = 0.0;
    ASSERT_TRUE(QtrAdminStd::UnitAndValueGetFromString(unit, value, text.c_str()));
    EXPECT_EQ(unit, foot);
    EXPECT_EQ(value, 3.0);
    for (const wchar_t* unknown : {L"u:parsec i:4008000000000000", L"u:Length i:4008000000000000"}) {
        unit = nullptr;
        EXPECT_FALSE(QtrAdminStd::UnitAndValueGetFromString(unit, value, unknown));
        EXPECT_EQ(unit, nullptr);
        EXPECT_EQ(value, 3.0);
    }
}

}  // namespace
