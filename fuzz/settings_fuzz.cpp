// Fuzz target for the environment settings: the input, cut at its first two
// NUL bytes, gives the values of QUANTOR_CURRENCY_MODE, QUANTOR_LANGUAGE_ID
// and QUANTOR_UNITS_DIR, which are read through the default settings
// factory; a number setting that answers is the decimal number it was given,
// and the folder is searched for the catalogue like the defaults do.
#include <stdlib.h>

#include <cstdlib>
#include <algorithm>
#include <string>
#include <string_view>

#include "etc/file_search.h"
#include "fuzz_support.h"
#include "units/settings_source.h"

namespace {

std::string NextValue(std::string_view& rest) {
    const size_t end = std::min(rest.find('\0'), rest.size());
    std::string value(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return value;
}

bool IsDecimalInteger(const std::string& text) {
    const size_t digits = text.starts_with('-') ? 1 : 0;
    return text.size() > digits && text.find_first_not_of("0123456789", digits) == std::string::npos;
}

// Reads an integer setting; when it answers, it must have been given a
// decimal integer, and answer its value.
void NumberSettingCheck(QtrSettings& settings, const wchar_t* section, const wchar_t* key, const std::string& text) {
    QtrVariant value;
    if (settings.SettingsGetValue(section, key, QTR_VT_I4, value, 0) != 0) return;
    fuzz::Require(value.type == QTR_VT_I4 && IsDecimalInteger(text) && value.i4 == std::strtoll(text.c_str(), nullptr, 10),
                  "a number setting answers another number than it was given");
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
    NumberSettingCheck(*settings, L"unitsandcurrencies", L"mode", mode);
    NumberSettingCheck(*settings, L"common", L"languageid", language);
    std::wstring unitsFolder;
    if (quantor::detail::SettingsFolderRead(*settings, unitsFolder) == quantor::detail::FolderSetting::Read)
        UnitFilePathSearch(unitsFolder + L"/unit_dscr.txt");
    return 0;
}
