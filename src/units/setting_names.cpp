// The tables of language codes and currency-region names, and the readers
// that accept either a name of a table or a number. One place for both, so
// that the settings from the environment and the command agree.
#include <charconv>
#include <cwctype>
#include <string>

#include "quantor/setting_names.h"

namespace {

constexpr QtrSettingName kLanguages[] = {
    {L"en", 0x0409, L"English (United States)"},
    {L"de", 0x0407, L"German"},
    {L"fr", 0x040c, L"French"},
    {L"es", 0x0c0a, L"Spanish"},
};

constexpr QtrSettingName kRegions[] = {
    {L"common", 1, L"only the currencies common to every region"},
    {L"atlantic", 2, L"and the North Atlantic currencies"},
    {L"extended-european", 3, L"and the currencies of the wider European region"},
    {L"america", 4, L"and the currencies of the Americas"},
    {L"asia-pacific", 5, L"and the Asia-Pacific currencies"},
    {L"middle-east", 6, L"and the currencies of the Middle East"},
    {L"customized", 99, L"and a host's own currencies (curr_dscr_customized.txt)"},
};

bool SameIgnoringCase(const wchar_t* a, const wchar_t* b) {
    for (; *a && *b; ++a, ++b)
        if (std::towlower(static_cast<wint_t>(*a)) != std::towlower(static_cast<wint_t>(*b))) return false;
    return *a == *b;
}

bool NameRead(std::span<const QtrSettingName> table, const wchar_t* text, int32_t& value) {
    for (const QtrSettingName& entry : table) {
        if (!SameIgnoringCase(entry.name, text)) continue;
        value = entry.value;
        return true;
    }
    return false;
}

// The whole text as one 32-bit integer in `base`; only ASCII characters count.
bool IntegerRead(const wchar_t* text, int base, int32_t& value) {
    std::string narrow;
    for (const wchar_t* c = text; *c; ++c) {
        if (*c > 0x7f) return false;
        narrow.push_back(static_cast<char>(*c));
    }
    int32_t number = 0;
    const char* end = narrow.data() + narrow.size();
    const auto [stop, error] = std::from_chars(narrow.data(), end, number, base);
    if (narrow.empty() || error != std::errc() || stop != end) return false;
    value = number;
    return true;
}

}  // namespace

std::span<const QtrSettingName> QtrLanguageNames() { return kLanguages; }
std::span<const QtrSettingName> QtrCurrencyRegionNames() { return kRegions; }

bool QtrLanguageIdRead(const wchar_t* text, int32_t& id) {
    if (!text || !*text) return false;
    if (NameRead(kLanguages, text, id)) return true;
    if (text[0] == L'0' && (text[1] == L'x' || text[1] == L'X')) return text[2] != L'-' && IntegerRead(text + 2, 16, id);
    if (text[0] == L'0') return IntegerRead(text, 16, id);
    return IntegerRead(text, 10, id);
}

bool QtrCurrencyModeRead(const wchar_t* text, int32_t& mode) {
    if (!text || !*text) return false;
    return NameRead(kRegions, text, mode) || IntegerRead(text, 10, mode);
}
