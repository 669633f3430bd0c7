// The diagnostics log and its printf-style formatter: entry fields, the one-message
// life of a recorded position and its thread, the default sink, and the
// hexadecimal reader.
#include "etc/diag_log.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>

#include "support/sink_capture.h"

namespace {

TEST(Format, FollowsPrintfAndPrintsArgumentsByTheirOwnType) {
    EXPECT_EQ(QtrFormat(L"%g|%7.2f|%-5d|%05d|%.0f|%e", 2500.0, 3.14159, 42, -7, 2.5, 12345.0),
              L"2500|   3.14|42   |-0007|2|1.234500e+04");
    EXPECT_EQ(QtrFormat(L"%08x %X %x %*d|%.*f 100%%", 0xBEEFu, 255u, -1, 4, 1, 2, 1.0),
              L"0000beef FF ffffffff    1|1.00 100%");
    EXPECT_EQ(QtrFormat(L"[%s] [%5s] [%-4s] [%.1s] %c%c", std::wstring(L"km"), L"m", L"in", L"abc", L'\u00e9', 65),
              L"[km] [    m] [in  ] [a] \u00e9A");
    EXPECT_EQ(QtrFormat(L"%999999999d", 1).size(), 4096u);  // widths are clamped
    // An argument prints by its own type: the NULL-parameter messages give %g a string.
    EXPECT_EQ(QtrFormat(L"%g %d %f %s", L"text", 2.5, 7, 12), L"text 2.5 7 12");
    EXPECT_EQ(QtrFormat(L"(,NULL,%g,NULL)", static_cast<const wchar_t*>(nullptr), 1.0), L"(,NULL,(null),NULL)");
    // Directives without arguments stand as written.
    EXPECT_EQ(QtrFormat(L"cannot parse \"/tmp/50%d%s\""), L"cannot parse \"/tmp/50%d%s\"");
    EXPECT_EQ(QtrFormat(L"%d and %d, %q trailing %", 1), L"1 and %d, %q trailing %");
    EXPECT_EQ(QtrFormat(L"%*d", L"x", 3), L"%*d");
    EXPECT_EQ(QtrFormat(nullptr), L"");
}

// The extremes of every integer type, as arguments and as widths and
// precisions taken from '*', are well defined (the sanitizer build checks).
TEST(Format, ExtremeIntegersAreWellDefined) {
    EXPECT_EQ(QtrFormat(L"%d %u %x", INT_MIN, INT_MIN, INT_MIN), L"-2147483648 2147483648 80000000");
    EXPECT_EQ(QtrFormat(L"%d %u %x", LLONG_MIN, LLONG_MIN, LLONG_MIN),
              L"-9223372036854775808 9223372036854775808 8000000000000000");
    EXPECT_EQ(QtrFormat(L"%d %x", ULLONG_MAX, ULLONG_MAX), L"18446744073709551615 ffffffffffffffff");
    EXPECT_EQ(QtrFormat(L"%*d|", INT_MIN, 1).size(), 4097u);  // a negative width aligns left, clamped
    EXPECT_EQ(QtrFormat(L"%*d|", LLONG_MIN, 1).size(), 4097u);
    EXPECT_EQ(QtrFormat(L"%*d|", ULLONG_MAX, 1).size(), 4097u);
    EXPECT_EQ(QtrFormat(L"%.*f", LLONG_MIN, 1.0), L"1.000000");  // a negative precision is none
    EXPECT_EQ(QtrFormat(L"%.*d", INT_MAX, 1).size(), 4096u);
    EXPECT_EQ(QtrFormat(L"%-*.*s|", INT_MIN, INT_MIN, L"ab"), L"ab" + std::wstring(4094, L' ') + L"|");
}

TEST(Format, DecimalPointIgnoresTheLocale) {
    if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") == nullptr) GTEST_SKIP() << "no German locale installed";
    EXPECT_EQ(QtrFormat(L"%g", 0.0254), L"0.0254");
    std::setlocale(LC_NUMERIC, "C");
}

TEST(DiagLog, ARecordedPositionServesExactlyOneMessage) {
    LogCapture log;
    ErrorPos_Set(kSrcUnitsStd, 1234);
    Error_Write(L"QtrAdminStd::Convert(,%s,%g,%s): no convinfo\n", L"m", 2.5, std::wstring(L"km"));
    Error_Write(L"second\n");
    ErrorPos_Set(kSrcScan, 10);
    ErrorPos_Set(kSrcEtc, 0);  // replaces the unused position; line 0 is a position too
    ErrorPos_Set("", 7);       // a name without characters changes nothing
    Error_Write(L"third\n");
    ASSERT_EQ(log.Entries().size(), 3u);
    const QtrLogEntry& entry = log.Entries()[0];
    EXPECT_EQ(std::tie(entry.module, entry.file, entry.line, entry.code),
              std::tuple(std::wstring(L"Quantor"), std::wstring(), 1234u, static_cast<int32_t>(0x8000FFFF)));
    EXPECT_EQ(entry.message, L"QtrAdminStd::Convert(,m,2.5,km): no convinfo\n");
    EXPECT_EQ(log.Entries()[1].line, 0xFFFFFFFF);
    EXPECT_EQ(log.Entries()[2].line, 0u);
}

// A host's sink that throws loses its text; the library goes on, and the
// sink gets the next text again.
TEST(DiagLog, SinksThatThrowAreSurvived) {
    int calls = 0;
    const auto throwing = [&calls](const auto&) {
        ++calls;
        throw std::runtime_error("sink failed");
    };
    const QtrLogSink previousLog = QtrSetLogSink(throwing);
    const QtrTraceSink previousTrace = QtrSetTraceSink(throwing);
    EXPECT_NO_THROW(Error_Report("src.cpp", 7, L"first %d\n", 1));
    EXPECT_NO_THROW(Trace_Write(L"trace %s\n", L"text"));
    EXPECT_NO_THROW(Error_Write(L"second\n"));
    QtrSetLogSink(previousLog);
    QtrSetTraceSink(previousTrace);
    EXPECT_EQ(calls, 3);
}

TEST(DiagLog, TheDefaultSinkWritesOneUtf8LineToStderr) {
    testing::internal::CaptureStderr();
    Error_Report(kSrcUnitsStd, 12, L"QtrUnitStd::Convert(%s): no convinfo\n", L"\u00b5m");
    Error_Write(L"without line feed");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Quantor: QtrUnitStd::Convert(\xC2\xB5m): no convinfo\nQuantor: without line feed\n");
    // An empty sink silences the log.
    const QtrLogSink previous = QtrSetLogSink(QtrLogSink());
    testing::internal::CaptureStderr();
    Error_Write(L"silenced\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    QtrSetLogSink(previous);
}

TEST(DiagLogThreads, ARecordedPositionBelongsToItsThread) {
    LogCapture log;
    ErrorPos_Set(kSrcEtc, 42);
    std::thread([] { Error_Write(L"other thread\n"); }).join();
    Error_Write(L"this thread\n");
    ASSERT_EQ(log.Entries().size(), 2u);
    EXPECT_EQ(log.Entries()[0].line, 0xFFFFFFFF);
    EXPECT_EQ(log.Entries()[1].line, 42u);
}

TEST(HexNumberScan, ReadsDigitsAfterAnOptionalPrefix) {
    const std::tuple<const wchar_t*, uint32_t, int> cases[] = {
        {L"0x1F", 31, 4}, {L"0X1f;", 31, 4}, {L"1g", 1, 1}, {L"0x", 0, 2}, {L"", 0, 0}, {L"g", 0, 0},
        {L"0x123456789", 0x23456789, 11}, {L"ffffffff", 0xFFFFFFFF, 8}, {L"0x0x1F", 0, 3},
    };
    for (const auto& [text, value, length] : cases) {
        std::pair<uint32_t, int> scanned{99, 99};
        HexNumber_Scan(text, scanned.first, scanned.second);
        EXPECT_EQ(scanned, std::make_pair(value, length)) << testing::PrintToString(std::wstring(text));
    }
}

}  // namespace
