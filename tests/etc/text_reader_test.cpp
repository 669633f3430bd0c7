// The text reader: encodings, line ends, malformed bytes and the full path,
// through real files in a temporary folder.
#include "etc/text_reader.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

using quantor::detail::TextReader;

namespace {

class TextReaderTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "quantor-text-reader-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    // Writes `bytes` into a file of the temporary folder and returns its path.
    std::filesystem::path WriteFile(const std::filesystem::path& name, std::string_view bytes) {
        const std::filesystem::path path = folder_ / name;
        std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return path;
    }

    // Opens a new file with `bytes` and returns every line it holds.
    std::vector<std::wstring> LinesOf(std::string_view bytes) {
        TextReader reader;
        EXPECT_TRUE(reader.Open(WriteFile("lines.txt", bytes).wstring()));
        std::vector<std::wstring> lines;
        for (std::wstring line; reader.ReadLine(line);) lines.push_back(line);
        EXPECT_TRUE(reader.AtEnd());
        return lines;
    }

    std::filesystem::path folder_;
};

using Lines = std::vector<std::wstring>;

TEST_F(TextReaderTest, SplitsLinesAtLineFeedsAndDropsCarriageReturns) {
    EXPECT_EQ(LinesOf("one\r\ntwo\n\nin\rside\nlast\r"), (Lines{L"one", L"two", L"", L"in\rside", L"last"}));
    EXPECT_EQ(LinesOf("only\n"), (Lines{L"only"}));
    EXPECT_EQ(LinesOf("\n\n"), (Lines{L"", L""}));
    EXPECT_EQ(LinesOf(""), Lines{});
}

TEST_F(TextReaderTest, DecodesUtf8WithOrWithoutByteOrderMark) {
    EXPECT_EQ(LinesOf("caf\xC3\xA9\n\xE2\x82\xAC 5"), (Lines{L"caf\u00e9", L"\u20ac 5"}));
    EXPECT_EQ(LinesOf("\xEF\xBB\xBF" "caf\xC3\xA9\r\n\xF0\x9D\x84\x9E"), (Lines{L"caf\u00e9", L"\U0001D11E"}));
}

TEST_F(TextReaderTest, DecodesUtf16BehindItsByteOrderMark) {
    using namespace std::string_view_literals;
    // "a\u00e9" CR LF U+1D11E as a surrogate pair.
    EXPECT_EQ(LinesOf("\xFF\xFE" "a\0\xE9\0\r\0\n\0\x34\xD8\x1E\xDD"sv), (Lines{L"a\u00e9", L"\U0001D11E"}));
    EXPECT_EQ(LinesOf("\xFE\xFF" "\0a\0\xE9\0\r\0\n\xD8\x34\xDD\x1E"sv), (Lines{L"a\u00e9", L"\U0001D11E"}));
}

TEST_F(TextReaderTest, MalformedBytesBecomeReplacementCharacters) {
    using namespace std::string_view_literals;
    EXPECT_EQ(LinesOf("a\xFF\xC3(\n\xE2\x82"), (Lines{L"a\uFFFD\uFFFD(", L"\uFFFD\uFFFD"}));
    // A low surrogate alone, a high surrogate before a plain unit, a lone last byte.
    EXPECT_EQ(LinesOf("\xFF\xFE" "\x1E\xDD\x34\xD8z\0!"sv), (Lines{L"\uFFFD\uFFFDz\uFFFD"}));
    EXPECT_EQ(LinesOf("\xFE\xFF" "\xD8\x34"sv), (Lines{L"\uFFFD"}));
}

TEST_F(TextReaderTest, FilesThatCannotBeReadDoNotOpen) {
    TextReader reader;
    EXPECT_FALSE(reader.Open((folder_ / "missing.txt").wstring()));
    EXPECT_FALSE(reader.Open(folder_.wstring()));
    EXPECT_FALSE(reader.Open(std::wstring(L"lines.txt\0x", 11)));
    EXPECT_FALSE(reader.IsOpen());
    EXPECT_TRUE(reader.AtEnd());
    EXPECT_EQ(reader.FullPath(), L"");
    std::wstring line = L"kept";
    EXPECT_FALSE(reader.ReadLine(line));
    EXPECT_EQ(line, L"kept");
}

TEST_F(TextReaderTest, FullPathIsAbsoluteWithLinksResolved) {
    // The name is given to the system as UTF-8.
    const std::filesystem::path target = WriteFile(u8"d\u00e9j\u00e0.txt", "x\n");
    std::filesystem::create_directory(folder_ / "sub");
    std::filesystem::create_symlink(target, folder_ / "link.txt");
    TextReader reader;
    ASSERT_TRUE(reader.Open((folder_ / "sub" / ".." / "link.txt").wstring()));
    EXPECT_EQ(reader.FullPath(), std::filesystem::canonical(folder_).wstring() + L"/d\u00e9j\u00e0.txt");
    ASSERT_TRUE(reader.Open(std::filesystem::canonical(folder_).wstring() + L"/d\u00e9j\u00e0.txt"));
    EXPECT_TRUE(reader.IsOpen());
}

TEST_F(TextReaderTest, OpeningAgainStartsOverAndCloseForgetsTheFile) {
    TextReader reader;
    ASSERT_TRUE(reader.Open(WriteFile("first.txt", "1\n2\n").wstring()));
    std::wstring line;
    ASSERT_TRUE(reader.ReadLine(line));
    ASSERT_TRUE(reader.Open(WriteFile("second.txt", "A\n").wstring()));
    ASSERT_TRUE(reader.ReadLine(line));
    EXPECT_EQ(line, L"A");
    EXPECT_EQ(reader.FullPath(), std::filesystem::canonical(folder_ / "second.txt").wstring());
    reader.Close();
    EXPECT_FALSE(reader.IsOpen());
    EXPECT_TRUE(reader.AtEnd());
    EXPECT_EQ(reader.FullPath(), L"");
}

TEST_F(TextReaderTest, RandomBytesDecodeWithoutFault) {
    std::mt19937 random(20240611);
    for (const std::string_view start : {"", "\xFF\xFE", "\xFE\xFF", "\xEF\xBB\xBF"}) {
        std::string bytes(start);
        for (int i = 0; i < 20000; ++i) bytes += static_cast<char>(random() & 0xFF);
        size_t characters = 0;
        for (const std::wstring& line : LinesOf(bytes)) characters += line.size() + 1;
        EXPECT_GT(characters, 0u);
        EXPECT_LE(characters, bytes.size() + 1);
    }
}

}  // namespace
