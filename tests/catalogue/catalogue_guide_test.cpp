// The findings that the guide for catalogue authors (docs/catalogue.md)
// shows are the ones a read gives. The guide's example files are code blocks
// whose first line is "// NAME.txt"; a block whose first line is
// "$ quantor check FILE..." shows, below that line, the findings of reading
// those files into one administration, printed as the check command prints
// them: "file:line:column: error|warning: message", the source line and a
// caret under the column ("file: error: message" for a whole file).
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "etc/utf8.h"
#include "quantor/admin_dscr.h"
#include "support/scratch_folder.h"
#include "support/sink_capture.h"

namespace {

using Lines = std::vector<std::string>;

const char* const kGuide = QUANTOR_TEST_DATA_DIR "/../docs/catalogue.md";

// The contents of the fenced code blocks of a markdown file, in order.
std::vector<Lines> CodeBlocks(const std::string& path) {
    std::ifstream in(path);
    EXPECT_TRUE(in) << path;
    std::vector<Lines> blocks;
    bool inside = false;
    for (std::string line; std::getline(in, line);) {
        const bool fence = line.starts_with("```");
        if (fence && !inside) blocks.emplace_back();
        else if (!fence && inside) blocks.back().push_back(line);
        if (fence) inside = !inside;
    }
    return blocks;
}

// The caret line under `column` (1-based, in characters) of `source`: tabs
// kept, so that the caret lines up however tabs are shown.
std::string CaretLine(const std::string& source, int column) {
    const std::wstring wide = quantor::detail::FromUtf8(source);
    std::wstring pad;
    for (int i = 0; i + 1 < column; ++i) pad += i < static_cast<int>(wide.size()) && wide[i] == L'\t' ? L'\t' : L' ';
    return quantor::detail::ToUtf8(pad) + "^";
}

class GuideExamples : public testing::Test {
protected:
    // Writes an example block to the scratch folder under its name.
    void ExampleWrite(const Lines& block) {
        const std::string name = block[0].substr(3);
        std::ofstream out(folder_.path / name, std::ios::binary);
        for (const std::string& line : block) out << line << '\n';
        examples_[name] = block;
    }
    // The findings of reading `files` in order, as the check command prints them.
    Lines CheckOutput(const Lines& files) {
        const LogCapture log;
        const TraceCapture trace;
        QtrAdminDscr admin;
        Lines output;
        for (const std::string& file : files) {
            used_.insert(file);
            QtrDiagnostics findings;
            admin.Import_Parse(quantor::detail::FromUtf8((folder_.path / file).string()).c_str(), findings);
            for (const QtrDiagnostic& finding : findings) FindingPrint(file, finding, output);
        }
        return output;
    }
    void FindingPrint(const std::string& file, const QtrDiagnostic& finding, Lines& output) const {
        EXPECT_EQ(std::filesystem::path(finding.file).filename(), file);
        const std::string kind = finding.severity == QtrSeverity::Error ? "error" : "warning";
        const std::string message = quantor::detail::ToUtf8(finding.message);
        if (finding.line == 0) {
            output.push_back(file + ": " + kind + ": " + message);
            return;
        }
        output.push_back(file + ":" + std::to_string(finding.line) + ":" + std::to_string(finding.column) + ": " +
                         kind + ": " + message);
        const auto example = examples_.find(file);
        if (example == examples_.end() || finding.line > static_cast<int>(example->second.size())) {
            ADD_FAILURE() << "no line " << finding.line << " in " << file;
            return;
        }
        const std::string& source = example->second[finding.line - 1];
        output.push_back(source);
        output.push_back(CaretLine(source, finding.column));
    }

    ScratchFolder folder_;
    std::map<std::string, Lines> examples_;
    std::set<std::string> used_;
};

TEST_F(GuideExamples, ShowTheFindingsThatTheirFilesGive) {
    static const std::regex kExampleHead("// [A-Za-z0-9_]+\\.txt");
    const std::string kCheck = "$ quantor check ";
    int checks = 0;
    for (const Lines& block : CodeBlocks(kGuide)) {
        if (block.empty()) continue;
        if (std::regex_match(block[0], kExampleHead)) ExampleWrite(block);
        if (!block[0].starts_with(kCheck)) continue;
        SCOPED_TRACE(block[0]);
        std::istringstream words(block[0].substr(kCheck.size()));
        Lines files;
        for (std::string file; words >> file;) files.push_back(file);
        EXPECT_EQ(CheckOutput(files), Lines(block.begin() + 1, block.end()));
        ++checks;
    }
    // Every kind of finding has its example; a guide that lost them fails here.
    EXPECT_GE(checks, 29);
    for (const auto& [name, lines] : examples_) EXPECT_TRUE(used_.count(name)) << name << " is never checked";
}

}  // namespace
