// The default settings, administration and dictionary; the latter two are
// built once per process, so their scenarios run in fresh processes.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <latch>
#include <map>
#include <stdexcept>
#include <thread>

#include "etc/utf8.h"
#include "quantor/admin.h"
#include "quantor/category.h"
#include "quantor/functions.h"
#include "quantor/translation.h"
#include "quantor/unit.h"
#include "support/scratch_folder.h"
#include "support/sink_capture.h"
#include "units/settings_source.h"

namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::wstring>;
using SettingsKey = std::pair<std::wstring, std::wstring>;
using SettingsTable = std::map<SettingsKey, QtrVariant>;
const SettingsKey kFolderKey = {L"unitsandcurrencies", L"curr_dscr_filepath"};
const SettingsKey kModeKey = {L"unitsandcurrencies", L"mode"};

// Length and Time in unit_dscr.txt, Currency in curr_dscr_edy.txt, one
// category per region file, and English and German (0407) unit names.
const fs::path kCatalogue = fs::path(QUANTOR_TEST_DATA_DIR).parent_path() / "tests/data/defaults";
const Names kBase = {L"Length", L"Time", L"Currency"};

std::wstring Wide(const fs::path& path) { return quantor::detail::FromUtf8(path.string()); }
const QtrVariant kCatalogueFolder = {QTR_VT_BSTR, Wide(kCatalogue), 0};
QtrVariant Number(int32_t number) { return {QTR_VT_I4, L"", number}; }

std::atomic<int> settingsCreated{0};

struct TableSettings : QtrSettings {
    explicit TableSettings(SettingsTable answers) : table(std::move(answers)) { ++settingsCreated; }
    const SettingsTable table;
    int32_t SettingsGetValue(const std::wstring& section, const std::wstring& key, uint16_t, QtrVariant& value,
                             int32_t) override {
        const auto entry = table.find({section, key});
        if (entry != table.end()) value = entry->second;
        return entry == table.end() ? 1 : 0;
    }
    int32_t SettingsPrepare(int32_t) override { return 0; }
};

// Installs settings that answer what `table` holds and fail for other keys.
void SettingsInstall(const SettingsTable& table) {
    QtrSetSettingsFactory([table] { return std::make_unique<TableSettings>(table); });
}

// Runs `scenario` in a new copy of this test, where no defaults are built
// yet, and expects it to pass there; its failures go to stderr.
void ExpectPassesInFreshProcess(const std::function<void()>& scenario) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto runAndExit = [&] {
        scenario();
        const ::testing::TestResult& result = *::testing::UnitTest::GetInstance()->current_test_info()->result();
        for (int i = 0; i < result.total_part_count(); ++i) std::cerr << result.GetTestPartResult(i) << '\n';
        std::exit(result.Failed() ? 1 : 0);
    };
    EXPECT_EXIT(runAndExit(), ::testing::ExitedWithCode(0), "");
}

Names Categories(const QtrAdminStd* admin) {
    Names names;
    if (admin) admin->CategNames(names);
    return names;
}

std::wstring FootTranslated() {
    std::wstring text;
    UnitTranslateDefault(text, L"foot");
    return text;
}

// The mode is read from its setting or, without it, from the fallback.
TEST(DefaultAdministration, CurrencyModeSelectsTheRegionFile) {
    const std::pair<int32_t, const wchar_t*> cases[] = {
        {1, nullptr}, {2, L"Atlantic"}, {7, nullptr}, {98, nullptr}, {99, L"Customized"}};
    for (const auto& testCase : cases)
        for (const SettingsKey& key : {kModeKey, {L"option-configuration/unitsandcurrencies/mode", L"default"}})
            ExpectPassesInFreshProcess([&] {
                const auto& [mode, region] = testCase;
                SettingsInstall({{kFolderKey, kCatalogueFolder}, {key, Number(mode)}});
                const Names expected = region ? Names{L"Length", L"Time", L"Currency", region} : kBase;
                for (int call = 0; call < 2; ++call) EXPECT_EQ(Categories(QtrAdminStd::QtrAdminDefault()), expected);
                EXPECT_EQ(settingsCreated, 1);  // loaded once and kept
            });
}

TEST(DefaultAdministration, UnusableFolderSettingLeavesBareNames) {
    const std::wstring folder = L"\"unitsandcurrencies\"/\"curr_dscr_filepath\"";
    const std::tuple<SettingsTable, uint32_t, std::wstring> cases[] = {
        {{}, 596, L"no settings for " + folder + L"\n"},
        {{{kFolderKey, Number(5)}}, 606, L"setting for " + folder + L" contains no string\n"}};
    for (const auto& testCase : cases)
        ExpectPassesInFreshProcess([&] {
            const auto& [settings, line, message] = testCase;
            SettingsInstall(settings);
            const ScratchFolder empty;
            ASSERT_EQ(chdir(empty.path.c_str()), 0);
            const LogCapture log;
            EXPECT_EQ(QtrAdminStd::QtrAdminDefault(), nullptr);
            ASSERT_FALSE(log.Entries().empty());
            EXPECT_EQ(log.Entries()[0].line, line);
            EXPECT_EQ(log.Messages()[0], L"QtrAdminStd::QtrAdminDefault: " + message);
            EXPECT_EQ(log.Messages().back(), L"QtrAdminStd::QtrAdminDefault: cannot parse \"unit_dscr.txt\"");
        });
}

TEST(DefaultAdministration, FailedRegionFileIsReportedAndEveryFileParsedAgain) {
    ExpectPassesInFreshProcess([] {
        const ScratchFolder folder;
        fs::copy(kCatalogue, folder.path);
        std::ofstream(folder.path / "curr_dscr_customized.txt") << "category {";
        SettingsInstall({{kFolderKey, {QTR_VT_BSTR, Wide(folder.path), 0}}, {kModeKey, Number(99)}});
        const LogCapture log;
        EXPECT_EQ(QtrAdminStd::QtrAdminDefault(), nullptr);
        ASSERT_FALSE(log.Entries().empty());
        EXPECT_EQ(log.Entries().back().line, 693u);
        EXPECT_EQ(log.Messages().back(),
                  L"QtrAdminStd::QtrAdminDefault: cannot" + Wide(folder.path / "curr_dscr_customized.txt"));
        EXPECT_EQ(CategorySearch(L"Length"), nullptr);  // meanwhile the free functions find nothing
        std::ofstream(folder.path / "curr_dscr_customized.txt") << "category Customized {}";
        std::ofstream(folder.path / "unit_dscr.txt", std::ios::app) << "category Mass { unit kg; }\n";
        EXPECT_EQ(Categories(QtrAdminStd::QtrAdminDefault()),
                  (Names{L"Length", L"Time", L"Currency", L"Mass", L"Customized"}));
    });
}

// The administration stays empty, silently; the dictionary misses its English file.
TEST(DefaultAdministration, WithoutSettingsBothStayEmptyUntilThereAreSome) {
    ExpectPassesInFreshProcess([] {
        QtrSetSettingsFactory(nullptr);
        const LogCapture log;
        const QtrAdminStd* empty = QtrAdminStd::QtrAdminDefault();
        ASSERT_NE(empty, nullptr);
        EXPECT_EQ(Categories(empty), Names{});
        EXPECT_EQ(QtrAdminStd::QtrTranslDictDefault(), nullptr);
        ASSERT_EQ(log.Entries().size(), 1u);
        EXPECT_EQ(log.Entries()[0].line, 768u);
        EXPECT_EQ(log.Messages()[0],
                  L"QtrAdminStd::QtrTranslDictDefault(): cannot read from \"UnitAbbrevNames0409.rlg\"\n");
        EXPECT_EQ(FootTranslated(), L"foot");
        SettingsInstall({{kFolderKey, kCatalogueFolder}, {{L"common", L"languageid"}, Number(1031)}});
        EXPECT_EQ(Categories(QtrAdminStd::QtrAdminDefault()), kBase);
        EXPECT_EQ(FootTranslated(), L"Fu\u00df");
    });
}

// Threads whose first calls come at once share one administration and one
// dictionary, each loaded once.
TEST(DefaultsThreads, ManyThreadsBuildTheDefaultsOnceAndShareThem) {
    ExpectPassesInFreshProcess([] {
        SettingsInstall({{kFolderKey, kCatalogueFolder}, {{L"common", L"languageid"}, Number(1031)}});
        std::latch start(8);
        std::atomic<int> wrong{0};
        std::vector<const QtrAdminStd*> seen(8);
        std::vector<std::thread> threads;
        for (int t = 0; t < 8; ++t)
            threads.emplace_back([&, t] {
                start.arrive_and_wait();
                seen[t] = QtrAdminStd::QtrAdminDefault();
                for (int i = 0; i < 1000; ++i) {
                    double result = 0.0;
                    wrong += !(FootTranslated() == L"Fu\u00df" && UnitConvert(result, L"m", i, L"km") &&
                               result == i * 1000.0 && DefaultInternUnitNameFromUnit(L"min") == L"s");
                }
            });
        for (std::thread& thread : threads) thread.join();
        EXPECT_EQ(wrong, 0);
        for (const QtrAdminStd* admin : seen) EXPECT_EQ(admin, seen[0]);
        EXPECT_EQ(Categories(seen[0]), kBase);
        EXPECT_EQ(settingsCreated, 3);  // once for the administration, twice for the dictionary (language, file)
    });
}

// Threads that all ask first: without settings they share the one empty
// administration, which stays empty while a later call loads another.
TEST(DefaultsThreads, FirstCallsWithoutThenWithSettingsSeeOnlyWholeAdministrations) {
    ExpectPassesInFreshProcess([] {
        QtrSetSettingsFactory(nullptr);
        std::latch start(8), asked(9);
        std::atomic<int> wrong{0};
        std::atomic<bool> loaded{false};
        std::vector<std::thread> threads;
        for (int t = 0; t < 8; ++t)
            threads.emplace_back([&] {
                start.arrive_and_wait();
                const QtrAdminStd* empty = QtrAdminStd::QtrAdminDefault();
                asked.count_down();
                while (!loaded) wrong += empty == nullptr || !Categories(empty).empty() || empty->Unit(L"m");
                const QtrAdminStd* full = QtrAdminStd::QtrAdminDefault();
                wrong += full == empty || Categories(full) != kBase;
            });
        asked.arrive_and_wait();
        SettingsInstall({{kFolderKey, kCatalogueFolder}});
        const QtrAdminStd* full = QtrAdminStd::QtrAdminDefault();
        loaded = true;
        for (std::thread& thread : threads) thread.join();
        EXPECT_EQ(wrong, 0);
        EXPECT_EQ(Categories(full), kBase);
    });
}

// Nothing that a host builds against the published default changes it.
TEST(DefaultAdministration, PublishedDefaultTakesNoCategoryAndIndexesNothing) {
    ExpectPassesInFreshProcess([] {
        SettingsInstall({{kFolderKey, kCatalogueFolder}});
        const QtrAdminStd* shared = QtrAdminStd::QtrAdminDefault();
        ASSERT_NE(shared, nullptr);
        auto* extra = new QtrCategoryStd(L"Extra", shared);
        ASSERT_EQ(extra->UnitAdd(new QtrUnitStd(extra, L"furlong")), 1);
        EXPECT_NE(extra->Unit(L"furlong"), nullptr);
        const_cast<QtrAdminStd*>(shared)->Categ_Add(extra);
        EXPECT_EQ(UnitSearch(L"furlong"), nullptr);
        EXPECT_EQ(CategorySearch(L"Extra"), nullptr);
        EXPECT_EQ(Categories(shared), kBase);
        delete extra;
        EXPECT_EQ(UnitSearch(L"furlong"), nullptr);
    });
}

struct ThrowingSettings : QtrSettings {
    int32_t SettingsGetValue(const std::wstring&, const std::wstring&, uint16_t, QtrVariant&, int32_t) override {
        throw std::runtime_error("no registry");
    }
    int32_t SettingsPrepare(int32_t) override { return 0; }
};

// A factory or settings that throw count as failed creation or failed calls.
TEST(DefaultAdministration, ThrowingSettingsAreReportedAndTreatedAsFailures) {
    ExpectPassesInFreshProcess([] {
        QtrSetSettingsFactory([]() -> std::unique_ptr<QtrSettings> { throw std::runtime_error("no settings"); });
        const LogCapture log;
        const QtrAdminStd* empty = QtrAdminStd::QtrAdminDefault();
        ASSERT_NE(empty, nullptr);
        EXPECT_EQ(Categories(empty), Names{});
        EXPECT_TRUE(QtrDefaultDescriptionFiles().empty());
        ASSERT_FALSE(log.Messages().empty());
        EXPECT_EQ(log.Messages()[0], L"QtrSettingsFactory: creation threw no settings\n");
        QtrSetSettingsFactory([] { return std::make_unique<ThrowingSettings>(); });
        EXPECT_EQ(QtrDefaultDescriptionFiles(), (Names{L"unit_dscr.txt", L"curr_dscr_edy.txt"}));
        const std::wstring noFolder =
            L"QtrAdminStd::QtrAdminDefault: no settings for \"unitsandcurrencies\"/\"curr_dscr_filepath\"\n";
        EXPECT_EQ(std::ranges::count(log.Messages(), noFolder), 1);
        EXPECT_EQ(log.Messages().back(), L"QtrSettings::SettingsGetValue(\"option-configuration/unitsandcurrencies/"
                                         L"mode\",\"default\"): threw no registry\n");
    });
}

TEST(DefaultDescriptionFiles, FolderAndModeGiveThePathsInReadingOrder) {
    const QtrSettingsFactory previous = QtrSetSettingsFactory(nullptr);
    EXPECT_TRUE(QtrDefaultDescriptionFiles().empty());
    const std::wstring folder = Wide(kCatalogue) + L"/";
    SettingsInstall({{kFolderKey, kCatalogueFolder}, {kModeKey, Number(3)}});
    EXPECT_EQ(QtrDefaultDescriptionFiles(), (Names{folder + L"unit_dscr.txt", folder + L"curr_dscr_edy.txt",
                                                   folder + L"curr_dscr_extended_european.txt"}));
    SettingsInstall({{kFolderKey, kCatalogueFolder}});
    EXPECT_EQ(QtrDefaultDescriptionFiles(), (Names{folder + L"unit_dscr.txt", folder + L"curr_dscr_edy.txt"}));
    QtrSetSettingsFactory(previous);
}

TEST(TranslationDictionary, MissingFileOrLineWithoutTabReadsNothing) {
    const ScratchFolder folder;
    std::ofstream(folder.path / "names.rlg") << "m\tMeter\nkm Kilometer\n";
    XLMTranslDict dictionary;
    for (const fs::path& path : {folder.path / "names.rlg", folder.path / "missing.rlg"})
        EXPECT_FALSE(dictionary.RLGFileRead(Wide(path).c_str(), false)) << path;
    EXPECT_EQ(dictionary.StringTranslate(L"m"), L"m");
}

}  // namespace
