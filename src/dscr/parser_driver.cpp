// The parser driver: the token source, the values of the expression rules
// with their limits, syntax and scan errors as findings, and
// Parse_UnitdescrFile, which opens the scanner, runs the parser with this
// parse's error state installed and sums up the errors.
#include "dscr/parser_driver.h"

#include <algorithm>
#include <filesystem>
#include <memory>

#include "dscr/grammar.tab.h"
#include "dscr/syntax_error.h"
#include "dscr/tree_limits.h"
#include "etc/diag_log.h"
#include "etc/utf8.h"

namespace {

using namespace quantor::detail;

bool IsStatementStart(int id) {
    return id == TOKID_KW_CATEG || id == TOKID_KW_CONV || id == TOKID_KW_UNIT || id == TOKID_KW_DFLTINTRN ||
           id == TOKID_KW_DFLTSURFC;
}

// The simplifier's work allowance for reading the file at `path`.
uint64_t ParseWorkAllowance(const std::wstring& path) {
    std::error_code error;
    const uintmax_t bytes = std::filesystem::file_size(ToUtf8(path), error);
    return kParseBaseWorkAllowance + (error ? 0 : kParseWorkPerByte * static_cast<uint64_t>(bytes));
}

}  // namespace

int X_DscrParse::TokenNext() {
    precedingEndLine_ = lastEndLine_;
    precedingEndColumn_ = lastEndColumn_;
    lastEndLine_ = scanner.CurrentToken().line;
    lastEndColumn_ = scanner.TokenEndColumn();
    const int faultsBefore = scanner.ScanFaultCount();
    const int id = scanner.TokenGet(errors.lastToken);
    if (IsStatementStart(id)) errors.findings.StatementBegin(errors.lastToken);
    if (scanner.ScanFaultCount() != faultsBefore) ScanFault_Record();
    return id == TOKID_EOF ? 0 : id;
}

// A scan error turns the token handed out into TOKID_ERROR, which the parser
// then refuses; the scan error's finding stands for both.
void X_DscrParse::ScanFault_Record() {
    const X_ScanFault& fault = scanner.LastScanFault();
    const X_PlacedText placed = ScanFault_Explain(fault);
    errors.findings.AddError(placed.line, placed.column, placed.message, fault.text);
    scanFaultRecorded_ = true;
}

void X_DscrParse::SyntaxError_Report(std::vector<int> expected) {
    constexpr const wchar_t* kMessage = L"parse error\n";
    ParseError_Count(true);
    const X_Token& found = errors.lastToken;
    ParseError_Trace(found.line, found.column, ParseError_Text(kMessage));
    if (found.id == TOKID_ERROR && scanFaultRecorded_) return;
    const X_SyntaxError error{found, precedingEndLine_, precedingEndColumn_, scanner.LineNumber(),
                              scanner.LastLineLength(), std::move(expected)};
    const X_PlacedText placed = SyntaxError_Explain(error);
    errors.findings.AddError(placed.line, placed.column, placed.message, ParseError_Text(kMessage));
}

X_DscrParse::~X_DscrParse() {
    for (X_ParsNode* tree : owned_) delete tree;
}

X_Expr X_DscrParse::Record(X_ParsNodePtr tree, int depth, int nodes) {
    if (tree) owned_.push_back(tree.get());
    lastReduction_ = tree ? X_Expr{tree.release(), depth, nodes} : kNoExpr;
    return lastReduction_;
}

X_Expr X_DscrParse::Leaf(TE_PNodeId type) { return Record(std::make_unique<X_ParsNode>(type, errors.lastToken), 0, 1); }

bool X_DscrParse::Operator(X_Expr& result, TE_PNodeId type, X_Expr left, X_Expr right) {
    const int depth = 1 + std::max(left.depth, right.depth);
    const int nodes = 1 + left.nodes + right.nodes;
    auto node = std::make_unique<X_ParsNode>(type, Take(left), Take(right));
    if (depth <= kMaxExpressionDepth && nodes <= kMaxExpressionNodes) {
        result = Record(std::move(node), depth, nodes);
        return true;
    }
    ParseError_ReportFinal(node.get(), L"expression too deep\n");
    lastReduction_ = kNoExpr;
    return false;
}

bool X_DscrParse::Formula(X_Expr& result, X_Expr target, X_Expr source) {
    Conv_Begin(actions);
    return Operator(result, ND_CONVFORM, target, source);
}

// Once the file's work allowance is spent nothing is copied: every formula
// from then on is reported as too complex by the simplifier anyway. The
// operand is missing just before the token the parser looks at.
X_Expr X_DscrParse::EmptyOperand() {
    errors.findings.MissingOperandNote(errors.lastToken.line, errors.lastToken.column);
    if (!lastReduction_.node || TreeWork_Exhausted()) return Record(nullptr, -1, 0);
    const X_Expr last = lastReduction_;
    return Record(std::make_unique<X_ParsNode>(*last.node), last.depth, last.nodes);
}

X_Expr X_DscrParse::ConstExpr(X_Expr expression) {
    X_ParsNodePtr tree = Expr_Const(Take(expression));
    if (!tree) return Record(nullptr, -1, 0);
    const int depth = tree->Depth();
    const int nodes = tree->NodeCount();
    return Record(std::move(tree), depth, nodes);
}

X_Expr X_DscrParse::NoValue() { return Record(nullptr, -1, 0); }

// Values are taken in about the order they were made, so the search from
// the back is short.
X_ParsNodePtr X_DscrParse::Take(X_Expr value) {
    if (!value.node) return nullptr;
    if (value.node == lastReduction_.node) lastReduction_ = kNoExpr;
    const auto owner = std::find(owned_.rbegin(), owned_.rend(), value.node);
    if (owner != owned_.rend()) owned_.erase(std::next(owner).base());
    return X_ParsNodePtr(value.node);
}

void X_DscrParse::Free(X_Expr value) { Take(value); }

namespace {

// Runs the parser. An allocation that fails inside it ends the parse as an
// error of the file; the trees on the parser's stack are freed with the
// parse object, and the actions' objects with the actions' state.
void ParserRun(X_DscrParse& parse) {
    try {
        yyparse(parse);
    } catch (const std::exception&) {
        ParseError_Report(L"out of memory\n");
    }
}

}  // namespace

namespace {

// The file could not be opened, or its first token not scanned.
void OpenFailure_Record(X_DscrParse& parse, const std::wstring& libraryText) {
    X_ParseFindings& findings = parse.errors.findings;
    if (parse.scanner.ScanFaultCount() == 0) {
        findings.AddForFile(L"The file cannot be opened or read. Check that it exists and that it is readable.",
                            libraryText);
        return;
    }
    const X_PlacedText placed = ScanFault_Explain(parse.scanner.LastScanFault());
    findings.AddError(placed.line, placed.column, placed.message, parse.scanner.LastScanFault().text);
}

}  // namespace

namespace {

bool ParseFile(QtrAdminStd* admin, const std::wstring& path, QtrDiagnostics* findings) {
    X_DscrParse parse(admin);
    parse.errors.findings.CollectInto(findings, path);
    if (!parse.scanner.SFOpen(path)) {
        const std::wstring message = QtrFormat(L"Parse_UnitdescrFile(,\"%s\"): file not found\n", path);
        Error_Report(kSrcParsOps, 93, L"%s", message);
        OpenFailure_Record(parse, message);
        return false;
    }
    parse.errors.fileName = parse.scanner.FileName();
    {
        const X_ParseStateScope scope(parse.errors);
        const TreeWorkAllowance allowance(ParseWorkAllowance(parse.scanner.FileName()));
        ParserRun(parse);
    }
    parse.scanner.Close();
    const int32_t errorCount = parse.errors.errorCount;
    if (errorCount == 0) return true;
    Error_Report(kSrcParsOps, 108, L"Parse_UnitdescrFile(,\"%s\"): %d errors\n", path, errorCount);
    return false;
}

}  // namespace

// Memory that runs out outside the parser proper (opening the file, the
// summary) fails the read with a log line, if there is memory for that.
bool Parse_UnitdescrFile(QtrAdminStd* admin, const std::wstring& path, QtrDiagnostics* findings) {
    try {
        return ParseFile(admin, path, findings);
    } catch (const std::exception&) {
    }
    try {
        Error_Report(kSrcParsOps, 108, L"Parse_UnitdescrFile(,\"%s\"): out of memory\n", path);
    } catch (const std::exception&) {
    }
    return false;
}
