// Language codes and currency-region names: the readers that take a name or
// a number, and the environment settings that accept both and report a value
// they cannot read once, however often they are asked.
#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

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

int32_t AskLanguage(QtrSettings& settings, int32_t& code) {
    QtrVariant value{QTR_VT_I4, L"", 1033};
    code = settings.SettingsGetValue(L"common", L"languageid", QTR_VT_I4, value, 0);
    return value.i4;
}

TEST(EnvironmentSettingNames, AcceptNamesAndReportAnUnreadableValueOnce) {
    const auto settings = quantor::detail::SettingsCreate();
    ASSERT_TRUE(settings);
    int32_t code = -1;
    setenv("QUANTOR_LANGUAGE_ID", "de", 1);
    EXPECT_EQ(AskLanguage(*settings, code), 0x0407);
    EXPECT_EQ(code, 0);

    setenv("QUANTOR_CURRENCY_MODE", "america", 1);
    QtrVariant mode{QTR_VT_I4, L"", 1};
    EXPECT_EQ(settings->SettingsGetValue(L"unitsandcurrencies", L"mode", QTR_VT_I4, mode, 0), 0);
    EXPECT_EQ(mode.i4, 4);

    LogCapture log;
    setenv("QUANTOR_LANGUAGE_ID", "klingon", 1);
    for (int ask = 0; ask < 3; ++ask) {
        EXPECT_EQ(AskLanguage(*settings, code), 1033) << "the default stays";
        EXPECT_NE(code, 0);
    }
    ASSERT_EQ(log.Messages().size(), 1u);
    EXPECT_EQ(log.Messages()[0],
              L"QUANTOR_LANGUAGE_ID=\"klingon\" is neither a known name nor a number; the setting is ignored\n");
    unsetenv("QUANTOR_LANGUAGE_ID");
    unsetenv("QUANTOR_CURRENCY_MODE");
}

}  // namespace
