// The printers' text file: UTF-8 without a byte-order mark, truncation on
// open, an absolute path, and closing on destruction.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "quantor/types.h"

namespace {

std::string TempPath(const std::string& name) { return ::testing::TempDir() + name; }
std::wstring Wide(const std::string& ascii) { return std::wstring(ascii.begin(), ascii.end()); }

std::string FileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

TEST(TextFile, WritesUtf8WithoutAByteOrderMark) {
    const std::string path = TempPath("text_file_utf8.txt");
    {
        QtrTextFile file;
        ASSERT_TRUE(file.Open(Wide(path).c_str()));
        file.WriteString(L"unit \u00b0C;\n");
        file.WriteString(L"\u20ac \U0001F600");
    }  // the destructor closes and flushes
    EXPECT_EQ(FileBytes(path), "unit \xC2\xB0" "C;\n\xE2\x82\xAC \xF0\x9F\x98\x80");
    std::remove(path.c_str());
}

TEST(TextFile, OpenTruncatesAndReopenClosesThePreviousFile) {
    const std::string first = TempPath("text_file_first.txt"), second = TempPath("text_file_second.txt");
    QtrTextFile file;
    ASSERT_TRUE(file.Open(Wide(first).c_str()));
    file.WriteString(L"old content");
    ASSERT_TRUE(file.Open(Wide(second).c_str()));
    file.WriteString(L"second");
    ASSERT_TRUE(file.Open(Wide(first).c_str()));
    file.WriteString(L"new");
    file.Close();
    EXPECT_EQ(FileBytes(first), "new");
    EXPECT_EQ(FileBytes(second), "second");
    std::remove(first.c_str());
    std::remove(second.c_str());
}

TEST(TextFile, FullPathIsAbsoluteAndResolved) {
    QtrTextFile file;
    ASSERT_TRUE(file.Open(Wide(::testing::TempDir() + "./text_file_path.txt").c_str()));
    const std::wstring full = file.FullPath();
    ASSERT_FALSE(full.empty());
    EXPECT_EQ(full.front(), L'/');
    EXPECT_EQ(full.find(L"/./"), std::wstring::npos);
    EXPECT_TRUE(full.ends_with(L"/text_file_path.txt")) << full;
    file.Close();
    EXPECT_EQ(file.FullPath(), L"");
    std::remove(TempPath("text_file_path.txt").c_str());

    ASSERT_TRUE(file.Open(L"text_file_relative.txt"));
    const std::filesystem::path here = std::filesystem::canonical(std::filesystem::current_path());
    EXPECT_EQ(file.FullPath(), Wide((here / "text_file_relative.txt").string()));
    file.Close();
    std::remove("text_file_relative.txt");
}

TEST(TextFile, RefusesMissingAndUnreachablePaths) {
    QtrTextFile file;
    EXPECT_FALSE(file.Open(nullptr));
    EXPECT_FALSE(file.Open(L""));
    EXPECT_FALSE(file.Open(Wide(TempPath("no_such_folder/x.txt")).c_str()));
    EXPECT_EQ(file.FullPath(), L"");
    file.WriteString(L"goes nowhere");
    file.Close();
}

}  // namespace
