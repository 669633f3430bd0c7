// How `quantor check` shows findings: "file:line:column: error|warning:
// message", then the source line and a caret under the column, as compilers
// do; or every finding as one JSON document.
#pragma once

#include <map>
#include <string>
#include <vector>

#include <quantor/quantor.h>

#include "output.h"

namespace quantor_cli {

class CheckReport {
public:
    void Add(const QtrDiagnostics& findings);
    size_t Errors() const { return errors_; }
    size_t Warnings() const { return warnings_; }

    void TextWrite(Output& out);
    void JsonWrite(Output& out, const std::vector<std::string>& files, bool passed) const;

private:
    // The line of `file` at `line` (1-based), or empty when it cannot be read.
    const std::wstring& SourceLine(const std::wstring& file, int line);

    QtrDiagnostics findings_;
    size_t errors_ = 0;
    size_t warnings_ = 0;
    std::map<std::wstring, std::vector<std::wstring>> sources_;
};

}  // namespace quantor_cli
