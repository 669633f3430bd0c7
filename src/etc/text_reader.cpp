// The text reader: reads a file's bytes, picks the encoding from its
// byte-order mark, keeps the text as UTF-8 and decodes one line at a time on
// request, so that a file is never held as wide characters whole.
#include "etc/text_reader.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "etc/utf8.h"

namespace quantor::detail {
namespace {

constexpr wchar_t kReplacement = 0xFFFD;
constexpr std::string_view kUtf8Bom = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16LeBom = "\xFF\xFE";
constexpr std::string_view kUtf16BeBom = "\xFE\xFF";

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// The file's bytes, or nothing if it cannot be opened or read (a folder,
// for one, opens but does not read).
std::optional<std::string> ReadAllBytes(const std::string& path) {
    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
    if (!file) return std::nullopt;
    std::string bytes;
    char buffer[65536];
    for (std::size_t count; (count = std::fread(buffer, 1, sizeof buffer, file.get())) > 0;)
        bytes.append(buffer, count);
    if (std::ferror(file.get())) return std::nullopt;
    return bytes;
}

std::wstring ResolvedPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr), &std::free);
    return FromUtf8(resolved ? std::string_view(resolved.get()) : std::string_view(path));
}

bool IsHighSurrogate(uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// Decodes UTF-16 without its byte-order mark. A surrogate without its partner
// and a lone last byte each decode to U+FFFD.
std::wstring FromUtf16(std::string_view bytes, bool bigEndian) {
    const auto unitAt = [&](std::size_t index) {
        const auto first = static_cast<uint8_t>(bytes[index]);
        const auto second = static_cast<uint8_t>(bytes[index + 1]);
        return bigEndian ? uint32_t{first} << 8 | second : uint32_t{second} << 8 | first;
    };
    const std::size_t unitCount = bytes.size() / 2;
    std::wstring out;
    out.reserve(unitCount + 1);
    for (std::size_t i = 0; i < unitCount; ++i) {
        const uint32_t unit = unitAt(2 * i);
        if (IsHighSurrogate(unit) && i + 1 < unitCount && IsLowSurrogate(unitAt(2 * i + 2))) {
            out += static_cast<wchar_t>(0x10000 + ((unit - 0xD800) << 10) + (unitAt(2 * i + 2) - 0xDC00));
            ++i;
        } else if (IsHighSurrogate(unit) || IsLowSurrogate(unit)) {
            out += kReplacement;
        } else {
            out += static_cast<wchar_t>(unit);
        }
    }
    if (bytes.size() % 2 != 0) out += kReplacement;
    return out;
}

// The text as UTF-8 without a byte-order mark. UTF-16 is decoded whole and
// encoded again: every code point it decodes to encodes, so each line then
// decodes to exactly what the UTF-16 text holds.
std::string Utf8Text(std::string bytes) {
    if (bytes.starts_with(kUtf8Bom)) return bytes.substr(kUtf8Bom.size());
    if (bytes.starts_with(kUtf16LeBom)) return ToUtf8(FromUtf16(std::string_view(bytes).substr(kUtf16LeBom.size()), false));
    if (bytes.starts_with(kUtf16BeBom)) return ToUtf8(FromUtf16(std::string_view(bytes).substr(kUtf16BeBom.size()), true));
    return bytes;
}

}  // namespace

bool TextReader::Open(const std::wstring& path) {
    Close();
    if (path.find(L'\0') != std::wstring::npos) return false;
    const std::string systemPath = ToUtf8(path);
    std::optional<std::string> bytes = ReadAllBytes(systemPath);
    if (!bytes) return false;
    text_ = Utf8Text(std::move(*bytes));
    fullPath_ = ResolvedPath(systemPath);
    open_ = true;
    return true;
}

void TextReader::Close() {
    open_ = false;
    text_.clear();
    text_.shrink_to_fit();
    next_ = 0;
    fullPath_.clear();
}

// A line feed or carriage return byte is never part of a longer UTF-8
// sequence, so lines split and trimmed as bytes decode as the whole text would.
bool TextReader::ReadLine(std::wstring& line) {
    if (AtEnd()) return false;
    std::size_t end = text_.find('\n', next_);
    if (end == std::string::npos) end = text_.size();
    std::string_view bytes = std::string_view(text_).substr(next_, end - next_);
    if (bytes.ends_with('\r')) bytes.remove_suffix(1);
    FromUtf8Into(bytes, line);
    next_ = end + 1;
    return true;
}

}  // namespace quantor::detail
