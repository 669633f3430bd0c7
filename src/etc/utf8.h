// Conversions between wide strings and UTF-8 bytes, used for file contents,
// paths and the log sink.
#pragma once

#include <string>
#include <string_view>

namespace quantor::detail {

// Characters that cannot be encoded are written as U+FFFD.
std::string ToUtf8(std::wstring_view text);
// Malformed byte sequences are decoded as U+FFFD, one per offending byte.
std::wstring FromUtf8(std::string_view bytes);
// FromUtf8 into `out`, whose room is kept for the next text.
void FromUtf8Into(std::string_view bytes, std::wstring& out);

}  // namespace quantor::detail
