// UTF-8 encoding and decoding of wide strings (UTF-32 code points), for the
// library's files and, through QtrToUtf8 and QtrFromUtf8, for hosts.
#include "etc/utf8.h"

#include "quantor/utf8.h"

#include <cstdint>

namespace quantor::detail {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsEncodable(char32_t cp) { return cp <= 0x10FFFF && !(cp >= 0xD800 && cp <= 0xDFFF); }

void AppendUtf8(std::string& out, char32_t cp) {
    if (!IsEncodable(cp)) cp = kReplacement;
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

// Length of the sequence that `lead` starts, or 0 for a byte that cannot lead.
size_t SequenceLength(uint8_t lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 0;
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    for (wchar_t c : text) AppendUtf8(out, static_cast<char32_t>(c));
    return out;
}

std::wstring FromUtf8(std::string_view bytes) {
    std::wstring out;
    FromUtf8Into(bytes, out);
    return out;
}

// Never more code points than bytes: the text is written into room made
// ahead and cut to its length at the end.
void FromUtf8Into(std::string_view bytes, std::wstring& out) {
    out.resize(bytes.size());
    size_t written = 0;
    size_t i = 0;
    while (i < bytes.size()) {
        const auto lead = static_cast<uint8_t>(bytes[i]);
        const size_t len = SequenceLength(lead);
        if (len == 1) {
            out[written++] = static_cast<wchar_t>(lead);
            ++i;
            continue;
        }
        char32_t cp = len == 2 ? (lead & 0x1F) : len == 3 ? (lead & 0x0F) : (lead & 0x07);
        bool ok = len != 0 && i + len <= bytes.size();
        for (size_t k = 1; ok && k < len; ++k) {
            const auto b = static_cast<uint8_t>(bytes[i + k]);
            ok = (b & 0xC0) == 0x80;
            cp = (cp << 6) | (b & 0x3F);
        }
        // Reject overlong forms and surrogates so every code point has one encoding.
        const char32_t minimum = len == 2 ? 0x80 : len == 3 ? 0x800 : 0x10000;
        if (!ok || cp < minimum || !IsEncodable(cp)) {
            out[written++] = static_cast<wchar_t>(kReplacement);
            ++i;
            continue;
        }
        out[written++] = static_cast<wchar_t>(cp);
        i += len;
    }
    out.resize(written);
}

}  // namespace quantor::detail

std::string QtrToUtf8(std::wstring_view text) { return quantor::detail::ToUtf8(text); }

std::wstring QtrFromUtf8(std::string_view bytes) { return quantor::detail::FromUtf8(bytes); }
