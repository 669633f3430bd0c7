// The text file that printers write to: opened for writing by a wide path,
// it takes wide text and stores it as UTF-8 without a byte-order mark.
#include <filesystem>
#include <system_error>

#include "etc/utf8.h"
#include "quantor/types.h"

namespace {

// The absolute form of `path` with symbolic links resolved; the plain
// absolute form when the file system cannot resolve it.
std::wstring AbsolutePath(const std::string& path) {
    std::error_code error;
    std::filesystem::path resolved = std::filesystem::canonical(path, error);
    if (error) resolved = std::filesystem::absolute(path, error);
    return quantor::detail::FromUtf8(resolved.native());
}

}  // namespace

QtrTextFile::~QtrTextFile() { Close(); }

bool QtrTextFile::Open(const wchar_t* path) {
    Close();
    if (!path || !*path) return false;
    const std::string narrowPath = quantor::detail::ToUtf8(path);
    file_ = std::fopen(narrowPath.c_str(), "wb");
    if (!file_) return false;
    fullPath_ = AbsolutePath(narrowPath);
    return true;
}

void QtrTextFile::Close() {
    if (file_) std::fclose(file_);
    file_ = nullptr;
    fullPath_.clear();
}

std::wstring QtrTextFile::FullPath() const { return fullPath_; }

void QtrTextFile::WriteString(const std::wstring& text) {
    if (!file_) return;
    const std::string bytes = quantor::detail::ToUtf8(text);
    std::fwrite(bytes.data(), 1, bytes.size(), file_);
}
