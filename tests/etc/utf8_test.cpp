// The UTF-8 conversions that hosts get: non-ASCII text survives the round
// trip, and what cannot be encoded or decoded becomes U+FFFD.
#include <gtest/gtest.h>

#include <string>

#include "quantor/utf8.h"

TEST(Utf8, RoundTripsAndReplacesWhatDoesNotConvert) {
    const std::wstring text = L"\u00b0C, Fu\u00df, \u20ac, \U0001F600";
    EXPECT_EQ(QtrFromUtf8(QtrToUtf8(text)), text);
    EXPECT_EQ(QtrToUtf8(L"\u00b0"), "\xC2\xB0");
    EXPECT_EQ(QtrToUtf8(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
    // A lone continuation byte, an overlong '/' and a cut sequence: one U+FFFD per byte.
    EXPECT_EQ(QtrFromUtf8("a\x80" "b"), L"a\uFFFDb");
    EXPECT_EQ(QtrFromUtf8("\xC0\xAF"), L"\uFFFD\uFFFD");
    EXPECT_EQ(QtrFromUtf8("\xE2\x82"), L"\uFFFD\uFFFD");
}
