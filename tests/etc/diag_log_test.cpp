// The diagnostics log: the fields of each log entry, the one-message life of
// a recorded position and its confinement to one thread, the default stderr
// sink, the trace channel, and the hexadecimal and trimming helpers.
#include "etc/diag_log.h"

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "quantor/sinks.h"

namespace {

constexpr uint32_t kNoLine = 0xFFFFFFFF;
constexpr int32_t kUnexpectedFailure = static_cast<int32_t>(0x8000FFFF);

// Installs capturing log and trace sinks and restores the previous ones.
class DiagLog : public testing::Test {
protected:
    void SetUp() override {
        previousLog_ = QtrSetLogSink([this](const QtrLogEntry& entry) { entries_.push_back(entry); });
        previousTrace_ = QtrSetTraceSink([this](const std::wstring& text) { traces_.push_back(text); });
    }
    void TearDown() override {
        QtrSetLogSink(previousLog_);
        QtrSetTraceSink(previousTrace_);
    }

    std::vector<QtrLogEntry> entries_;
    std::vector<std::wstring> traces_;

private:
    QtrLogSink previousLog_;
    QtrTraceSink previousTrace_;
};

std::wstring NumberPrefix(int32_t number) {
    std::wstring digits = std::to_wstring(number);
    return std::wstring(digits.size() < 4 ? 4 - digits.size() : 0, L' ') + digits + L": ";
}

}  // namespace

TEST_F(DiagLog, EntryCarriesModuleCodeAndFormattedMessageButNoFile) {
    ErrorPos_Set(kSrcUnitsStd, 1234);
    Error_Write(L"QtrAdminStd::Convert(,%s,%g,%s): no convinfo\n", L"m", 2.5, std::wstring(L"km"));
    ASSERT_EQ(entries_.size(), 1u);
    const QtrLogEntry& entry = entries_[0];
    EXPECT_EQ(entry.module, L"Quantor");
    EXPECT_EQ(entry.file, L"");
    EXPECT_EQ(entry.line, 1234u);
    EXPECT_EQ(entry.message, L"QtrAdminStd::Convert(,m,2.5,km): no convinfo\n");
    EXPECT_EQ(entry.code, kUnexpectedFailure);
}

TEST_F(DiagLog, WithoutARecordedPositionTheLineIsAllOnes) {
    Error_Write(L"plain\n");
    ASSERT_EQ(entries_.size(), 1u);
    EXPECT_EQ(entries_[0].line, kNoLine);
    EXPECT_EQ(entries_[0].file, L"");
    EXPECT_EQ(entries_[0].message, L"plain\n");
}

TEST_F(DiagLog, ARecordedPositionServesExactlyOneMessage) {
    Error_Report(kSrcParsOps, 77, L"first %d\n", 1);
    Error_Write(L"second\n");
    ErrorPos_Set(kSrcEtc, 0);  // line 0 is a recorded position too
    Error_Write(L"third\n");
    Error_Write(L"fourth\n");
    ASSERT_EQ(entries_.size(), 4u);
    EXPECT_EQ(entries_[0].line, 77u);
    EXPECT_EQ(entries_[0].message, L"first 1\n");
    EXPECT_EQ(entries_[1].line, kNoLine);
    EXPECT_EQ(entries_[2].line, 0u);
    EXPECT_EQ(entries_[3].line, kNoLine);
    for (const QtrLogEntry& entry : entries_) EXPECT_EQ(entry.file, L"");
}

TEST_F(DiagLog, AnEmptySourceNameKeepsThePreviousPosition) {
    ErrorPos_Set(kSrcScan, 195);
    ErrorPos_Set("", 7);
    ErrorPos_Set(nullptr, 8);
    Error_Write(L"kept\n");
    ASSERT_EQ(entries_.size(), 1u);
    EXPECT_EQ(entries_[0].line, 195u);
}

TEST_F(DiagLog, ALaterPositionReplacesAnUnusedOne) {
    ErrorPos_Set(kSrcScan, 10);
    ErrorPos_Set(kSrcUnitsDscr, 20);
    Error_Write(L"x\n");
    ASSERT_EQ(entries_.size(), 1u);
    EXPECT_EQ(entries_[0].line, 20u);
}

TEST_F(DiagLog, ErrorsDoNotReachTheTrace) {
    Error_Report(kSrcEtc, 5, L"only in the log\n");
    EXPECT_TRUE(traces_.empty());
}

TEST_F(DiagLog, TraceSinkReceivesFormattedText) {
    EXPECT_TRUE(Trace_IsActive());
    Trace_Write(L"%s: %e", L"ND_FLTEXP", 1500.0);
    Trace_Write(L"no arguments %d");
    ASSERT_EQ(traces_.size(), 2u);
    EXPECT_EQ(traces_[0], L"ND_FLTEXP: 1.500000e+03");
    EXPECT_EQ(traces_[1], L"no arguments %d");
    EXPECT_TRUE(entries_.empty());
}

TEST_F(DiagLog, NumberedTraceLinesCountUpRightAlignedInFourColumns) {
    const int32_t before = Trace_NextNumber();
    Trace_WriteNumbered(L"a\n");
    Trace_WriteNumbered(L"%s\n", L"b");
    Trace_WriteNumbered(L"c\n");
    ASSERT_EQ(traces_.size(), 3u);
    EXPECT_EQ(traces_[0], NumberPrefix(before + 1) + L"a\n");
    EXPECT_EQ(traces_[1], NumberPrefix(before + 2) + L"b\n");
    EXPECT_EQ(traces_[2], NumberPrefix(before + 3) + L"c\n");
}

TEST_F(DiagLog, FormatSelfTestWritesFiveNumberedLines) {
    const int32_t before = Trace_NextNumber();
    ErrorTest_Format();
    ASSERT_EQ(traces_.size(), 5u);
    for (size_t i = 0; i < traces_.size(); ++i) {
        EXPECT_EQ(traces_[i].rfind(NumberPrefix(before + 1 + static_cast<int32_t>(i)), 0), 0u) << i;
    }
    EXPECT_TRUE(entries_.empty());
}

TEST(DiagLogTrace, WithoutASinkTraceTextIsDropped) {
    const QtrTraceSink previous = QtrSetTraceSink(QtrTraceSink());
    EXPECT_FALSE(Trace_IsActive());
    Trace_Write(L"dropped %d\n", 1);
    QtrSetTraceSink(previous);
}

TEST(DiagLogDefaultSink, WritesOneUtf8LineToStderr) {
    testing::internal::CaptureStderr();
    Error_Report(kSrcUnitsStd, 12, L"QtrUnitStd::Convert(%s): no convinfo\n", L"\u00b5m");
    Error_Write(L"without line feed");
    const std::string written = testing::internal::GetCapturedStderr();
    EXPECT_EQ(written,
              "Quantor: QtrUnitStd::Convert(\xC2\xB5m): no convinfo\n"
              "Quantor: without line feed\n");
}

TEST(DiagLogDefaultSink, AnEmptySinkSilencesTheLogAndGivesTheDefaultBack) {
    const QtrLogSink previous = QtrSetLogSink(QtrLogSink());
    testing::internal::CaptureStderr();
    Error_Write(L"silenced\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    ASSERT_TRUE(previous);
    EXPECT_FALSE(QtrSetLogSink(previous));
    testing::internal::CaptureStderr();
    Error_Write(L"heard\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Quantor: heard\n");
}

TEST(DiagLogThreads, ARecordedPositionBelongsToItsThread) {
    std::vector<QtrLogEntry> entries;
    const QtrLogSink previous = QtrSetLogSink([&entries](const QtrLogEntry& entry) { entries.push_back(entry); });
    ErrorPos_Set(kSrcEtc, 42);
    std::thread([] { Error_Write(L"other thread\n"); }).join();
    Error_Write(L"this thread\n");
    QtrSetLogSink(previous);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].line, kNoLine);
    EXPECT_EQ(entries[1].line, 42u);
}

TEST(DiagLogThreads, ConcurrentReportsKeepTheirOwnLinesWhileSinksChange) {
    constexpr int kThreads = 4;
    constexpr int kReports = 200;
    std::mutex mutex;
    std::vector<QtrLogEntry> entries;
    const auto capture = [&](const QtrLogEntry& entry) {
        std::lock_guard lock(mutex);
        entries.push_back(entry);
    };
    const QtrLogSink previous = QtrSetLogSink(capture);
    std::atomic<bool> done{false};
    std::thread swapper([&] {
        while (!done) QtrSetLogSink(capture);
    });
    std::vector<std::thread> reporters;
    for (int t = 0; t < kThreads; ++t) {
        reporters.emplace_back([t] {
            for (int i = 0; i < kReports; ++i) Error_Report(kSrcEtc, t, L"%d\n", t);
        });
    }
    for (std::thread& reporter : reporters) reporter.join();
    done = true;
    swapper.join();
    QtrSetLogSink(previous);
    ASSERT_EQ(entries.size(), size_t{kThreads * kReports});
    for (const QtrLogEntry& entry : entries) EXPECT_EQ(entry.message, std::to_wstring(entry.line) + L"\n");
}

TEST(HexNumberScan, ReadsDigitsAfterAnOptionalPrefix) {
    struct Case {
        const wchar_t* text;
        uint32_t value;
        int length;
    };
    const Case cases[] = {
        {L"0x1F", 31, 4},  {L"0X1f;", 31, 4}, {L"1F", 31, 2},       {L"1g", 1, 1},
        {L"0x", 0, 2},     {L"", 0, 0},       {L"g", 0, 0},         {L"0x123456789", 0x23456789, 11},
        {L"ffffffff", 0xFFFFFFFF, 8},         {L"0x0x1F", 0, 3},
    };
    for (const Case& c : cases) {
        uint32_t value = 99;
        int length = 99;
        HexNumber_Scan(c.text, value, length);
        EXPECT_EQ(value, c.value) << testing::PrintToString(std::wstring(c.text));
        EXPECT_EQ(length, c.length) << testing::PrintToString(std::wstring(c.text));
    }
}

TEST(StringTrim, RemovesBlanksTabsAndLineEndsFromBothEnds) {
    const std::pair<std::wstring, std::wstring> cases[] = {
        {L" \t\r\n km \n", L"km"}, {L"a b", L"a b"}, {L" \t\n\r", L""}, {L"", L""}, {L"\vx\v", L"\vx\v"},
    };
    for (const auto& [input, expected] : cases) {
        std::wstring text = input;
        String_Trim(text);
        EXPECT_EQ(text, expected) << testing::PrintToString(input);
    }
}
