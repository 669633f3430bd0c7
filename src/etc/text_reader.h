// Reads a text file line by line as wide strings. The whole file is read when
// it is opened, and each line is decoded when it is handed out: UTF-8 (with or
// without a byte-order mark), or UTF-16 little- or big-endian behind its
// byte-order mark, which is turned into UTF-8 at the opening. Lines end at a line
// feed; a carriage return before it (or at the end of the last line) is
// dropped. Bytes that do not decode become U+FFFD. The description-file
// scanner and the translation-dictionary reader both read through it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quantor::detail {

class TextReader {
public:
    // Reads and decodes the file at `path` (encoded as UTF-8 for the
    // operating system); false if it cannot be read. Closes any file first.
    bool Open(const std::wstring& path);
    void Close();

    bool IsOpen() const { return open_; }
    // Whether every line has been handed out (also when no file is open).
    bool AtEnd() const { return next_ >= text_.size(); }
    // Hands out the next line without its terminator; false at the end.
    bool ReadLine(std::wstring& line);
    // The absolute path of the open file with symbolic links resolved; empty
    // when no file is open.
    const std::wstring& FullPath() const { return fullPath_; }

private:
    bool open_ = false;
    std::string text_;  // UTF-8 without a byte-order mark
    std::size_t next_ = 0;
    std::wstring fullPath_;
};

}  // namespace quantor::detail
