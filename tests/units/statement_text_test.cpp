// Statement text: numbers that read back exactly in as few digits as "%g"
// allows, names that read back as the same name, and where the text goes.
#include "units/statement_text.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cwchar>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>

#include "quantor/sinks.h"

namespace {

using quantor::detail::StatementName;
using quantor::detail::StatementNumber;
using quantor::detail::StatementNumberMatching;
using quantor::detail::StatementWrite;

TEST(StatementNumber, MatchesPercentGWhereThatIsExact) {
    EXPECT_EQ(StatementNumber(1000.0), L"1000");
    EXPECT_EQ(StatementNumber(0.0254), L"0.0254");
    EXPECT_EQ(StatementNumber(1.8), L"1.8");
    EXPECT_EQ(StatementNumber(0.0001), L"0.0001");
    EXPECT_EQ(StatementNumber(1e-12), L"1e-12");
    EXPECT_EQ(StatementNumber(1e+12), L"1e+12");
    EXPECT_EQ(StatementNumber(-273.15), L"-273.15");
    EXPECT_EQ(StatementNumber(0.0), L"0");
}

TEST(StatementNumber, UsesJustEnoughDigitsToReadBack) {
    EXPECT_EQ(StatementNumber(1.0 / 3.0), L"0.3333333333333333");
    EXPECT_EQ(StatementNumber(0.1 + 0.2), L"0.30000000000000004");
    EXPECT_EQ(StatementNumber(1234567.0), L"1234567");
    EXPECT_EQ(StatementNumber(1.0 / 1.8), L"0.5555555555555556");
    for (const double value : {1.0 / 7.0, 2.0 / 3.0, 1e300 / 3.0, 5e-324, 12345.678901234, -1.0 / 9.0})
        EXPECT_EQ(std::wcstod(StatementNumber(value).c_str(), nullptr), value);
    EXPECT_EQ(StatementNumber(std::numeric_limits<double>::infinity()), L"inf");
}

TEST(StatementNumber, MatchingStopsAtTheFirstAcceptedNumber) {
    // 1 / (1 / 1.8) is one step below 1.8; a reader that inverts it again is
    // satisfied by "1.8".
    const double factor = 1.0 / 1.8;
    const auto number = StatementNumberMatching(1.0 / factor, [factor](double f) { return 1.0 / f == factor; });
    EXPECT_EQ(number.text, L"1.8");
    EXPECT_EQ(number.readBack, 1.8);

    const auto never = StatementNumberMatching(0.1, [](double) { return false; });
    EXPECT_EQ(never.text, L"0.10000000000000001");
    EXPECT_EQ(never.readBack, 0.1);
}

TEST(StatementName, QuotesWhatIsNoIdentifier) {
    EXPECT_EQ(StatementName(L"km"), L"km");
    EXPECT_EQ(StatementName(L"_m2"), L"_m2");
    EXPECT_EQ(StatementName(L"convert"), L"\"convert\"");
    EXPECT_EQ(StatementName(L"2m"), L"\"2m\"");
    EXPECT_EQ(StatementName(L"m/s"), L"\"m\\/s\"");
    EXPECT_EQ(StatementName(L"a\"b\\c"), L"\"a\\\"b\\\\c\"");
    EXPECT_EQ(StatementName(L"\u00b0C"), L"\"\u00b0C\"");
    EXPECT_EQ(StatementName(L""), L"\"\"");
}

TEST(StatementWrite, WritesToTheFileOrElseToTheTrace) {
    std::wstring trace;
    const QtrTraceSink previous = QtrSetTraceSink([&trace](const std::wstring& text) { trace += text; });
    StatementWrite(nullptr, L"\tunit km;\n");
    EXPECT_EQ(trace, L"\tunit km;\n");

    const std::string path = ::testing::TempDir() + "statement_write.txt";
    {
        QtrTextFile file;
        ASSERT_TRUE(file.Open(std::wstring(path.begin(), path.end()).c_str()));
        StatementWrite(&file, L"\tunit \"\u00b0C\";\n");
    }
    std::ifstream in(path, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()),
              "\tunit \"\xC2\xB0" "C\";\n");
    EXPECT_EQ(trace, L"\tunit km;\n");
    std::remove(path.c_str());
    QtrSetTraceSink(previous);
}

}  // namespace
