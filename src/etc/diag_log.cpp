// The diagnostics log: per-thread recorded position, log and trace sinks,
// and the small string helpers that belong with them.
#include "etc/diag_log.h"

#include <atomic>
#include <cstdio>
#include <cwchar>
#include <memory>
#include <mutex>

#include "etc/utf8.h"
#include "quantor/numeric.h"
#include "quantor/sinks.h"

namespace {

constexpr int32_t kUnexpectedFailure = static_cast<int32_t>(0x8000FFFF);

struct RecordedPosition {
    std::wstring file;
    int32_t line = -1;
};

thread_local RecordedPosition tRecorded;
std::atomic<int32_t> gTraceCounter{0};

void WriteToStderr(const QtrLogEntry& entry) {
    std::wstring line = L"Quantor: " + entry.message;
    if (line.back() != L'\n') line += L'\n';
    const std::string bytes = quantor::detail::ToUtf8(line);
    std::fwrite(bytes.data(), 1, bytes.size(), stderr);
}

// A sink behind a mutex; callers take a shared copy and call it unlocked, so
// a sink may itself report without deadlock.
template <class Sink>
class SinkSlot {
public:
    explicit SinkSlot(Sink initial) : sink_(std::make_shared<Sink>(std::move(initial))) {}
    Sink Exchange(Sink next) {
        auto replacement = std::make_shared<Sink>(std::move(next));
        std::lock_guard lock(mutex_);
        Sink previous = *sink_;
        sink_ = std::move(replacement);
        active_ = static_cast<bool>(*sink_);
        return previous;
    }
    std::shared_ptr<const Sink> Get() const {
        std::lock_guard lock(mutex_);
        return sink_;
    }
    bool IsActive() const { return active_.load(std::memory_order_relaxed); }

private:
    mutable std::mutex mutex_;
    std::shared_ptr<const Sink> sink_;
    std::atomic<bool> active_{static_cast<bool>(*sink_)};
};

// Sinks must not throw; one that does anyway loses that text, and the
// library goes on as if it had been written.
template <class Sink, class Item>
void SinkCall(const Sink& sink, const Item& item) {
    if (!sink) return;
    try {
        sink(item);
    } catch (...) {
    }
}

SinkSlot<QtrLogSink>& LogSlot() {
    static SinkSlot<QtrLogSink> slot{QtrLogSink(WriteToStderr)};
    return slot;
}

SinkSlot<QtrTraceSink>& TraceSlot() {
    static SinkSlot<QtrTraceSink> slot{QtrTraceSink()};
    return slot;
}

}  // namespace

QtrLogSink QtrSetLogSink(QtrLogSink sink) { return LogSlot().Exchange(std::move(sink)); }
QtrTraceSink QtrSetTraceSink(QtrTraceSink sink) { return TraceSlot().Exchange(std::move(sink)); }

void ErrorPos_Set(const char* file, int32_t line) {
    if (!file) return;
    std::wstring wide = quantor::detail::FromUtf8(file);
    if (wide.empty()) return;
    tRecorded.file = std::move(wide);
    tRecorded.line = line;
}

void Error_WriteMessage(const std::wstring& message) {
    const int32_t line = tRecorded.line;
    // A recorded position serves exactly one message. The log entry carries
    // the line but not the file; the position prefix belongs to the trace
    // copy, which has no destination.
    if (line >= 0) {
        tRecorded.file.clear();
        tRecorded.line = -1;
    }
    QtrLogEntry entry{L"Quantor", tRecorded.file, static_cast<uint32_t>(line), message, kUnexpectedFailure};
    const auto sink = LogSlot().Get();
    SinkCall(*sink, entry);
}

bool Trace_IsActive() { return TraceSlot().IsActive(); }

void Trace_WriteText(const std::wstring& text) {
    const auto sink = TraceSlot().Get();
    SinkCall(*sink, text);
}

int32_t Trace_NextNumber() { return ++gTraceCounter; }

void ErrorTest_Format() {
    Trace_WriteNumbered(L"ErrorTest_Format: rounding of values beside a boundary\n");
    Trace_WriteNumbered(L"%.3f\n", 0.1115);
    Trace_WriteNumbered(L"%.2f\n", 0.115);
    double parsed = 0.0;
    int status = 0;
    FloatScan(parsed, status, L"1.15");
    Trace_WriteNumbered(L"%.1f\n", parsed);
    wchar_t buffer[32];
    std::swprintf(buffer, 32, L"%.1f\n", 1.15);
    Trace_WriteNumbered(L"%s", buffer);
}

namespace {

int HexDigitValue(wchar_t c) {
    if (c >= L'0' && c <= L'9') return c - L'0';
    if (c >= L'a' && c <= L'f') return c - L'a' + 10;
    if (c >= L'A' && c <= L'F') return c - L'A' + 10;
    return -1;
}

bool IsTrimmed(wchar_t c) { return c == L' ' || c == L'\t' || c == L'\n' || c == L'\r'; }

}  // namespace

void HexNumber_Scan(const wchar_t* text, uint32_t& value, int& length) {
    value = 0;
    length = 0;
    if (!text) return;
    const wchar_t* p = text;
    if (p[0] == L'0' && (p[1] == L'x' || p[1] == L'X')) p += 2;
    for (int digit; (digit = HexDigitValue(*p)) >= 0; ++p) value = (value << 4) | static_cast<uint32_t>(digit);
    length = static_cast<int>(p - text);
}

void String_Trim(std::wstring& text) {
    size_t end = text.size();
    while (end > 0 && IsTrimmed(text[end - 1])) --end;
    size_t begin = 0;
    while (begin < end && IsTrimmed(text[begin])) ++begin;
    text = text.substr(begin, end - begin);
}
