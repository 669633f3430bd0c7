// The character rules of the description language's names: which characters
// are letters, digits and white space, which words are keywords, and which
// names read back as one identifier. The scanner reads by them and the
// printers of the unit model write by them.
#pragma once

#include <string_view>

// Letters are those of the C library's "C" locale: ASCII letters only.
inline bool IsDscrLetter(wchar_t c) { return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z'); }
inline bool IsDscrDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }
inline bool IsDscrSpace(wchar_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); }

// The keywords in the order of their token ids: "category", "convert",
// "defaultintern", "defaultsurface", "format", "unit". The index of `text`
// among them, or -1 when it is no keyword (case-sensitive).
inline int DscrKeywordIndex(std::wstring_view text) {
    constexpr std::wstring_view kKeywords[] = {L"category", L"convert", L"defaultintern",
                                               L"defaultsurface", L"format", L"unit"};
    for (int i = 0; i < 6; ++i)
        if (text == kKeywords[i]) return i;
    return -1;
}

// Whether `name` reads back as one identifier token: a letter or "_", then
// letters, "_" and digits, and no keyword.
inline bool IsPlainIdentifier(std::wstring_view name) {
    if (name.empty() || !(IsDscrLetter(name[0]) || name[0] == L'_')) return false;
    for (wchar_t c : name)
        if (!(IsDscrLetter(c) || IsDscrDigit(c) || c == L'_')) return false;
    return DscrKeywordIndex(name) < 0;
}
