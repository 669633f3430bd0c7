// quantor check: reads description files in order into one administration,
// as the defaults do, and shows every finding at its place. Without files it
// checks the files the default administration reads, as the settings (and
// --units-dir and --region) select them.
#include "check_report.h"
#include "command.h"
#include "session.h"
#include "text.h"

namespace quantor_cli {

namespace {

// Findings carry what the log would say, so the log stays quiet meanwhile.
class QuietLog {
public:
    QuietLog() : previous_(QtrSetLogSink(nullptr)) {}
    ~QuietLog() { QtrSetLogSink(std::move(previous_)); }
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;

private:
    QtrLogSink previous_;
};

// Reads `files` into one administration; false when a file failed to load.
bool FilesCheck(const std::vector<std::string>& files, CheckReport& report) {
    const QuietLog quiet;
    QtrAdminDscr admin;
    bool loaded = true;
    for (const std::string& file : files) {
        QtrDiagnostics findings;
        const bool read = admin.Import_Parse(Wide(file).c_str(), findings);
        if (!read && findings.empty()) findings.push_back({Wide(file), 0, 0, QtrSeverity::Error, L"cannot read this file", L""});
        report.Add(findings);
        loaded = read && loaded;
    }
    return loaded;
}

std::string Count(size_t count, const char* noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::vector<std::string> DefaultFiles() {
    std::vector<std::string> files;
    for (const std::wstring& file : QtrDefaultDescriptionFiles()) files.push_back(Utf8(file));
    return files;
}

}  // namespace

int CheckRun(Session& session, const Invocation& invocation) {
    const std::vector<std::string> files = invocation.args.empty() ? DefaultFiles() : invocation.args;
    if (files.empty()) {
        ErrorLine("the settings name no description files to check");
        return kExitFailed;
    }
    CheckReport report;
    const bool loaded = FilesCheck(files, report);
    const bool passed = loaded && report.Errors() == 0 && (!invocation.Has("--strict") || report.Warnings() == 0);
    if (session.Json()) {
        report.JsonWrite(Out(), files, passed);
    } else {
        report.TextWrite(Out());
        Out().Line(std::string(passed ? "ok: " : "failed: ") + Count(report.Errors(), "error") + ", " +
                   Count(report.Warnings(), "warning") + " in " + Count(files.size(), "file"));
    }
    return passed ? kExitOk : kExitFailed;
}

}  // namespace quantor_cli
