// The base of the tests that read description files (it brings gtest and
// gmock): a scratch folder for the files of one test, and what a parse reports.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "dscr/parser_driver.h"
#include "etc/utf8.h"
#include "quantor/admin_dscr.h"
#include "support/scratch_folder.h"
#include "support/sink_capture.h"

using Messages = std::vector<std::wstring>;

// `text` written `count` times in a row.
inline std::string Repeated(const std::string& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) result += text;
    return result;
}

class ParseTest : public testing::Test {
protected:
    // Writes `text` (UTF-8) to the scratch file `name`; answers its path.
    std::wstring WriteFile(const std::string& name, const std::string& text) const {
        std::ofstream(folder_.path / name, std::ios::binary) << text;
        return quantor::detail::FromUtf8((folder_.path / name).string());
    }
    // Reads `text` into `admin`; the captures then hold what it reported.
    bool Parse(QtrAdminStd& admin, const std::string& text) {
        log_.Clear();
        trace_.Clear();
        path_ = WriteFile("test.dscr", text);
        return Parse_UnitdescrFile(&admin, path_);
    }
    // Parses `text`, expecting it accepted or refused with these parser
    // errors written, and a refused file summed up in one log line with the
    // number of errors counted (by default those written).
    void ExpectOutcome(QtrAdminStd& admin, const std::string& text, bool accepted, const Messages& errors,
                       size_t counted = 0) {
        EXPECT_EQ(Parse(admin, text), accepted);
        EXPECT_EQ(ParseErrors(), errors);
        const size_t count = counted ? counted : errors.size();
        const std::wstring summary = L"Parse_UnitdescrFile(,\"" + path_ + L"\"): " + std::to_wstring(count);
        EXPECT_THAT(log_.Messages(), testing::Contains(summary + L" errors\n").Times(accepted ? 0 : 1));
    }
    // The messages of the parser-error reports in the trace, with
    // `positions` each preceded by its "line,column ".
    Messages ParseErrors(bool positions = false) const {
        static const std::wregex kReport(L"\\(([0-9]+,[0-9]+)\\): ##### parser-error: ");
        Messages errors;
        std::wsmatch report;
        for (const std::wstring& text : trace_.Texts())
            if (std::regex_search(text, report, kReport))
                errors.push_back((positions ? report.str(1) + L" " : L"") + report.suffix().str());
        return errors;
    }

    ScratchFolder folder_;
    std::wstring path_;  // the file that Parse wrote last
    LogCapture log_;
    TraceCapture trace_;
};
