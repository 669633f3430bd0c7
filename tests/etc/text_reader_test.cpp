// The text reader on real files: encodings, line ends and malformed bytes.
#include "etc/text_reader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "support/scratch_folder.h"

namespace {

using namespace std::string_view_literals;
using Lines = std::vector<std::wstring>;

TEST(TextReader, EncodingsLineEndsAndMalformedBytes) {
    const ScratchFolder folder;
    const std::filesystem::path path = folder.path / "text.txt";
    const std::pair<std::string_view, Lines> cases[] = {
        {"one\r\ntwo\n\nin\rside\nlast\r", {L"one", L"two", L"", L"in\rside", L"last"}},
        {"\n\n", {L"", L""}},
        {"", {}},
        {"caf\xC3\xA9\n\xE2\x82\xAC 5", {L"caf\u00e9", L"\u20ac 5"}},
        {"\xEF\xBB\xBF" "caf\xC3\xA9\r\n\xF0\x9D\x84\x9E", {L"caf\u00e9", L"\U0001D11E"}},
        {"\xFF\xFE" "a\0\xE9\0\r\0\n\0\x34\xD8\x1E\xDD"sv, {L"a\u00e9", L"\U0001D11E"}},
        {"\xFE\xFF" "\0a\0\xE9\0\r\0\n\xD8\x34\xDD\x1E"sv, {L"a\u00e9", L"\U0001D11E"}},
        {"a\xFF\xC3(\n\xE2\x82", {L"a\uFFFD\uFFFD(", L"\uFFFD\uFFFD"}},
        {"\xFF\xFE" "\x1E\xDD\x34\xD8z\0!"sv, {L"\uFFFD\uFFFDz\uFFFD"}},  // lone surrogates, a lone last byte
        {"\xFE\xFF" "\xD8\x34"sv, {L"\uFFFD"}},
    };
    for (const auto& [bytes, expected] : cases) {
        std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        quantor::detail::TextReader reader;
        EXPECT_TRUE(reader.Open(path.wstring()));
        Lines lines;
        for (std::wstring line; reader.ReadLine(line);) lines.push_back(line);
        EXPECT_EQ(lines, expected) << testing::PrintToString(bytes);
    }
}

}  // namespace
