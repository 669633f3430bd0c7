// UTF-8 conversion as the library does it, whatever the process locale, and
// strict locale-free number reading and writing through <charconv>.
#include "text.h"

#include <charconv>
#include <cmath>

#include <quantor/utf8.h>

namespace quantor_cli {

std::string Utf8(std::wstring_view text) { return QtrToUtf8(text); }

std::wstring Wide(std::string_view text) { return QtrFromUtf8(text); }

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
