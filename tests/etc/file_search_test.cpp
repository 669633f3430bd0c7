// The file search: the order of the places it tries, which part of the name
// each place uses, the PATH walk and its missing-PATH report. Every test runs
// in its own scratch folder with the current folder, PATH and
// QUANTOR_RLG_PATH set for it and restored afterwards.
#include "etc/file_search.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "etc/utf8.h"
#include "quantor/sinks.h"

namespace {

namespace fs = std::filesystem;
using quantor::detail::FromUtf8;

std::optional<std::string> EnvironmentGet(const char* name) {
    const char* value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

void EnvironmentRestore(const char* name, const std::optional<std::string>& value) {
    if (value)
        setenv(name, value->c_str(), 1);
    else
        unsetenv(name);
}

class FileSearch : public testing::Test {
protected:
    void SetUp() override {
        savedPath_ = EnvironmentGet("PATH");
        savedRlg_ = EnvironmentGet("QUANTOR_RLG_PATH");
        savedCwd_ = fs::current_path();
        std::string pattern = (fs::temp_directory_path() / "quantor_search_XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        root_ = fs::canonical(pattern);
        fs::create_directories(root_ / "work");
        fs::current_path(root_ / "work");
        unsetenv("QUANTOR_RLG_PATH");
        setenv("PATH", (root_ / "nowhere").c_str(), 1);
        previousLog_ = QtrSetLogSink([this](const QtrLogEntry& entry) { log_.push_back(entry); });
    }
    void TearDown() override {
        QtrSetLogSink(previousLog_);
        fs::current_path(savedCwd_);
        EnvironmentRestore("PATH", savedPath_);
        EnvironmentRestore("QUANTOR_RLG_PATH", savedRlg_);
        fs::remove_all(root_);
    }

    // Creates the file `relative` below the scratch folder; answers its path.
    std::wstring Touch(const fs::path& relative) {
        const fs::path path = root_ / relative;
        fs::create_directories(path.parent_path());
        std::ofstream(path) << "category A { }\n";
        return Wide(path);
    }
    std::wstring Wide(const fs::path& path) const { return FromUtf8(path.string()); }
    // A program that stands in a ".../Program/BIN" folder of the scratch tree.
    std::wstring Program() const { return Wide(root_ / "Inst" / "Program" / "BIN" / "host"); }

    fs::path root_;
    std::vector<QtrLogEntry> log_;

private:
    std::optional<std::string> savedPath_, savedRlg_;
    fs::path savedCwd_;
    QtrLogSink previousLog_;
};

TEST_F(FileSearch, PlacesAreTriedInTheirFixedOrder) {
    const std::wstring asGiven = Touch("work/sub/units.dscr");
    const std::wstring programFolder = Touch("Inst/Program/BIN/units.dscr");
    const std::wstring dataFolder = Touch("Inst/data/unitsandcurrencies/units.dscr");
    const std::wstring currentFolder = Touch("work/units.dscr");
    const std::wstring configured = Touch("rlg/units.dscr");
    const std::wstring onPath = Touch("bin2/units.dscr");
    setenv("QUANTOR_RLG_PATH", (root_ / "rlg").c_str(), 1);
    setenv("PATH", ((root_ / "bin1").string() + ":" + (root_ / "bin2").string()).c_str(), 1);

    for (const std::wstring& expected : {asGiven, programFolder, dataFolder, currentFolder, configured, onPath}) {
        EXPECT_EQ(UnitFilePathSearchFrom(L"sub/units.dscr", Program()), expected);
        fs::remove(fs::path(quantor::detail::ToUtf8(expected)));
    }
    EXPECT_EQ(UnitFilePathSearchFrom(L"sub/units.dscr", Program()), L"");
    EXPECT_TRUE(log_.empty());
}

TEST_F(FileSearch, NameAsGivenIsMadeAbsoluteAndMayNameAnyFolder) {
    const std::wstring file = Touch("elsewhere/a.dscr");
    EXPECT_EQ(UnitFilePathSearchFrom(L"../elsewhere/a.dscr", Program()), file);
    EXPECT_EQ(UnitFilePathSearchFrom(Wide(root_ / "elsewhere" / "a.dscr"), L""), file);
    // Later places use only the file name, never the folder of the name.
    EXPECT_EQ(UnitFilePathSearchFrom(L"../elsewhere/b.dscr", Program()), L"");
    EXPECT_EQ(UnitFilePathSearchFrom(L"elsewhere/a.dscr", Program()), L"");
}

TEST_F(FileSearch, DataFolderIsBuiltFromTheProgramPathAsItIs) {
    const std::wstring file = Touch("Inst/data/unitsandcurrencies/units.dscr");
    EXPECT_EQ(UnitFilePathSearchFrom(L"units.dscr", Wide(root_ / "Inst" / "pROGRAM" / "bin" / "host")), file);
    EXPECT_EQ(UnitFilePathSearchFrom(L"units.dscr", Wide(root_ / "Inst" / "program" / "bins" / "host")), file);
    // Without a "program/bin" folder there is no data folder to try.
    EXPECT_EQ(UnitFilePathSearchFrom(L"units.dscr", Wide(root_ / "Inst" / "bin" / "host")), L"");
    // The folder is not lower-cased: "inst" is a different folder.
    EXPECT_EQ(UnitFilePathSearchFrom(L"units.dscr", Wide(root_ / "inst" / "Program" / "Bin" / "host")), L"");
}

TEST_F(FileSearch, RunningProgramsFolderIsSearched) {
    const fs::path beside = fs::read_symlink("/proc/self/exe").parent_path() / "file_search_test_beside.dscr";
    std::ofstream(beside) << "category A { }\n";
    const std::wstring found = UnitFilePathSearch(L"some/folder/file_search_test_beside.dscr");
    fs::remove(beside);
    EXPECT_EQ(found, Wide(fs::canonical(beside.parent_path()) / beside.filename()));
}

TEST_F(FileSearch, ConfiguredFolderWorksWithOrWithoutTrailingSlash) {
    const std::wstring file = Touch("rlg/units.dscr");
    setenv("QUANTOR_RLG_PATH", (root_ / "rlg").c_str(), 1);
    EXPECT_EQ(RlgPathGet(), Wide(root_ / "rlg"));
    EXPECT_EQ(UnitFilePathSearchFrom(L"units.dscr", L""), file);
    setenv("QUANTOR_RLG_PATH", ((root_ / "rlg").string() + "/").c_str(), 1);
    EXPECT_EQ(UnitFilePathSearchFrom(L"units.dscr", L""), file);
    unsetenv("QUANTOR_RLG_PATH");
    EXPECT_EQ(RlgPathGet(), L"");
}

TEST_F(FileSearch, PathEntriesAreWalkedAndEmptyOnesSkipped) {
    const std::wstring file = Touch("b/units.dscr");
    Touch("a/other.dscr");
    setenv("PATH", ("::" + (root_ / "a").string() + ":" + (root_ / "b").string() + "/").c_str(), 1);
    EXPECT_EQ(UnitFilePathSearchFrom(L"units.dscr", L""), file);
    EXPECT_EQ(UnitFilePathSearchFrom(L"missing.dscr", L""), L"");
    EXPECT_TRUE(log_.empty());
}

TEST_F(FileSearch, FoldersDoNotCountAsFiles) {
    fs::create_directories(root_ / "work" / "units.dscr");
    EXPECT_EQ(UnitFilePathSearchFrom(L"units.dscr", L""), L"");
    EXPECT_EQ(UnitFilePathSearchFrom(L"", L""), L"");
}

TEST_F(FileSearch, MissingOrEmptyPathIsReportedOnlyWhenNeeded) {
    for (bool unset : {true, false}) {
        log_.clear();
        if (unset)
            unsetenv("PATH");
        else
            setenv("PATH", "", 1);
        EXPECT_EQ(UnitFilePathSearchFrom(L"x/missing.dscr", L""), L"");
        ASSERT_EQ(log_.size(), 1u);
        EXPECT_EQ(log_[0].line, 195u);
        EXPECT_EQ(log_[0].message, L"UnitFilePathSearch(\"x/missing.dscr\"): no PATH-environment variable\n");
    }
    log_.clear();
    const std::wstring file = Touch("rlg/units.dscr");
    setenv("QUANTOR_RLG_PATH", (root_ / "rlg").c_str(), 1);
    EXPECT_EQ(UnitFilePathSearchFrom(L"units.dscr", L""), file);
    EXPECT_TRUE(log_.empty());
}

}  // namespace
