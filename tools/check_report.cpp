// The findings of `quantor check`, shown with their source lines. Each file
// is read once, however many findings it has.
#include "check_report.h"

#include <fstream>

#include "text.h"

namespace quantor_cli {

namespace {

const char* SeverityName(QtrSeverity severity) { return severity == QtrSeverity::Error ? "error" : "warning"; }

std::vector<std::wstring> LinesRead(const std::wstring& file) {
    std::vector<std::wstring> lines;
    std::ifstream in(Utf8(file), std::ios::binary);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (lines.empty() && line.rfind("\xEF\xBB\xBF", 0) == 0) line.erase(0, 3);  // a byte-order mark
        lines.push_back(Wide(line));
    }
    return lines;
}

// Blanks as wide as the text before `column`, tabs kept, then a caret.
std::string CaretLine(const std::wstring& source, int column) {
    std::string caret;
    for (size_t i = 0; i + 1 < static_cast<size_t>(column) && i < source.size(); ++i)
        caret.push_back(source[i] == L'\t' ? '\t' : ' ');
    return caret + "^";
}

}  // namespace

void CheckReport::Add(const QtrDiagnostics& findings) {
    for (const QtrDiagnostic& finding : findings) {
        findings_.push_back(finding);
        ++(finding.severity == QtrSeverity::Error ? errors_ : warnings_);
    }
}

const std::wstring& CheckReport::SourceLine(const std::wstring& file, int line) {
    static const std::wstring kNone;
    auto found = sources_.find(file);
    if (found == sources_.end()) found = sources_.emplace(file, LinesRead(file)).first;
    const std::vector<std::wstring>& lines = found->second;
    return line >= 1 && static_cast<size_t>(line) <= lines.size() ? lines[static_cast<size_t>(line) - 1] : kNone;
}

void CheckReport::TextWrite(Output& out) {
    for (const QtrDiagnostic& finding : findings_) {
        std::string message = Utf8(finding.message);
        while (!message.empty() && message.back() == '\n') message.pop_back();
        std::string line = Utf8(finding.file);
        if (finding.line > 0)
            line.append(":").append(std::to_string(finding.line)).append(":").append(std::to_string(finding.column));
        line.append(": ").append(SeverityName(finding.severity)).append(": ").append(message);
        out.Line(line);
        const std::wstring& source = SourceLine(finding.file, finding.line);
        if (source.empty()) continue;
        out.Line("    " + Utf8(source));
        out.Line("    " + CaretLine(source, finding.column));
    }
}

void CheckReport::JsonWrite(Output& out, const std::vector<std::string>& files, bool passed) const {
    std::string text;
    JsonWriter json(text);
    json.BeginObject().StringArray("files", files).Field("passed", passed);
    json.Key("errors").Number(static_cast<double>(errors_)).Key("warnings").Number(static_cast<double>(warnings_));
    json.Key("findings").BeginArray();
    for (const QtrDiagnostic& finding : findings_) {
        json.BeginObject().Field("file", Utf8(finding.file));
        json.Key("line").Number(finding.line).Key("column").Number(finding.column);
        json.Field("severity", SeverityName(finding.severity)).Field("message", Utf8(finding.message));
        json.Field("libraryText", Utf8(finding.libraryText)).EndObject();
    }
    json.EndArray().EndObject();
    out.Line(text);
}

}  // namespace quantor_cli
