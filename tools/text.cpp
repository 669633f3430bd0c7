// UTF-8 conversion through the C library's multibyte functions in the
// C.UTF-8 character type, and strict locale-free number reading and
// writing through <charconv>.
#include "text.h"

#include <charconv>
#include <climits>
#include <clocale>
#include <cmath>
#include <cwchar>

namespace quantor_cli {

void TextEncodingSet() { std::setlocale(LC_CTYPE, "C.UTF-8"); }

std::string Utf8(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    std::mbstate_t state{};
    char bytes[MB_LEN_MAX];
    for (const wchar_t c : text) {
        const size_t length = std::wcrtomb(bytes, c, &state);
        if (length == static_cast<size_t>(-1)) {
            out.push_back('?');
            state = {};
            continue;
        }
        out.append(bytes, length);
    }
    return out;
}

std::wstring Wide(std::string_view text) {
    std::wstring out;
    out.reserve(text.size());
    std::mbstate_t state{};
    while (!text.empty()) {
        wchar_t c = 0;
        const size_t length = std::mbrtowc(&c, text.data(), text.size(), &state);
        if (length == static_cast<size_t>(-1) || length == static_cast<size_t>(-2)) {
            out.push_back(L'\uFFFD');  // a byte that is not UTF-8
            state = {};
            text.remove_prefix(1);
            continue;
        }
        out.push_back(c);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return out;
}

bool NumberRead(std::string_view text, double& value) {
    // from_chars takes a leading '-' but no '+'; a sign may appear only once.
    if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
    const char* end = text.data() + text.size();
    double number = 0.0;
    const auto [stop, error] = std::from_chars(text.data(), end, number, std::chars_format::general);
    if (error != std::errc() || stop != end || !std::isfinite(number)) return false;
    value = number;
    return true;
}

void NumberAppend(std::string& out, double value) {
    // Fifteen significant digits are the ones every double holds faithfully;
    // the sixteenth and seventeenth would show binary noise (3 ft = 0.9144 m,
    // not 0.9144000000000001 m). Exponents as printf's %g writes them.
    char digits[64];
    const auto result = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 15);
    out.append(digits, result.ptr);
}

void NumberAppendExact(std::string& out, double value) {
    char digits[64];
    const auto result = std::to_chars(digits, digits + sizeof digits, value);
    out.append(digits, result.ptr);
}

std::string NumberText(double value) {
    std::string out;
    NumberAppend(out, value);
    return out;
}

}  // namespace quantor_cli
