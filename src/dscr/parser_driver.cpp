// The parser driver: the token source, the values of the expression rules
// with their limits, syntax and scan errors as findings, and
// Parse_UnitdescrFile, which opens the scanner, runs the parser with this
// parse's error state installed and sums up the errors.
#include "dscr/parser_driver.h"

#include <algorithm>
#include <memory>

#include "dscr/grammar.tab.h"
#include "dscr/syntax_error.h"
#include "etc/diag_log.h"

namespace {

bool IsStatementStart(int id) {
    return id == TOKID_KW_CATEG || id == TOKID_KW_CONV || id == TOKID_KW_UNIT || id == TOKID_KW_DFLTINTRN ||
           id == TOKID_KW_DFLTSURFC;
}

int NodeCount(const X_ParsNode* node) { return node ? 1 + NodeCount(node->Left()) + NodeCount(node->Right()) : 0; }

// The value of a tree that the simplifier may have reshaped.
X_Expr Measured(X_ParsNodePtr tree) {
    if (!tree) return kNoExpr;
    const X_Expr value{tree.get(), tree->Depth(), NodeCount(tree.get())};
    tree.release();
    return value;
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

X_Expr X_DscrParse::Record(X_Expr value) {
    lastReduction_ = value;
    return value;
}

X_Expr X_DscrParse::Leaf(TE_PNodeId type) {
    X_ParsNodePtr leaf = X_ParsNode::NewLeaf(type, errors.lastToken);
    return Record(leaf ? X_Expr{leaf.release(), 0, 1} : kNoExpr);
}

bool X_DscrParse::Operator(X_Expr& result, TE_PNodeId type, X_Expr left, X_Expr right) {
    X_ParsNodePtr node = X_ParsNode::NewOperator(type, X_ParsNodePtr(left.node), X_ParsNodePtr(right.node));
    const X_Expr value{node.get(), 1 + std::max(left.depth, right.depth), 1 + left.nodes + right.nodes};
    if (node && value.depth <= kMaxExpressionDepth && value.nodes <= kMaxExpressionNodes) {
        node.release();
        result = Record(value);
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

X_Expr X_DscrParse::EmptyOperand() {
    if (!lastReduction_.node) return Record(kNoExpr);
    auto copy = std::make_unique<X_ParsNode>(*lastReduction_.node);
    return Record({copy.release(), lastReduction_.depth, lastReduction_.nodes});
}

X_Expr X_DscrParse::ConstExpr(X_Expr expression) { return Record(Measured(Expr_Const(Take(expression)))); }

X_Expr X_DscrParse::NoValue() { return Record(kNoExpr); }

X_ParsNodePtr X_DscrParse::Take(X_Expr value) {
    if (value.node && value.node == lastReduction_.node) lastReduction_ = kNoExpr;
    return X_ParsNodePtr(value.node);
}

void Expr_Free(X_Expr value) { delete value.node; }

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

bool Parse_UnitdescrFile(QtrAdminStd* admin, const std::wstring& path, QtrDiagnostics* findings) {
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
        yyparse(parse);
    }
    parse.scanner.Close();
    const int32_t errorCount = parse.errors.errorCount;
    if (errorCount == 0) return true;
    Error_Report(kSrcParsOps, 108, L"Parse_UnitdescrFile(,\"%s\"): %d errors\n", path, errorCount);
    return false;
}
