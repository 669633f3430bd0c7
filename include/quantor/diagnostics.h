// Findings of one read of a description file, as records a host can show to
// a catalogue author: where (file, line, column), how bad, and what to do.
// The findings of one read belong to that read alone, so files read on
// different threads never mix their findings.
#pragma once

#include <string>
#include <vector>

#include "quantor/export.h"

enum class QtrSeverity { Error, Warning };

struct QtrDiagnostic {
    std::wstring file;         // the path as it was read
    int line = 0;              // 1-based line of the token or statement at fault; 0 for the file as a whole
    int column = 0;            // 1-based column of that token or statement; 0 with line 0
    QtrSeverity severity = QtrSeverity::Error;
    std::wstring message;      // plain English for the author: what is wrong and how to fix it
    std::wstring libraryText;  // the log's own text for this finding, or empty where the log has none
};

using QtrDiagnostics = std::vector<QtrDiagnostic>;
