// Small value types shared by the whole public interface: the calendar
// date-time that dated lookups accept and the UTF-8 text file the printers
// write to.
#pragma once

#include <cstdio>
#include <string>

#include "quantor/export.h"

// A calendar date-time as a day count, with a validity status. The dated
// lookups accept one and ignore it; categories keep one as their date stamp.
struct QtrDateTime {
    double days = 0.0;
    bool valid = true;
};

// A text file opened for writing. Printers write UTF-8 text through it; it
// writes no byte-order mark and closes itself when destroyed.
class QUANTOR_API QtrTextFile {
public:
    QtrTextFile() = default;
    QtrTextFile(const QtrTextFile&) = delete;
    QtrTextFile& operator=(const QtrTextFile&) = delete;
    ~QtrTextFile();

    // Closes any open file, then creates or truncates `path`; false for a
    // null or empty path or a file that cannot be opened.
    bool Open(const wchar_t* path);
    void Close();
    // The absolute path of the open file; empty when none is open.
    std::wstring FullPath() const;
    // Writes `text` as UTF-8; does nothing when no file is open.
    void WriteString(const std::wstring& text);

private:
    std::FILE* file_ = nullptr;
    std::wstring fullPath_;
};
