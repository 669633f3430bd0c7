// Names for the numeric settings: the language codes that stand for language
// ids and the currency regions that stand for currency modes. The settings
// read from the environment and the quantor command both accept a name or a
// number through these readers.
#pragma once

#include <cstdint>
#include <span>

#include "quantor/export.h"

// One named value of a numeric setting, with a line of help for people.
struct QtrSettingName {
    const wchar_t* name;
    int32_t value;
    const wchar_t* description;
};

// en, de, fr and es with their language ids (0x0409, 0x0407, 0x040c, 0x0c0a).
QUANTOR_API std::span<const QtrSettingName> QtrLanguageNames();
// The currency regions by mode: common (1), atlantic (2), extended-european
// (3), america (4), asia-pacific (5), middle-east (6), customized (99).
QUANTOR_API std::span<const QtrSettingName> QtrCurrencyRegionNames();

// Reads a language: a code of QtrLanguageNames() (any case) or a number. A
// number written with "0x" or a leading zero ("0407") is hexadecimal, as
// language ids are written; otherwise it is decimal ("1031"). `id` is written
// only on success.
QUANTOR_API bool QtrLanguageIdRead(const wchar_t* text, int32_t& id);
// Reads a currency region: a name of QtrCurrencyRegionNames() (any case) or a
// decimal mode number. `mode` is written only on success.
QUANTOR_API bool QtrCurrencyModeRead(const wchar_t* text, int32_t& mode);
