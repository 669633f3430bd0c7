// UTF-8 for hosts. The library speaks wide strings and reads and writes its
// files in UTF-8; these convert between the two exactly as the library does,
// whatever the process locale says.
#pragma once

#include <string>
#include <string_view>

#include "quantor/export.h"

// A character that UTF-8 cannot encode (a surrogate, or beyond U+10FFFF) is
// written as U+FFFD.
QUANTOR_API std::string QtrToUtf8(std::wstring_view text);
// Each byte of a malformed sequence is read as U+FFFD.
QUANTOR_API std::wstring QtrFromUtf8(std::string_view bytes);
