// Language codes and currency-region names: the readers that take a name or
// a number, and the environment settings, which answer only their three keys,
// accept names and numbers and report a value they cannot read once, however
// often they are asked.
#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <tuple>

#include "quantor/setting_names.h"
#include "support/sink_capture.h"
#include "units/settings_source.h"

namespace {

using Reader = bool (*)(const wchar_t* text, int32_t& value);

std::optional<int32_t> ReadWith(Reader read, const wchar_t* text) {
    int32_t value = -7;
    if (read(text, value)) return value;
    EXPECT_EQ(value, -7) << "written on failure";
    return std::nullopt;
}

std::optional<int32_t> Language(const wchar_t* text) { return ReadWith(QtrLanguageIdRead, text); }
std::optional<int32_t> Region(const wchar_t* text) { return ReadWith(QtrCurrencyModeRead, text); }

TEST(SettingNames, LanguagesByCodeOrByIdWrittenInHexadecimalOrDecimal) {
    // A leading zero means hexadecimal.
    const std::pair<const wchar_t*, int32_t> cases[] = {
        {L"en", 0x0409},     {L"DE", 0x0407},   {L"fr", 0x040c},   {L"es", 0x0c0a},    {L"0407", 0x0407},
        {L"0x0407", 0x0407}, {L"0c0a", 0x0c0a}, {L"1031", 1031},   {L"-1031", -1031}};
    for (const auto& [text, id] : cases) EXPECT_EQ(Language(text), id) << text;
    for (const wchar_t* bad : {L"", L"german", L"0x", L"0x-1", L"12abc", L" 1031", L"0407 ", L"d\u00e9"})
        EXPECT_EQ(Language(bad), std::nullopt) << bad;
    EXPECT_EQ(Language(nullptr), std::nullopt);
}

TEST(SettingNames, RegionsByNameOrDecimalMode) {
    // An unnamed mode stays a number.
    const std::pair<const wchar_t*, int32_t> cases[] = {
        {L"common", 1}, {L"America", 4}, {L"middle-east", 6}, {L"customized", 99}, {L"7", 7}};
    for (const auto& [text, mode] : cases) EXPECT_EQ(Region(text), mode) << text;
    for (const wchar_t* bad : {L"", L"europe", L"0x10", L"4 ", L"99999999999"}) EXPECT_EQ(Region(bad), std::nullopt) << bad;
    for (const QtrSettingName& region : QtrCurrencyRegionNames()) EXPECT_EQ(Region(region.name), region.value);
}

using SettingsKey = std::pair<std::wstring, std::wstring>;

// The answer of `settings`, or none when they fail and leave the value alone.
std::optional<QtrVariant> Ask(QtrSettings& settings, const SettingsKey& key) {
    QtrVariant value{0, L"untouched", -1};
    if (settings.SettingsGetValue(key.first, key.second, QTR_VT_I4, value, 3) == 0) return value;
    EXPECT_EQ(std::tie(value.str, value.i4), std::make_tuple(std::wstring(L"untouched"), -1));
    return std::nullopt;
}

// The folder, the currency mode and the language, by name or by number; no
// other key. An unreadable language is reported once, however often asked.
TEST(EnvironmentSettings, AnswerTheirThreeKeysByNameOrNumberAndReportAnUnreadableValueOnce) {
    const SettingsKey folderKey = {L"unitsandcurrencies", L"curr_dscr_filepath"},
                      modeKey = {L"unitsandcurrencies", L"mode"}, languageKey = {L"common", L"languageid"};
    setenv("QUANTOR_UNITS_DIR", "/opt/catalogue", 1);
    setenv("QUANTOR_CURRENCY_MODE", "99", 1);
    setenv("QUANTOR_LANGUAGE_ID", "-1031", 1);
    const auto settings = quantor::detail::SettingsCreate();
    ASSERT_TRUE(settings);
    const auto folder = Ask(*settings, folderKey), mode = Ask(*settings, modeKey);
    ASSERT_TRUE(folder && mode);
    EXPECT_EQ(std::tie(folder->type, folder->str), std::make_tuple(QTR_VT_BSTR, std::wstring(L"/opt/catalogue")));
    EXPECT_EQ(std::tie(mode->type, mode->i4), std::make_tuple(QTR_VT_I4, 99));
    EXPECT_EQ(Ask(*settings, languageKey).value_or(QtrVariant{}).i4, -1031);
    EXPECT_FALSE(Ask(*settings, {L"common", L"mode"}));
    for (const char* malformed : {"", "12abc", " 7", "0x10", "99999999999"}) {
        setenv("QUANTOR_CURRENCY_MODE", malformed, 1);
        EXPECT_FALSE(Ask(*settings, modeKey)) << malformed;
    }
    setenv("QUANTOR_CURRENCY_MODE", "america", 1);
    EXPECT_EQ(Ask(*settings, modeKey).value_or(QtrVariant{}).i4, 4);
    setenv("QUANTOR_LANGUAGE_ID", "de", 1);
    EXPECT_EQ(Ask(*settings, languageKey).value_or(QtrVariant{}).i4, 0x0407);

    LogCapture log;
    setenv("QUANTOR_LANGUAGE_ID", "klingon", 1);
    for (int ask = 0; ask < 3; ++ask) EXPECT_FALSE(Ask(*settings, languageKey));
    ASSERT_EQ(log.Messages().size(), 1u);
    EXPECT_EQ(log.Messages()[0],
              L"QUANTOR_LANGUAGE_ID=\"klingon\" is neither a known name nor a number; the setting is ignored\n");
    for (const char* name : {"QUANTOR_UNITS_DIR", "QUANTOR_CURRENCY_MODE", "QUANTOR_LANGUAGE_ID"}) unsetenv(name);
}

}  // namespace
