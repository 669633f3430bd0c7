// The file search: the order of the places it tries and its report of a
// missing PATH. Each test runs in a scratch folder that is also the current
// folder, with PATH and QUANTOR_RLG_PATH set for it (and not put back).
#include "etc/file_search.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "etc/utf8.h"
#include "support/scratch_folder.h"
#include "support/sink_capture.h"

namespace {

namespace fs = std::filesystem;
using quantor::detail::FromUtf8;

class FileSearch : public testing::Test {
protected:
    void SetUp() override {
        fs::current_path(root_);
        setenv("QUANTOR_RLG_PATH", (root_ / "rlg").c_str(), 1);
        setenv("PATH", (root_ / "nowhere").c_str(), 1);
    }
    void TearDown() override { fs::current_path(savedCwd_); }

    // Creates the file `relative` below the scratch folder; answers its path.
    std::wstring Touch(const fs::path& relative) const {
        fs::create_directories((root_ / relative).parent_path());
        std::ofstream(root_ / relative) << "category A { }\n";
        return FromUtf8((root_ / relative).string());
    }

    const fs::path savedCwd_ = fs::current_path();
    const ScratchFolder scratch_;
    const fs::path& root_ = scratch_.path;
    LogCapture log_;
};

// Each place found is removed, so the next search goes one further. Only the
// name as given keeps its folder; empty PATH entries and folders are skipped.
TEST_F(FileSearch, PlacesAreTriedInTheirFixedOrder) {
    const std::wstring places[] = {Touch("sub/units.dscr"), Touch("Inst/Program/BIN/units.dscr"),
                                   Touch("Inst/data/unitsandcurrencies/units.dscr"), Touch("units.dscr"),
                                   Touch("rlg/units.dscr"), Touch("bin2/units.dscr")};
    fs::create_directories(root_ / "bin1/units.dscr");
    setenv("PATH", ("::" + (root_ / "bin1").string() + "::" + (root_ / "bin2").string() + "/").c_str(), 1);
    const std::wstring program = FromUtf8((root_ / "Inst/Program/BIN/host").string());
    for (const std::wstring& expected : places) {
        EXPECT_EQ(UnitFilePathSearchFrom(L"sub/units.dscr", program), expected);
        fs::remove(quantor::detail::ToUtf8(expected));
    }
    EXPECT_EQ(UnitFilePathSearchFrom(L"sub/units.dscr", program), L"");
    EXPECT_TRUE(log_.Entries().empty());
}

TEST_F(FileSearch, MissingPathIsReportedOnlyWhenTheSearchComesToIt) {
    const std::wstring configured = Touch("rlg/units.dscr");
    unsetenv("PATH");
    EXPECT_EQ(UnitFilePathSearchFrom(L"units.dscr", L""), configured);
    EXPECT_TRUE(log_.Entries().empty());
    EXPECT_EQ(UnitFilePathSearchFrom(L"x/missing.dscr", L""), L"");
    ASSERT_EQ(log_.Entries().size(), 1u);
    EXPECT_EQ(log_.Entries()[0].line, 195u);
    EXPECT_EQ(log_.Entries()[0].message, L"UnitFilePathSearch(\"x/missing.dscr\"): no PATH-environment variable\n");
}

// In a Turkish locale the lower case of 'I' is a dotless i; the sibling
// folder rule must match "BIN" all the same.
TEST_F(FileSearch, LetterCaseIsFoldedAlikeInEveryLocale) {
    const std::string previous = std::setlocale(LC_CTYPE, nullptr);
    if (std::setlocale(LC_CTYPE, "tr_TR.UTF-8") == nullptr) GTEST_SKIP() << "no Turkish locale installed";
    const std::wstring expected = Touch("Inst/data/unitsandcurrencies/units.dscr");
    const std::wstring found = UnitFilePathSearchFrom(L"units.dscr", FromUtf8((root_ / "Inst/PROGRAM/BIN/host").string()));
    std::setlocale(LC_CTYPE, previous.c_str());
    EXPECT_EQ(found, expected);
}

}  // namespace
