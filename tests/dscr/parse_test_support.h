// Support for the tests that read description files: a scratch folder that
// holds the files of one test, and capture of the diagnostics log and of the
// parser-error reports that reach the debug trace.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cwchar>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "dscr/parser_driver.h"
#include "etc/utf8.h"
#include "quantor/admin.h"
#include "quantor/sinks.h"

// One parser-error report, split into its position and its message.
struct ReportedParseError {
    int line = 0;
    int column = 0;
    std::wstring message;
};

class ParseTest : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "quantor_parse_XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = std::filesystem::canonical(pattern);
        previousLog_ = QtrSetLogSink([this](const QtrLogEntry& entry) { log_.push_back(entry); });
        previousTrace_ = QtrSetTraceSink([this](const std::wstring& text) { trace_.push_back(text); });
    }
    void TearDown() override {
        QtrSetLogSink(previousLog_);
        QtrSetTraceSink(previousTrace_);
        std::filesystem::remove_all(folder_);
    }

    // Writes `text` (UTF-8) to the scratch file `name`; answers its path.
    std::wstring WriteFile(const std::string& name, const std::string& text) const {
        std::ofstream(folder_ / name, std::ios::binary) << text;
        return quantor::detail::FromUtf8((folder_ / name).string());
    }
    // Reads `text` as the file "test.dscr" into `admin`.
    bool Parse(QtrAdminStd& admin, const std::string& text) {
        path_ = WriteFile("test.dscr", text);
        return Parse_UnitdescrFile(&admin, path_);
    }

    // The parser-error reports sent to the trace so far.
    std::vector<ReportedParseError> ParseErrors() const {
        const std::wstring marker = L"): ##### parser-error: ";
        std::vector<ReportedParseError> errors;
        for (const std::wstring& text : trace_) {
            const size_t end = text.find(marker);
            if (end == std::wstring::npos) continue;
            const size_t open = text.rfind(L'(', end);
            ReportedParseError error;
            error.message = text.substr(end + marker.size());
            if (std::swscanf(text.c_str() + open, L"(%d,%d)", &error.line, &error.column) == 2)
                errors.push_back(error);
        }
        return errors;
    }
    std::vector<std::wstring> ParseErrorMessages() const {
        std::vector<std::wstring> messages;
        for (const ReportedParseError& error : ParseErrors()) messages.push_back(error.message);
        return messages;
    }
    std::vector<std::wstring> LogMessages() const {
        std::vector<std::wstring> messages;
        for (const QtrLogEntry& entry : log_) messages.push_back(entry.message);
        return messages;
    }

    std::filesystem::path folder_;
    std::wstring path_;  // the file that Parse wrote last
    std::vector<QtrLogEntry> log_;
    std::vector<std::wstring> trace_;

private:
    QtrLogSink previousLog_;
    QtrTraceSink previousTrace_;
};
