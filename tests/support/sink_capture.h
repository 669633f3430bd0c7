// Test helpers that collect what the library writes to its log and trace
// sinks while they live, and put the previous sinks back afterwards.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "quantor/sinks.h"

class LogCapture {
public:
    LogCapture() : previous_(QtrSetLogSink([this](const QtrLogEntry& entry) { entries_.push_back(entry); })) {}
    ~LogCapture() { QtrSetLogSink(std::move(previous_)); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    const std::vector<QtrLogEntry>& Entries() const { return entries_; }
    std::vector<std::wstring> Messages() const {
        std::vector<std::wstring> messages;
        for (const QtrLogEntry& entry : entries_) messages.push_back(entry.message);
        return messages;
    }
    void Clear() { entries_.clear(); }

private:
    std::vector<QtrLogEntry> entries_;
    QtrLogSink previous_;
};

class TraceCapture {
public:
    TraceCapture() : previous_(QtrSetTraceSink([this](const std::wstring& text) { texts_.push_back(text); })) {}
    ~TraceCapture() { QtrSetTraceSink(std::move(previous_)); }
    TraceCapture(const TraceCapture&) = delete;
    TraceCapture& operator=(const TraceCapture&) = delete;

    const std::vector<std::wstring>& Texts() const { return texts_; }
    // Every text written, joined.
    std::wstring Text() const {
        std::wstring joined;
        for (const std::wstring& text : texts_) joined += text;
        return joined;
    }
    void Clear() { texts_.clear(); }

private:
    std::vector<std::wstring> texts_;
    QtrTraceSink previous_;
};
