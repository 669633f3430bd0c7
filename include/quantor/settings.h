// The host's settings source. The default administration and translation
// dictionary read their folder, currency mode and language from it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "quantor/export.h"

constexpr uint16_t QTR_VT_I4 = 3;
constexpr uint16_t QTR_VT_BSTR = 8;

// A settings value: a string (QTR_VT_BSTR) or a 32-bit integer (QTR_VT_I4).
struct QtrVariant {
    uint16_t type = 0;
    std::wstring str;
    int32_t i4 = 0;
};

// The host's settings. Its operations must not throw: the library reports an
// exception that escapes one as a failed call (non-zero result) and goes on.
class QUANTOR_API QtrSettings {
public:
    virtual ~QtrSettings() = default;
    // Reads section/key; `value` holds the default on entry. 0 means success.
    virtual int32_t SettingsGetValue(const std::wstring& section, const std::wstring& key, uint16_t expectedType,
                                     QtrVariant& value, int32_t flags) = 0;
    // Prepares the settings for reading at a level; 0 means success.
    virtual int32_t SettingsPrepare(int32_t level) = 0;
};

// Creates a settings source; a factory that returns null means creation
// failed. A factory must not throw: the library reports an exception that
// escapes it and treats it as failed creation.
using QtrSettingsFactory = std::function<std::unique_ptr<QtrSettings>()>;

// Installs the settings factory and returns the one it replaces; an empty
// factory means creation fails. The default factory answers from the
// environment: QUANTOR_UNITS_DIR (unset: the shipped catalogue beside the
// library) for "unitsandcurrencies"/"curr_dscr_filepath", QUANTOR_CURRENCY_MODE
// (a region name or mode number, see QtrCurrencyModeRead) for
// "unitsandcurrencies"/"mode" and QUANTOR_LANGUAGE_ID (a language code or id,
// see QtrLanguageIdRead) for "common"/"languageid"; every other key fails.
QUANTOR_API QtrSettingsFactory QtrSetSettingsFactory(QtrSettingsFactory factory);
