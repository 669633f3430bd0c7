// Fuzz target for the environment settings: the input, cut at its first two
// NUL bytes, gives the values of QUANTOR_CURRENCY_MODE, QUANTOR_LANGUAGE_ID
// and QUANTOR_UNITS_DIR, which are read through the default settings
// factory; a number setting answers exactly when the public reader of its
// names and numbers accepts the text, with the reader's value, and a plain
// decimal number reads as itself. The folder is searched for the catalogue
// like the defaults do.
#include <stdlib.h>

#include <cstdlib>
#include <algorithm>
#include <string>
#include <string_view>

#include "etc/file_search.h"
#include "etc/utf8.h"
#include "fuzz_support.h"
#include "quantor/setting_names.h"
#include "units/settings_source.h"

namespace {

std::string NextValue(std::string_view& rest) {
    const size_t end = std::min(rest.find('\0'), rest.size());
    std::string value(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return value;
}

// An optional minus and decimal digits without a leading zero (a leading
// zero makes a language id hexadecimal).
bool IsPlainDecimal(const std::string& text) {
    const size_t digits = text.starts_with('-') ? 1 : 0;
    return text.size() > digits && text[digits] != '0' &&
           text.find_first_not_of("0123456789", digits) == std::string::npos;
}

void NumberSettingCheck(QtrSettings& settings, const wchar_t* section, const wchar_t* key, const std::string& text,
                        bool (*read)(const wchar_t*, int32_t&)) {
    QtrVariant value;
    const bool answered = settings.SettingsGetValue(section, key, QTR_VT_I4, value, 0) == 0;
    int32_t expected = 0;
    const bool readable = read(quantor::detail::FromUtf8(text).c_str(), expected);
    fuzz::Require(answered == readable, "a number setting answers where its reader refuses the text, or the reverse");
    if (!answered) return;
    fuzz::Require(value.type == QTR_VT_I4 && value.i4 == expected, "a number setting answers another value");
    fuzz::Require(!IsPlainDecimal(text) || value.i4 == std::strtoll(text.c_str(), nullptr, 10),
                  "a plain decimal number reads as another number");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::DiagnosticsSilence();
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const std::string mode = NextValue(rest), language = NextValue(rest), folder(rest);
    setenv("QUANTOR_CURRENCY_MODE", mode.c_str(), 1);
    setenv("QUANTOR_LANGUAGE_ID", language.c_str(), 1);
    setenv("QUANTOR_UNITS_DIR", folder.substr(0, folder.find('\0')).c_str(), 1);

    const std::unique_ptr<QtrSettings> settings = quantor::detail::SettingsCreate();
    fuzz::Require(settings != nullptr, "the default factory makes no settings");
    fuzz::Require(quantor::detail::SettingsPrepareLevels(*settings, {1, 2}), "the default settings do not prepare");
    NumberSettingCheck(*settings, L"unitsandcurrencies", L"mode", mode, QtrCurrencyModeRead);
    NumberSettingCheck(*settings, L"common", L"languageid", language, QtrLanguageIdRead);
    std::wstring unitsFolder;
    if (quantor::detail::SettingsFolderRead(*settings, unitsFolder) == quantor::detail::FolderSetting::Read)
        UnitFilePathSearch(unitsFolder + L"/unit_dscr.txt");
    return 0;
}
