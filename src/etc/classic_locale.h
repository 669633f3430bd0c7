// The "C" locale as a locale object, so number reading and printing can use
// it whatever locale the host has set for the process.
#pragma once

#include <locale.h>

namespace quantor::detail {

inline locale_t ClassicLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return locale;
}

}  // namespace quantor::detail
