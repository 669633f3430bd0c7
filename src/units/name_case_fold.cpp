// Simple case folding, by table ranges of the Unicode case-folding data for
// the scripts that unit names use. A fixed table keeps the result the same on
// every machine and in every locale.
#include "units/name_case_fold.h"

namespace {

// Latin Extended-A alternates capital and small letter; the capital sits on
// the even code point except in U+0139..U+0148 and U+0179..U+017E.
wchar_t LatinExtendedAFold(wchar_t c) {
    if (c == 0x0130 || c == 0x0131 || c == 0x0138 || c == 0x0149) return c;  // no simple folding
    if (c == 0x0178) return 0x00FF;                                          // Y with diaeresis
    if (c == 0x017F) return L's';                                            // long s
    const bool capitalOnOdd = (c >= 0x0139 && c <= 0x0148) || (c >= 0x0179 && c <= 0x017E);
    const bool isOdd = (c & 1) != 0;
    return isOdd == capitalOnOdd ? static_cast<wchar_t>(c + 1) : c;
}

wchar_t GreekFold(wchar_t c) {
    if (c >= 0x0391 && c <= 0x03A9 && c != 0x03A2) return static_cast<wchar_t>(c + 0x20);
    switch (c) {
        case 0x0386: return 0x03AC;
        case 0x0388: case 0x0389: case 0x038A: return static_cast<wchar_t>(c + 0x25);
        case 0x038C: return 0x03CC;
        case 0x038E: case 0x038F: return static_cast<wchar_t>(c + 0x3F);
        case 0x03C2: return 0x03C3;  // final sigma
        default: return c;
    }
}

}  // namespace

namespace quantor::detail {

wchar_t CaseFold(wchar_t c) {
    if (c < 0x80) return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 0x20) : c;
    if (c >= 0x00C0 && c <= 0x00DE && c != 0x00D7) return static_cast<wchar_t>(c + 0x20);
    if (c == 0x00B5) return 0x03BC;  // micro sign to Greek mu
    if (c >= 0x0100 && c <= 0x017F) return LatinExtendedAFold(c);
    if (c >= 0x0386 && c <= 0x03C2) return GreekFold(c);
    switch (c) {
        case 0x1E9E: return 0x00DF;  // capital sharp s
        case 0x2126: return 0x03C9;  // Ohm sign
        case 0x212A: return L'k';    // Kelvin sign
        case 0x212B: return 0x00E5;  // Angstrom sign
        default: return c;
    }
}

void CaseFoldInto(std::wstring_view name, wchar_t* out) {
    for (const wchar_t c : name) *out++ = CaseFold(c);
}

std::wstring CaseFolded(std::wstring_view name) {
    std::wstring folded(name.size(), L'\0');
    CaseFoldInto(name, folded.data());
    return folded;
}

}  // namespace quantor::detail
