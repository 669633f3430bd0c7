// The formatter: printf semantics for wide strings, and safety on formats
// that do not match their arguments.
#include "etc/format.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

TEST(Format, NumbersFollowPrintf) {
    EXPECT_EQ(QtrFormat(L"%g", 2500.0), L"2500");
    EXPECT_EQ(QtrFormat(L"%7.2f|%-5d|%05d", 3.14159, 42, -7), L"   3.14|42   |-0007");
    EXPECT_EQ(QtrFormat(L"%.0f %.3f %e", 2.5, 1.0 / 3.0, 12345.0), L"2 0.333 1.234500e+04");
    EXPECT_EQ(QtrFormat(L"%08x %X %u", 0xBEEFu, 255u, 7u), L"0000beef FF 7");
    EXPECT_EQ(QtrFormat(L"%x", -1), L"ffffffff");
    EXPECT_EQ(QtrFormat(L"%4d: ", 3), L"   3: ");
    EXPECT_EQ(QtrFormat(L"%*d|%.*f", 4, 1, 2, 1.0), L"   1|1.00");
    EXPECT_EQ(QtrFormat(L"100%%"), L"100%");
}

TEST(Format, StringsAndCharacters) {
    const std::wstring name = L"km";
    EXPECT_EQ(QtrFormat(L"[%s] [%5s] [%-4s] [%.1s]", name, L"m", L"in", L"abc"), L"[km] [    m] [in  ] [a]");
    EXPECT_EQ(QtrFormat(L"%c%c", L'\u00e9', 65), L"\u00e9A");
    EXPECT_EQ(QtrFormat(L"%s", static_cast<const wchar_t*>(nullptr)), L"(null)");
}

TEST(Format, MismatchedArgumentsPrintByTheirOwnType) {
    EXPECT_EQ(QtrFormat(L"%g", L"text"), L"text");
    EXPECT_EQ(QtrFormat(L"%d", 2.5), L"2.5");
    EXPECT_EQ(QtrFormat(L"%f", 7), L"7");
    EXPECT_EQ(QtrFormat(L"%s", 12), L"12");
    // The NULL-parameter messages hand a string to a %g directive.
    EXPECT_EQ(QtrFormat(L"(,NULL,%g,NULL)", static_cast<const wchar_t*>(nullptr), 1.0, L"m"), L"(,NULL,(null),NULL)");
}

TEST(Format, DirectivesWithoutArgumentsStandAsWritten) {
    EXPECT_EQ(QtrFormat(L"cannot parse \"/tmp/50%d%s\""), L"cannot parse \"/tmp/50%d%s\"");
    EXPECT_EQ(QtrFormat(L"%d and %d", 1), L"1 and %d");
    EXPECT_EQ(QtrFormat(L"%q %y"), L"%q %y");
    EXPECT_EQ(QtrFormat(L"trailing %"), L"trailing %");
    EXPECT_EQ(QtrFormat(L"%*d", L"x", 3), L"%*d");
    EXPECT_EQ(QtrFormat(nullptr), L"");
}

TEST(Format, HugeWidthsAreClamped) {
    EXPECT_EQ(QtrFormat(L"%999999999d", 1).size(), 4096u);
}

TEST(Format, DecimalPointIgnoresTheLocale) {
    const char* previous = std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
    EXPECT_EQ(QtrFormat(L"%g", 0.0254), L"0.0254");
    if (previous) std::setlocale(LC_NUMERIC, "C");
}
