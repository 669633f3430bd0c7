// The free functions over the defaults of the test catalogue: lookups,
// default units, both conversions, translation and the name checks; what
// they answer without defaults; and many threads asking at once.
#include "quantor/functions.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "quantor/admin.h"
#include "quantor/unit.h"
#include "units/defaults_test_support.h"

namespace {

class Functions : public ::testing::Test {
protected:
    void SetUp() override { defaults_test::CatalogueScriptInstall(); }
};

TEST_F(Functions, FindCategoriesAndUnitsByExactName) {
    const QtrCategoryBase* length = CategorySearch(L"Length");
    ASSERT_NE(length, nullptr);
    EXPECT_EQ(length->Name(), L"Length");
    ASSERT_NE(UnitSearch(L"km"), nullptr);
    EXPECT_EQ(UnitSearch(L"km")->Category(), length);
    EXPECT_EQ(CategorySearch(L"km"), nullptr);
    EXPECT_EQ(UnitSearch(L"Length"), nullptr);
    EXPECT_EQ(CategorySearch(L"length"), nullptr);
    EXPECT_EQ(CategorySearch(nullptr), nullptr);
    EXPECT_EQ(UnitSearch(nullptr), nullptr);
}

TEST_F(Functions, DefaultUnitsByCategoryOrByUnit) {
    EXPECT_EQ(DefaultInternUnitGet(L"Length"), UnitSearch(L"m"));
    EXPECT_EQ(DefaultSurfaceUnitGet(L"Length"), UnitSearch(L"km"));
    EXPECT_EQ(DefaultInternUnitFromUnit(L"foot"), UnitSearch(L"m"));
    EXPECT_EQ(DefaultSurfaceUnitFromUnit(L"foot"), UnitSearch(L"km"));
    EXPECT_EQ(DefaultInternUnitNameFromUnit(L"min"), L"s");
    EXPECT_EQ(DefaultSurfaceUnitNameFromUnit(L"CHF"), L"EUR");
    EXPECT_EQ(DefaultInternUnitGet(L"km"), nullptr);
    EXPECT_EQ(DefaultSurfaceUnitGet(nullptr), nullptr);
    for (const wchar_t* noUnit : {L"Length", L"parsec", static_cast<const wchar_t*>(nullptr)}) {
        EXPECT_EQ(DefaultInternUnitFromUnit(noUnit), nullptr);
        EXPECT_EQ(DefaultSurfaceUnitFromUnit(noUnit), nullptr);
        EXPECT_EQ(DefaultInternUnitNameFromUnit(noUnit), L"");
        EXPECT_EQ(DefaultSurfaceUnitNameFromUnit(noUnit), L"");
    }
}

TEST_F(Functions, ConvertBetweenNamedUnitsOfOneCategory) {
    double result = 0.0;
    EXPECT_TRUE(UnitConvert(result, L"m", 2.5, L"km"));
    EXPECT_DOUBLE_EQ(result, 2500.0);
    EXPECT_TRUE(UnitConvert(result, L"km", 2500.0, L"Length"));
    EXPECT_DOUBLE_EQ(result, 2.5);
    EXPECT_TRUE(UnitConvert(result, L"s", 2.0, L"min"));
    EXPECT_DOUBLE_EQ(result, 120.0);
    result = -1.0;
    const std::pair<const wchar_t*, const wchar_t*> refused[] = {
        {L"s", L"km"}, {L"Length", L"km"}, {L"m", L"parsec"}, {nullptr, L"km"}, {L"m", nullptr}};
    for (const auto& [target, source] : refused) EXPECT_FALSE(UnitConvert(result, target, 1.0, source));
    EXPECT_EQ(result, -1.0);
}

TEST_F(Functions, ConvertToAGivenUnit) {
    const QtrUnitBase* metre = UnitSearch(L"m");
    double result = 0.0;
    EXPECT_TRUE(UnitConvert(result, metre, 2.5, L"km"));
    EXPECT_DOUBLE_EQ(result, 2500.0);
    EXPECT_TRUE(UnitConvert(result, UnitSearch(L"foot"), 0.3048, L"Length"));
    EXPECT_DOUBLE_EQ(result, 1.0);
    result = -1.0;
    EXPECT_FALSE(UnitConvert(result, metre, 1.0, L"min"));
    EXPECT_FALSE(UnitConvert(result, metre, 1.0, nullptr));
    EXPECT_FALSE(UnitConvert(result, static_cast<const QtrUnitBase*>(nullptr), 1.0, L"km"));
    EXPECT_EQ(result, -1.0);
}

TEST_F(Functions, TranslateUnitNames) {
    std::wstring text = L"before";
    UnitTranslateDefault(text, nullptr);
    EXPECT_EQ(text, L"before");
    UnitTranslateDefault(text, L"foot");
    EXPECT_EQ(text, L"Fu\u00df");
    UnitTranslateDefault(text, L"parsec");
    EXPECT_EQ(text, L"parsec");
}

TEST(NameChecks, RequireTheExactPrefixQT) {
    for (const auto check : {&QT_IsCategorynameValid, &QT_IsUnitnameValid}) {
        EXPECT_TRUE(check(L"QT_Length"));
        EXPECT_TRUE(check(L"QT_"));
        EXPECT_FALSE(check(L"qt_Length"));
        EXPECT_FALSE(check(L"QT"));
        EXPECT_FALSE(check(L""));
        EXPECT_FALSE(check(nullptr));
    }
}

TEST(FunctionsWithoutDefaults, AnswerNothing) {
    defaults_test::SettingsScript script;
    defaults_test::ExpectPassesInFreshProcess([&] {
        script.Folder("/nonexistent");
        defaults_test::SettingsScriptInstall(script);
        const defaults_test::LogRecorder silenced;
        EXPECT_EQ(CategorySearch(L"Length"), nullptr);
        EXPECT_EQ(UnitSearch(L"m"), nullptr);
        EXPECT_EQ(DefaultInternUnitGet(L"Length"), nullptr);
        EXPECT_EQ(DefaultSurfaceUnitNameFromUnit(L"m"), L"");
        const QtrUnitStd unit(nullptr, L"m");
        double result = -1.0;
        EXPECT_FALSE(UnitConvert(result, L"m", 1.0, L"km"));
        EXPECT_FALSE(UnitConvert(result, &unit, 1.0, L"m"));
        EXPECT_EQ(result, -1.0);
    });
}

class FunctionsThreads : public Functions {};

TEST_F(FunctionsThreads, ManyThreadsAskAtOnce) {
    ASSERT_NE(QtrAdminStd::QtrAdminDefault(), nullptr);
    ASSERT_NE(QtrAdminStd::QtrTranslDictDefault(), nullptr);
    const QtrUnitBase* foot = UnitSearch(L"foot");
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 2000; ++i) {
                double result = 0.0;
                std::wstring translation;
                UnitTranslateDefault(translation, L"foot");
                const bool right = UnitConvert(result, L"m", i, L"km") && result == i * 1000.0 &&
                                   UnitSearch(L"foot") == foot && DefaultInternUnitNameFromUnit(L"min") == L"s" &&
                                   CategorySearch(L"Time") != nullptr && translation == L"Fu\u00df";
                wrong += !right;
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
}

}  // namespace
