// Resolving typed names: each stage (exact, synonym of the active language,
// English synonym, display name, unique case-insensitive match), how the
// stages and the languages rank against each other, language files that are
// missing or malformed, the default resolver, and many threads resolving at
// once.
#include "quantor/names.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "etc/utf8.h"
#include "quantor/functions.h"
#include "support/catalogue.h"
#include "support/scratch_folder.h"
#include "support/sink_capture.h"
#include "units/name_case_fold.h"

namespace {

// A catalogue with names that differ only in case (Mm, mm; mW, MW), Greek and
// Latin-1 letters, and German (0407) and English language files.
class NameResolution : public ::testing::Test {
protected:
    // Bare language-file names are found in the scratch folder.
    void SetUp() override {
        setenv("QUANTOR_UNITS_DIR", scratch.path.c_str(), 1);
        length = CategoryAdd(admin, L"Length", {L"m", L"km", L"mm", L"Mm", L"ft", L"in"});
        CategoryAdd(admin, L"Power", {L"W", L"mW", L"MW"});
        CategoryAdd(admin, L"Temperature", {L"degC", L"K"});
        CategoryAdd(admin, L"Time", {L"s", L"min", L"h", L"\u00B5s"});
        CategoryAdd(admin, L"Angle", {L"gon", L"rad"});
        CategoryAdd(admin, L"Resistance", {L"Ω", L"kΩ"});
        Write("UnitSynonyms0407.rlg", "# Deutsch\nMeter\tm\nGrad\tdegC\nAchtel\tfurlong\nStunde\th\n");
        Write("UnitSynonyms0409.rlg", "# English\n\nmetre\tm\nmetres\tm\nkilometre\tkm\nGrad\tgon\nAchtel\tkm\nkm\tm\n"
                                      "distance\tLength\nhour\th\n");
        Write("UnitAbbrevNames0407.rlg", "ft\tFuß\ndegC\t°C\nh\tStd\ns\tSek\nmin\tSek\nin\tZoll\n");
        ASSERT_TRUE(german.emplace(admin).LanguageLoad(0x0407));
    }
    void TearDown() override { unsetenv("QUANTOR_UNITS_DIR"); }

    void Write(const char* name, const std::string& utf8) { std::ofstream(scratch.path / name, std::ios::binary) << utf8; }
    const QtrUnitBase* Unit(const wchar_t* name) const { return admin.Unit(name); }

    ScratchFolder scratch;
    QtrAdminStd admin;
    const QtrCategoryStd* length = nullptr;
    std::optional<QtrNameResolver> german;
};

using Expected = std::tuple<const wchar_t*, const wchar_t*, QtrNameMatch>;

// Typed name, the unit it names (null: none), and how it was found.
TEST_F(NameResolution, EachStageFindsItsNamesInOrder) {
    const Expected cases[] = {
        {L"km", L"km", QtrNameMatch::Exact},           {L"Meter", L"m", QtrNameMatch::Synonym},
        {L"metre", L"m", QtrNameMatch::Synonym},       // English fallback
        {L"Fuß", L"ft", QtrNameMatch::DisplayName},    // display names read backwards
        {L"°C", L"degC", QtrNameMatch::DisplayName},   {L"KM", L"km", QtrNameMatch::CaseInsensitive},
        {L"METRES", L"m", QtrNameMatch::CaseInsensitive},  // a folded synonym
        {L"FUSS", nullptr, QtrNameMatch::None},            // ß does not fold to "ss"
        {L"FUß", L"ft", QtrNameMatch::CaseInsensitive},   {L"zoll", L"in", QtrNameMatch::CaseInsensitive},
        {L"ω", L"Ω", QtrNameMatch::CaseInsensitive},       // Greek
        {L"\u2126", L"Ω", QtrNameMatch::CaseInsensitive},  // the Ohm sign
        {L"KΩ", L"kΩ", QtrNameMatch::CaseInsensitive},
        {L"\u03BCs", L"\u00B5s", QtrNameMatch::CaseInsensitive},  // Greek mu for the micro sign
        {L"MM", nullptr, QtrNameMatch::None},              // mm or Mm
        {L"mw", nullptr, QtrNameMatch::None},              // mW or MW
        {L"Sek", nullptr, QtrNameMatch::None},             // the display name of s and of min
        {L"Achtel", L"km", QtrNameMatch::Synonym},         // the German line names no unit
        {L"furlong", nullptr, QtrNameMatch::None},      {L"", nullptr, QtrNameMatch::None},
        {L"m ", nullptr, QtrNameMatch::None},
    };
    for (const auto& [typed, unitName, match] : cases) {
        const QtrResolvedName resolved = german->Resolve(typed);
        EXPECT_EQ(resolved.unit, unitName ? Unit(unitName) : nullptr) << typed;
        EXPECT_EQ(resolved.category, nullptr) << typed;
        EXPECT_EQ(resolved.match, match) << typed;
    }
    EXPECT_EQ(german->Resolve(nullptr).match, QtrNameMatch::None);
}

TEST_F(NameResolution, ExactNamesBeatSynonymsAndTheActiveLanguageBeatsEnglish) {
    EXPECT_EQ(german->Resolve(L"km").unit, Unit(L"km"));  // also an English synonym of m
    EXPECT_EQ(german->Resolve(L"Grad").unit, Unit(L"degC"));
    QtrNameResolver english(admin);
    ASSERT_TRUE(english.LanguageLoad(0x0409));
    EXPECT_EQ(english.Resolve(L"Grad").unit, Unit(L"gon"));
    EXPECT_EQ(english.Resolve(L"Fuß").match, QtrNameMatch::None);  // no English display names here
    EXPECT_EQ(english.Resolve(L"Meter").match, QtrNameMatch::None);
}

TEST_F(NameResolution, CategoriesResolveLikeUnits) {
    const std::tuple<const wchar_t*, QtrNameMatch> cases[] = {{L"Length", QtrNameMatch::Exact},
                                                              {L"distance", QtrNameMatch::Synonym},
                                                              {L"length", QtrNameMatch::CaseInsensitive},
                                                              {L"DISTANCE", QtrNameMatch::CaseInsensitive}};
    for (const auto& [typed, match] : cases) {
        const QtrResolvedName resolved = german->Resolve(typed);
        EXPECT_EQ(resolved.category, length) << typed;
        EXPECT_EQ(resolved.unit, nullptr) << typed;
        EXPECT_EQ(resolved.match, match) << typed;
    }
}

// The synonyms that lead to a unit or category, from both languages; the
// English "Grad" is shadowed by the German one and "km" by the exact name.
TEST_F(NameResolution, ListsTheSynonymsThatLeadToAUnitOrCategory) {
    using Names = std::vector<std::wstring>;
    EXPECT_EQ(german->Synonyms({nullptr, Unit(L"m"), QtrNameMatch::Exact}), (Names{L"Meter", L"metre", L"metres"}));
    EXPECT_EQ(german->Synonyms({nullptr, Unit(L"degC"), QtrNameMatch::Exact}), Names{L"Grad"});
    EXPECT_EQ(german->Synonyms({nullptr, Unit(L"gon"), QtrNameMatch::Exact}), Names{});
    EXPECT_EQ(german->Synonyms({length, nullptr, QtrNameMatch::Exact}), Names{L"distance"});
    EXPECT_EQ(german->Synonyms({}), Names{});
}

TEST_F(NameResolution, KnowsOnlyExactAndCaseInsensitiveNamesWithoutLanguageFiles) {
    QtrNameResolver bare(admin);
    EXPECT_EQ(bare.Resolve(L"ft").match, QtrNameMatch::Exact);
    EXPECT_EQ(bare.Resolve(L"FT").match, QtrNameMatch::CaseInsensitive);
    EXPECT_EQ(bare.Resolve(L"metre").match, QtrNameMatch::None);
    EXPECT_TRUE(bare.SynonymFileRead(quantor::detail::FromUtf8((scratch.path / "UnitSynonyms0409.rlg").string()).c_str()));
    EXPECT_EQ(bare.Resolve(L"metre").match, QtrNameMatch::Synonym);
}

TEST_F(NameResolution, CaseFoldingIgnoresTheProcessLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    ASSERT_NE(std::setlocale(LC_ALL, "tr_TR.UTF-8"), nullptr);
    const QtrResolvedName resolved = german->Resolve(L"MIN");
    std::setlocale(LC_ALL, before.c_str());
    EXPECT_EQ(resolved.unit, Unit(L"min"));
}

// A missing language file is no error; a malformed one adds nothing, makes
// LanguageLoad answer false and is reported, while the other files still load.
TEST_F(NameResolution, LanguageFilesThatAreMissingOrMalformed) {
    QtrNameResolver french(admin);
    EXPECT_TRUE(french.LanguageLoad(0x040c));
    EXPECT_EQ(french.Resolve(L"metre").match, QtrNameMatch::Synonym);

    Write("UnitSynonyms0410.rlg", "metro\tm\nno tab here\n");
    LogCapture log;
    QtrNameResolver italian(admin);
    EXPECT_FALSE(italian.LanguageLoad(0x0410));
    EXPECT_EQ(italian.Resolve(L"metro").match, QtrNameMatch::None);
    EXPECT_EQ(italian.Resolve(L"metre").match, QtrNameMatch::Synonym);
    ASSERT_EQ(log.Messages().size(), 1u);
    EXPECT_EQ(log.Messages()[0], L"QtrNameResolver::LanguageLoad(0410): cannot read \"UnitSynonyms0410.rlg\"\n");

    EXPECT_FALSE(italian.SynonymFileRead((scratch.path.wstring() + L"/UnitSynonyms0410.rlg").c_str()));
    EXPECT_FALSE(italian.DisplayNameFileRead(L"nowhere/UnitAbbrevNames0410.rlg"));
    EXPECT_FALSE(italian.SynonymFileRead(nullptr));
}

// Every thread resolves and suggests the same names against one resolver and
// must get the answers of a single thread.
TEST_F(NameResolution, ResolvesFromManyThreadsAtOnce) {
    const std::vector<const wchar_t*> typed = {L"km", L"Meter", L"metre", L"Fuß", L"KM", L"mw", L"ω", L"nothing"};
    std::vector<QtrResolvedName> expected;
    for (const wchar_t* name : typed) expected.push_back(german->Resolve(name));
    const std::vector<std::wstring> expectedSuggestions = german->Suggest(L"kilometr");
    const QtrNameResolver& shared = *german;
    std::vector<int> mismatches(8, 0);
    std::vector<std::thread> threads;
    for (int& count : mismatches)
        threads.emplace_back([&shared, &typed, &expected, &expectedSuggestions, &count] {
            for (int round = 0; round < 200; ++round) {
                for (size_t i = 0; i < typed.size(); ++i) {
                    const QtrResolvedName resolved = shared.Resolve(typed[i]);
                    count += resolved.unit != expected[i].unit || resolved.match != expected[i].match;
                }
                count += shared.Suggest(L"kilometr") != expectedSuggestions;
            }
        });
    for (std::thread& thread : threads) thread.join();
    for (const int count : mismatches) EXPECT_EQ(count, 0);
}

TEST(NameCaseFold, FoldsCapitalsOfEachScriptAndLeavesTheRest) {
    const std::pair<wchar_t, wchar_t> cases[] = {
        {L'A', L'a'},     {L'z', L'z'},     {L'İ', L'İ'},     {L'ı', L'ı'},     {L'Ä', L'ä'},
        {L'×', L'×'},     {L'ß', L'ß'},     {L'\u1E9E', L'ß'}, {L'Ā', L'ā'},     {L'ā', L'ā'},
        {L'Ĺ', L'ĺ'},     {L'Ň', L'ň'},     {L'Ŋ', L'ŋ'},     {L'Ÿ', L'ÿ'},     {L'Ž', L'ž'},
        {L'ſ', L's'},     {L'Σ', L'σ'},     {L'ς', L'σ'},     {L'Ώ', L'ώ'},     {L'Ά', L'ά'},
        {L'\u00B5', L'\u03BC'},     {L'\u212A', L'k'}, {L'\u212B', L'å'}, {L'°', L'°'},     {L'Ж', L'Ж'}};
    for (const auto& [from, to] : cases) EXPECT_EQ(quantor::detail::CaseFold(from), to) << int(from);
}

// The default resolver reads the settings' language (German here) with the
// English fallback over the shipped catalogue; threads that ask at the same
// time share one default resolver, built once.
TEST(NameResolverDefault, BuiltOnceForManyThreadsAndResolvesWithTheSettingsLanguage) {
    setenv("QUANTOR_UNITS_DIR", QUANTOR_TEST_DATA_DIR "/unitsandcurrencies", 1);
    setenv("QUANTOR_LANGUAGE_ID", "1031", 1);
    std::vector<const QtrNameResolver*> seen(4, nullptr);
    std::vector<const QtrUnitBase*> metres(4, nullptr);
    std::vector<std::thread> threads;
    for (size_t i = 0; i < seen.size(); ++i)
        threads.emplace_back([&seen, &metres, i] {
            seen[i] = QtrNameResolverDefault();
            metres[i] = NameResolve(L"metres").unit;
        });
    for (std::thread& thread : threads) thread.join();
    ASSERT_NE(seen[0], nullptr);
    for (size_t i = 0; i < seen.size(); ++i) {
        EXPECT_EQ(seen[i], seen[0]);
        EXPECT_EQ(metres[i], UnitSearch(L"m"));
    }
    EXPECT_EQ(QtrNameResolverDefault(), seen[0]);
    EXPECT_EQ(NameResolve(L"Fuß").unit, UnitSearch(L"ft"));
    EXPECT_EQ(NameResolve(L"metre").unit, UnitSearch(L"m"));
    EXPECT_EQ(NameResolve(L"°C").unit, UnitSearch(L"degC"));
    EXPECT_EQ(NameResolve(L"no such unit").match, QtrNameMatch::None);
}

}  // namespace
