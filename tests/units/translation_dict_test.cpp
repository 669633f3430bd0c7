// The translation dictionary: the .rlg format in its encodings, where a file
// is looked for, and the process-wide dictionary of the settings' language,
// which is read again on every call until its file could be read.
#include <gtest/gtest.h>

#include <functional>

#include "quantor/admin.h"
#include "quantor/functions.h"
#include "quantor/translation.h"
#include "units/defaults_test_support.h"

namespace {

using namespace defaults_test;

bool ReadFile(XLMTranslDict& dictionary, const fs::path& path) {
    return dictionary.RLGFileRead(Wide(path).c_str(), false);
}

std::string Utf16WithByteOrderMark(const std::u16string& text, bool bigEndian) {
    std::string bytes;
    for (const char16_t unit : u"\uFEFF" + text) {
        const char high = static_cast<char>(unit >> 8), low = static_cast<char>(unit & 0xFF);
        bytes += bigEndian ? std::string{high, low} : std::string{low, high};
    }
    return bytes;
}

TEST(TranslationDictionary, ReadsNameTabTranslationLines) {
    const TempFolder folder;
    FileWrite(folder.Path() / "names.rlg",
              "\xEF\xBB\xBF# German names\r\n\r\n \t \r\nm\tMeter\r\nfoot\tFu\xC3\x9F\r\nsq m\tQuadrat meter \r\n");
    XLMTranslDict dictionary;
    ASSERT_TRUE(ReadFile(dictionary, folder.Path() / "names.rlg"));
    EXPECT_EQ(dictionary.StringTranslate(L"m"), L"Meter");
    EXPECT_EQ(dictionary.StringTranslate(L"foot"), L"Fu\u00df");
    EXPECT_EQ(dictionary.StringTranslate(L"sq m"), L"Quadrat meter ");
    EXPECT_EQ(dictionary.StringTranslate(L"km"), L"km");
    EXPECT_EQ(dictionary.StringTranslate(nullptr), L"");
}

TEST(TranslationDictionary, ReadsUtf16BehindItsByteOrderMark) {
    for (const bool bigEndian : {false, true}) {
        const TempFolder folder;
        FileWrite(folder.Path() / "names.rlg", Utf16WithByteOrderMark(u"# comment\r\nfoot\tFu\u00df\r\n", bigEndian));
        XLMTranslDict dictionary;
        ASSERT_TRUE(ReadFile(dictionary, folder.Path() / "names.rlg")) << bigEndian;
        EXPECT_EQ(dictionary.StringTranslate(L"foot"), L"Fu\u00df");
    }
}

TEST(TranslationDictionary, MissingFileOrLineWithoutTabReadsNothing) {
    const TempFolder folder;
    FileWrite(folder.Path() / "names.rlg", "m\tMeter\nkm Kilometer\n");
    XLMTranslDict dictionary;
    EXPECT_FALSE(ReadFile(dictionary, folder.Path() / "names.rlg"));
    EXPECT_FALSE(ReadFile(dictionary, folder.Path() / "missing.rlg"));
    EXPECT_FALSE(dictionary.RLGFileRead(nullptr, false));
    EXPECT_EQ(dictionary.StringTranslate(L"m"), L"m");
}

TEST(TranslationDictionary, LaterFileReplacesTranslationsItHolds) {
    const TempFolder folder;
    FileWrite(folder.Path() / "first.rlg", "m\tMeter\nfoot\tFuss\n");
    FileWrite(folder.Path() / "second.rlg", "m\tmetre\nkm\tkilometre\n");
    XLMTranslDict dictionary;
    ASSERT_TRUE(ReadFile(dictionary, folder.Path() / "first.rlg"));
    ASSERT_TRUE(ReadFile(dictionary, folder.Path() / "second.rlg"));
    EXPECT_EQ(dictionary.StringTranslate(L"m"), L"metre");
    EXPECT_EQ(dictionary.StringTranslate(L"km"), L"kilometre");
    EXPECT_EQ(dictionary.StringTranslate(L"foot"), L"Fuss");
}

TEST(TranslationDictionary, BareNameIsLookedForInTheSettingsFolder) {
    const QtrSettingsFactory previous = QtrSetSettingsFactory(nullptr);
    XLMTranslDict dictionary;
    EXPECT_FALSE(dictionary.RLGFileRead(L"UnitAbbrevNames0407.rlg", false));
    SettingsScript script;
    script.Folder(CatalogueFolder());
    SettingsScriptInstall(script);
    EXPECT_TRUE(dictionary.RLGFileRead(L"UnitAbbrevNames0407.rlg", false));
    EXPECT_EQ(dictionary.StringTranslate(L"foot"), L"Fu\u00df");
    QtrSetSettingsFactory(previous);
}

TEST(DefaultDictionary, LanguageIdSelectsTheFile) {
    struct LanguageCase {
        std::function<void(SettingsScript&)> configure;
        std::wstring footTranslation;
    };
    const LanguageCase cases[] = {
        {[](SettingsScript& script) { script.Language(1031); }, L"Fu\u00df"},
        {[](SettingsScript& script) {
             script.Set(L"option-configuration/common/languageid", L"default", {QTR_VT_I4, L"", 1031});
         },
         L"Fu\u00df"},
        {[](SettingsScript& script) {
             script.Set(L"common", L"languageid", {QTR_VT_BSTR, L"1031", 1031});
         },
         L"ft"},
        {[](SettingsScript&) {}, L"ft"}};
    SettingsScript script;
    for (const LanguageCase& testCase : cases) {
        ExpectPassesInFreshProcess([&] {
            script.Folder(CatalogueFolder());
            testCase.configure(script);
            SettingsScriptInstall(script);
            const XLMTranslDict* dictionary = QtrAdminStd::QtrTranslDictDefault();
            ASSERT_NE(dictionary, nullptr);
            EXPECT_EQ(dictionary->StringTranslate(L"foot"), testCase.footTranslation);
            EXPECT_EQ(QtrAdminStd::QtrTranslDictDefault(), dictionary);
            const auto calls = script.Calls();
            ASSERT_GE(calls.size(), 3u);
            EXPECT_EQ(std::vector(calls.begin(), calls.begin() + 3),
                      (std::vector<std::wstring>{L"prepare 4", L"prepare 3", L"get common/languageid 3 0"}));
        });
    }
}

TEST(DefaultDictionary, IsTriedAgainUntilItsFileIsRead) {
    SettingsScript script;
    ExpectPassesInFreshProcess([&] {
        const auto cannotRead = [](const wchar_t* file) {
            return std::vector<LogLine>{
                {768, QtrFormat(L"QtrAdminStd::QtrTranslDictDefault(): cannot read from \"%s\"\n", file)}};
        };
        QtrSetSettingsFactory([] { return std::unique_ptr<QtrSettings>(); });
        {
            LogRecorder log;
            EXPECT_EQ(QtrAdminStd::QtrTranslDictDefault(), nullptr);
            EXPECT_EQ(log.Lines(), cannotRead(L"UnitAbbrevNames0409.rlg"));
            std::wstring text = L"before";
            UnitTranslateDefault(text, nullptr);
            EXPECT_EQ(text, L"before");
            UnitTranslateDefault(text, L"foot");
            EXPECT_EQ(text, L"foot");
        }
        const TempFolder empty;
        script.Folder(empty.Path());
        script.Language(1031);
        script.failingPrepareLevels = {3};
        SettingsScriptInstall(script);
        {
            LogRecorder log;
            EXPECT_EQ(QtrAdminStd::QtrTranslDictDefault(), nullptr);
            EXPECT_EQ(log.Lines(), cannotRead(L"UnitAbbrevNames0409.rlg"));
        }
        script.failingPrepareLevels.clear();
        {
            LogRecorder log;
            EXPECT_EQ(QtrAdminStd::QtrTranslDictDefault(), nullptr);
            EXPECT_EQ(log.Lines(), cannotRead(L"UnitAbbrevNames0407.rlg"));
        }
        script.Folder(CatalogueFolder());
        ASSERT_NE(QtrAdminStd::QtrTranslDictDefault(), nullptr);
        std::wstring text;
        UnitTranslateDefault(text, L"foot");
        EXPECT_EQ(text, L"Fu\u00df");
    });
}

}  // namespace
