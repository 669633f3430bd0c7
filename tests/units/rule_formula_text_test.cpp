// The printed formula of a rule: the fast search must write, byte for byte,
// the text that trying every precision of every nearby multiplier writes, for
// rules of every kind (random doubles, short decimals, their reciprocals and
// products as completion derives them, with and without addends) and for
// every rule of the shipped catalogue once completed.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "quantor/quantor.h"
#include "units/rule_formula_reference.h"
#include "units/rule_formula_text.h"

namespace {

// Whether the fast search writes for the rule what the reference writes.
testing::AssertionResult WritesAsReference(double factor, double addend) {
    std::wstring text;
    quantor::detail::AppendRuleFormulaText(text, factor, addend);
    const std::wstring expected = reference::RuleFormulaText(factor, addend);
    if (text == expected) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "factor " << factor << " addend " << addend << ": \"" << text
                                       << "\" instead of \"" << expected << "\"";
}

// A short decimal such as 0.0254, 1.8 or 4840.
double ShortDecimal(std::mt19937_64& random) {
    std::uniform_int_distribution<int> mantissa(1, 99999), exponent(-9, 9);
    return mantissa(random) * std::pow(10.0, exponent(random));
}

double RandomFactor(std::mt19937_64& random) {
    std::uniform_int_distribution<int> kind(0, 4);
    std::uniform_real_distribution<double> exponent(-30.0, 30.0);
    switch (kind(random)) {
        case 0: return std::pow(10.0, exponent(random));
        case 1: return ShortDecimal(random);
        case 2: return 1.0 / ShortDecimal(random);
        case 3: return ShortDecimal(random) * ShortDecimal(random) / ShortDecimal(random);
        default: return -ShortDecimal(random);
    }
}

double RandomAddend(std::mt19937_64& random) {
    std::uniform_int_distribution<int> kind(0, 3);
    switch (kind(random)) {
        case 0: return 0.0;
        case 1: return ShortDecimal(random) / ShortDecimal(random);
        case 2: return -ShortDecimal(random);
        default: return std::uniform_real_distribution<double>(-1e6, 1e6)(random);
    }
}

TEST(RuleFormulaText, WritesTheSameTextAsTryingEveryPrecision) {
    std::mt19937_64 random(20240611);
    for (int i = 0; i < 4000; ++i) {
        const double factor = RandomFactor(random), addend = RandomAddend(random);
        ASSERT_TRUE(WritesAsReference(factor, addend));
    }
    for (double factor : {1.0, -1.0, 1e-300, 1e300, 5e-324, 0.1, 3.0, 1.0 / 3.0, 1.8, 1.0 / 1.8, 0.0, -0.0, HUGE_VAL,
                          std::nan(""), 1e-100, 1e100, 9.999999999999999e99})
        for (double addend : {0.0, -0.0, 32.0, -32.0 / 1.8, 273.15, std::nan(""), HUGE_VAL})
            EXPECT_TRUE(WritesAsReference(factor, addend));
}

// Any finite double, subnormal and huge ones included, as a bit pattern.
double AnyFiniteDouble(std::mt19937_64& random) {
    for (;;) {
        const double value = std::bit_cast<double>(random());
        if (std::isfinite(value)) return value;
    }
}

// A short decimal moved towards the ends of the range, where products and
// reciprocals overflow or lose precision.
double ExtremeDecimal(std::mt19937_64& random) {
    std::uniform_int_distribution<int> exponent(-320, 300);
    return ShortDecimal(random) * std::pow(10.0, exponent(random));
}

TEST(RuleFormulaText, WritesTheSameTextForDoublesOfTheWholeRange) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 1500; ++i) {
        const double factor = i % 2 ? AnyFiniteDouble(random) : ExtremeDecimal(random);
        const double addend = i % 3 ? AnyFiniteDouble(random) : ExtremeDecimal(random);
        ASSERT_TRUE(WritesAsReference(factor, addend));
    }
}

TEST(RuleFormulaText, WritesEveryRuleOfTheShippedCatalogueAsBefore) {
    QtrAdminDscr admin;
    const std::string folder = QUANTOR_TEST_DATA_DIR "/unitsandcurrencies/";
    for (const char* file : {"unit_dscr.txt", "curr_dscr_edy.txt", "curr_dscr_america.txt"}) {
        const std::string path = folder + file;
        ASSERT_TRUE(admin.Import_Parse(std::wstring(path.begin(), path.end()).c_str())) << path;
    }
    std::vector<const QtrCategoryBase*> categories;
    admin.CategPtrs(categories);
    int compared = 0;
    for (const QtrCategoryBase* category : categories) {
        std::vector<const QtrUnitBase*> units;
        category->UnitPtrs(units);
        for (const QtrUnitBase* source : units)
            for (const QtrUnitBase* target : units)
                if (const QtrConvInfoBase* rule = source->ConvInfo(target)) {
                    ++compared;
                    ASSERT_TRUE(WritesAsReference(rule->Factor(), rule->Addend()))
                        << source->Name() << " -> " << target->Name();
                }
    }
    EXPECT_GT(compared, 100);
}

}  // namespace
