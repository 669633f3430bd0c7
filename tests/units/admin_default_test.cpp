// The default administration: which files the settings select, how the
// settings are asked, the messages of a failed load, the retry after it, and
// building it once when several threads ask first. Every scenario runs in a
// fresh process because the defaults are built once per process.
#include <gtest/gtest.h>

#include <algorithm>
#include <latch>
#include <optional>
#include <thread>

#include "quantor/admin.h"
#include "quantor/translation.h"
#include "units/defaults_test_support.h"

namespace {

using namespace defaults_test;

std::vector<std::wstring> Categories(const QtrAdminStd* admin) {
    std::vector<std::wstring> names;
    if (admin) admin->CategNames(names);
    return names;
}

std::vector<std::wstring> BaseCategoriesAnd(const std::optional<std::wstring>& region) {
    std::vector<std::wstring> names = {L"Length", L"Time", L"Currency"};
    if (region) names.push_back(*region);
    return names;
}

TEST(DefaultAdministration, AsksTheSettingsInOrderAndLoadsOnce) {
    SettingsScript script;
    ExpectPassesInFreshProcess([&] {
        script.Folder(CatalogueFolder());
        script.Set(L"option-configuration/unitsandcurrencies/mode", L"default", {QTR_VT_I4, L"", 99});
        SettingsScriptInstall(script);
        const QtrAdminStd* admin = QtrAdminStd::QtrAdminDefault();
        ASSERT_NE(admin, nullptr);
        EXPECT_EQ(Categories(admin), BaseCategoriesAnd(L"Customized"));
        EXPECT_EQ(
            script.Calls(),
            (std::vector<std::wstring>{
                L"prepare 4", L"prepare 3", L"prepare 1", L"get unitsandcurrencies/curr_dscr_filepath 8 3",
                L"get unitsandcurrencies/mode 3 0", L"get option-configuration/unitsandcurrencies/mode/default 3 3"}));
        EXPECT_TRUE(admin->IsValid());
        EXPECT_EQ(QtrAdminStd::QtrAdminDefault(), admin);
        EXPECT_EQ(script.created, 1);
    });
}

TEST(DefaultAdministration, CurrencyModeSelectsTheRegionFile) {
    struct ModeCase {
        std::optional<int32_t> mode;
        std::optional<std::wstring> region;
    };
    const ModeCase cases[] = {{2, L"Atlantic"},
                              {3, L"ExtendedEuropean"},
                              {4, L"America"},
                              {5, L"AsiaPacific"},
                              {6, L"MiddleEast"},
                              {99, L"Customized"},
                              {1, {}},
                              {7, {}},
                              {98, {}},
                              {{}, {}}};
    SettingsScript script;
    for (const ModeCase& testCase : cases) {
        SCOPED_TRACE(testCase.mode.value_or(-1));
        ExpectPassesInFreshProcess([&] {
            script.Folder(CatalogueFolder());
            if (testCase.mode) script.Mode(*testCase.mode);
            SettingsScriptInstall(script);
            EXPECT_EQ(Categories(QtrAdminStd::QtrAdminDefault()), BaseCategoriesAnd(testCase.region));
        });
    }
}

TEST(DefaultAdministration, FolderIsAskedAgainWithFlagsOne) {
    SettingsScript script;
    ExpectPassesInFreshProcess([&] {
        script.Folder(CatalogueFolder());
        script.Mode(2);
        script.refusedFlags = {3};
        SettingsScriptInstall(script);
        EXPECT_EQ(Categories(QtrAdminStd::QtrAdminDefault()), BaseCategoriesAnd(L"Atlantic"));
        const auto calls = script.Calls();
        ASSERT_GE(calls.size(), 5u);
        EXPECT_EQ(calls[4], L"get unitsandcurrencies/curr_dscr_filepath 8 1");
    });
}

// Without a usable folder setting the files are named bare and found by the
// file search, here in the current folder.
TEST(DefaultAdministration, WithoutAFolderSettingBareNamesAreParsed) {
    struct FolderCase {
        std::optional<QtrVariant> setting;
        LogLine message;
    };
    const FolderCase cases[] = {
        {{}, {596, L"QtrAdminStd::QtrAdminDefault: no settings for \"unitsandcurrencies\"/\"curr_dscr_filepath\"\n"}},
        {QtrVariant{QTR_VT_I4, L"", 5},
         {606,
          L"QtrAdminStd::QtrAdminDefault: setting for \"unitsandcurrencies\"/\"curr_dscr_filepath\" "
          L"contains no string\n"}}};
    SettingsScript script;
    for (const FolderCase& testCase : cases) {
        ExpectPassesInFreshProcess([&] {
            unsetenv("QUANTOR_RLG_PATH");
            if (testCase.setting) script.Set(L"unitsandcurrencies", L"curr_dscr_filepath", *testCase.setting);
            SettingsScriptInstall(script);
            const TempFolder empty;
            ASSERT_EQ(chdir(empty.Path().c_str()), 0);
            LogRecorder log;
            EXPECT_EQ(QtrAdminStd::QtrAdminDefault(), nullptr);
            const auto lines = log.Lines();
            ASSERT_FALSE(lines.empty());
            EXPECT_EQ(lines.front(), testCase.message);
            EXPECT_EQ(lines.back(), LogLine(617, L"QtrAdminStd::QtrAdminDefault: cannot parse \"unit_dscr.txt\""));
            ASSERT_EQ(chdir(CatalogueFolder().c_str()), 0);
            EXPECT_EQ(Categories(QtrAdminStd::QtrAdminDefault()), BaseCategoriesAnd({}));
        });
    }
}

TEST(DefaultAdministration, FailedPreparationSkipsTheFolderSetting) {
    SettingsScript script;
    ExpectPassesInFreshProcess([&] {
        script.Folder("/nonexistent");
        script.failingPrepareLevels = {3};
        SettingsScriptInstall(script);
        ASSERT_EQ(chdir(CatalogueFolder().c_str()), 0);
        LogRecorder log;
        EXPECT_EQ(Categories(QtrAdminStd::QtrAdminDefault()), BaseCategoriesAnd({}));
        EXPECT_TRUE(log.Lines().empty());
        EXPECT_EQ(script.Calls(),
                  (std::vector<std::wstring>{L"prepare 4", L"prepare 3", L"get unitsandcurrencies/mode 3 0",
                                             L"get option-configuration/unitsandcurrencies/mode/default 3 3"}));
    });
}

// The failure messages are composed from the path and then used as the
// format, so the '%' in the folder's name must come out as it stands.
TEST(DefaultAdministration, EachFileThatFailsIsReported) {
    struct FailureCase {
        std::string file;
        uint32_t line;
        std::wstring prefix, suffix;
    };
    const FailureCase cases[] = {{"unit_dscr.txt", 617, L"cannot parse \"", L"\""},
                                 {"curr_dscr_edy.txt", 635, L"cannot parse \"", L"\""},
                                 {"curr_dscr_customized.txt", 693, L"cannot", L""}};
    SettingsScript script;
    for (const FailureCase& testCase : cases) {
        ExpectPassesInFreshProcess([&] {
            const TempFolder folder("50%d%s");
            CatalogueCopy(folder.Path());
            FileWrite(folder.Path() / testCase.file, "category {");
            script.Folder(folder.Path());
            script.Mode(99);
            SettingsScriptInstall(script);
            LogRecorder log;
            EXPECT_EQ(QtrAdminStd::QtrAdminDefault(), nullptr);
            const std::wstring path = Wide(folder.Path() / testCase.file);
            ASSERT_FALSE(log.Lines().empty());
            EXPECT_EQ(log.Lines().back(), LogLine(testCase.line, L"QtrAdminStd::QtrAdminDefault: " + testCase.prefix +
                                                                     path + testCase.suffix));
        });
    }
}

TEST(DefaultAdministration, NextCallAfterAFailureParsesEveryFileAgain) {
    SettingsScript script;
    ExpectPassesInFreshProcess([&] {
        const TempFolder folder;
        CatalogueCopy(folder.Path());
        FileWrite(folder.Path() / "curr_dscr_customized.txt", "category {");
        script.Folder(folder.Path());
        script.Mode(99);
        SettingsScriptInstall(script);
        EXPECT_EQ(QtrAdminStd::QtrAdminDefault(), nullptr);
        fs::copy_file(CatalogueFolder() / "curr_dscr_customized.txt", folder.Path() / "curr_dscr_customized.txt",
                      fs::copy_options::overwrite_existing);
        std::ofstream(folder.Path() / "unit_dscr.txt", std::ios::app) << "category Mass { unit kg; }\n";
        const std::vector<std::wstring> expected = {L"Length", L"Time", L"Currency", L"Mass", L"Customized"};
        EXPECT_EQ(Categories(QtrAdminStd::QtrAdminDefault()), expected);
        EXPECT_EQ(script.created, 2);
    });
}

TEST(DefaultAdministration, WithoutSettingsItStaysEmptyAndUnloaded) {
    SettingsScript script;
    ExpectPassesInFreshProcess([&] {
        QtrSetSettingsFactory([] { return std::unique_ptr<QtrSettings>(); });
        LogRecorder log;
        const QtrAdminStd* empty = QtrAdminStd::QtrAdminDefault();
        ASSERT_NE(empty, nullptr);
        EXPECT_TRUE(Categories(empty).empty());
        EXPECT_FALSE(empty->IsValid());
        EXPECT_TRUE(log.Lines().empty());
        script.Folder(CatalogueFolder());
        SettingsScriptInstall(script);
        EXPECT_EQ(QtrAdminStd::QtrAdminDefault(), empty);
        EXPECT_EQ(Categories(empty), BaseCategoriesAnd({}));
    });
}

TEST(DefaultsThreads, FirstCallsFromManyThreadsBuildEachDefaultOnce) {
    SettingsScript script;
    ExpectPassesInFreshProcess([&] {
        script.Folder(CatalogueFolder());
        script.Language(1031);
        SettingsScriptInstall(script);
        constexpr int kThreads = 8;
        std::latch start(kThreads);
        std::vector<std::pair<const QtrAdminStd*, const XLMTranslDict*>> seen(kThreads);
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i)
            threads.emplace_back([&, i] {
                start.arrive_and_wait();
                seen[i] = {QtrAdminStd::QtrAdminDefault(), QtrAdminStd::QtrTranslDictDefault()};
            });
        for (std::thread& thread : threads) thread.join();
        const auto calls = script.Calls();
        EXPECT_EQ(std::count(calls.begin(), calls.end(), L"get unitsandcurrencies/mode 3 0"), 1);
        EXPECT_EQ(std::count(calls.begin(), calls.end(), L"get common/languageid 3 0"), 1);
        EXPECT_EQ(Categories(seen[0].first), BaseCategoriesAnd({}));
        EXPECT_NE(seen[0].second, nullptr);
        for (const auto& pair : seen) EXPECT_EQ(pair, seen[0]);
    });
}

}  // namespace
