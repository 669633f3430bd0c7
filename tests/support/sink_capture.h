// Test helpers that collect what the library writes to its log and trace
// sinks while they live, and put the previous sinks back afterwards.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "quantor/sinks.h"

template <class Item, auto SetSink>
class SinkCapture {
public:
    SinkCapture() : previous_(SetSink([this](const Item& item) { items_.push_back(item); })) {}
    ~SinkCapture() { SetSink(std::move(previous_)); }
    SinkCapture(const SinkCapture&) = delete;
    SinkCapture& operator=(const SinkCapture&) = delete;
    void Clear() { items_.clear(); }

protected:
    std::vector<Item> items_;
    decltype(SetSink({})) previous_;
};

class LogCapture : public SinkCapture<QtrLogEntry, QtrSetLogSink> {
public:
    const std::vector<QtrLogEntry>& Entries() const { return items_; }
    std::vector<std::wstring> Messages() const {
        std::vector<std::wstring> messages;
        for (const QtrLogEntry& entry : items_) messages.push_back(entry.message);
        return messages;
    }
};

class TraceCapture : public SinkCapture<std::wstring, QtrSetTraceSink> {
public:
    const std::vector<std::wstring>& Texts() const { return items_; }
    // Every text written, joined.
    std::wstring Text() const {
        std::wstring joined;
        for (const std::wstring& text : items_) joined += text;
        return joined;
    }
};
