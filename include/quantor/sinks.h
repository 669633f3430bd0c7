// Process-wide destinations for the library's diagnostics. Install them
// before the library is used from several threads; installing is itself
// thread-safe. A sink is called on the thread that reports, possibly from
// several threads at once, and must not throw: the library catches what a
// sink throws, drops that text and goes on.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "quantor/export.h"

// One entry of the diagnostics log.
struct QtrLogEntry {
    std::wstring module;
    std::wstring file;
    uint32_t line = 0;
    std::wstring message;
    int32_t code = 0;
};

using QtrLogSink = std::function<void(const QtrLogEntry&)>;
using QtrTraceSink = std::function<void(const std::wstring&)>;

// Installs the log sink and returns the one it replaces. The default writes
// "Quantor: " and the message as one UTF-8 line to stderr; an empty function
// silences the log.
QUANTOR_API QtrLogSink QtrSetLogSink(QtrLogSink sink);

// Installs the debug-trace sink and returns the one it replaces. By default
// there is none and trace text is dropped.
QUANTOR_API QtrTraceSink QtrSetTraceSink(QtrTraceSink sink);
