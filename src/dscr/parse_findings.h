// The findings of one parse: the records that a host shows to a catalogue
// author (file, line, column, severity, plain-English message and the
// library's own text), and the bound on what one statement may report. A
// parse owns its findings, so parses on different threads never mix them.
// After the first error of a statement, later errors of that statement are
// still counted but neither written to the trace nor recorded, so that the
// errors of a file grow at most in proportion to its size.
#pragma once

#include <string>
#include <utility>

#include "dscr/token.h"
#include "quantor/diagnostics.h"

class X_ParseFindings {
public:
    // Records go to `records` under the name `file`; without a call (or with
    // null) nothing is recorded.
    void CollectInto(QtrDiagnostics* records, std::wstring file);
    bool IsCollecting() const { return records_ != nullptr; }

    // A statement (or a category head) begins with `first`.
    void StatementBegin(const X_Token& first);
    // The first token of the current statement; an empty token before any.
    const X_Token& Statement() const { return statement_; }

    // Whether an error of the current statement is to be written: the first
    // one is, later ones are not. Before any statement every error is.
    bool ErrorAdmit();

    // Notes that an operand of the current statement is missing before the
    // token at `line` and `column`; the first such place of a statement is
    // kept. An empty operand reads as a copy of the value before it, so an
    // error that the statement's formula then meets is best explained by it.
    void MissingOperandNote(int line, int column);
    // Whether the current statement misses an operand, and where.
    bool MissingOperand(int& line, int& column) const;

    // Adds a record at a 1-based line and a 0-based column. A position before
    // the first line (a node built without a token) stands for the current
    // statement's first token.
    void Add(QtrSeverity severity, int line, int column, std::wstring message, std::wstring libraryText = {});
    void AddError(int line, int column, std::wstring message, std::wstring libraryText = {}) {
        Add(QtrSeverity::Error, line, column, std::move(message), std::move(libraryText));
    }
    void AddWarning(int line, int column, std::wstring message) {
        Add(QtrSeverity::Warning, line, column, std::move(message));
    }
    // An error about the file as a whole, at line 0 and column 0.
    void AddForFile(std::wstring message, std::wstring libraryText);

private:
    QtrDiagnostics* records_ = nullptr;
    std::wstring file_;
    X_Token statement_;
    bool statementHasError_ = false;
    int missingLine_ = 0;  // 0: no operand of the statement is missing
    int missingColumn_ = 0;
};
