// The findings of one parse: positioned records and the per-statement bound
// on errors.
#include "dscr/parse_findings.h"

#include <utility>

void X_ParseFindings::CollectInto(QtrDiagnostics* records, std::wstring file) {
    records_ = records;
    file_ = std::move(file);
}

void X_ParseFindings::StatementBegin(const X_Token& first) {
    statement_ = first;
    statementHasError_ = false;
    missingLine_ = 0;
}

void X_ParseFindings::MissingOperandNote(int line, int column) {
    if (missingLine_ > 0 || line < 1) return;
    missingLine_ = line;
    missingColumn_ = column;
}

bool X_ParseFindings::MissingOperand(int& line, int& column) const {
    if (missingLine_ < 1) return false;
    line = missingLine_;
    column = missingColumn_;
    return true;
}

bool X_ParseFindings::ErrorAdmit() {
    if (statement_.line < 0) return true;
    const bool first = !statementHasError_;
    statementHasError_ = true;
    return first;
}

void X_ParseFindings::Add(QtrSeverity severity, int line, int column, std::wstring message, std::wstring libraryText) {
    if (!records_) return;
    if (line < 1) {
        line = statement_.line;
        column = statement_.column;
    }
    if (line < 1) {
        line = 1;
        column = 0;
    }
    records_->push_back(
        QtrDiagnostic{file_, line, column + 1, severity, std::move(message), std::move(libraryText)});
}

void X_ParseFindings::AddForFile(std::wstring message, std::wstring libraryText) {
    if (records_)
        records_->push_back(QtrDiagnostic{file_, 0, 0, QtrSeverity::Error, std::move(message), std::move(libraryText)});
}
