// The parser driver: the token source, the values of the expression rules
// with their limits, and Parse_UnitdescrFile, which opens the scanner, runs
// the parser with this parse's error state installed and sums up the errors.
#include "dscr/parser_driver.h"

#include <algorithm>
#include <filesystem>
#include <memory>

#include "dscr/grammar.tab.h"
#include "dscr/tree_limits.h"
#include "etc/diag_log.h"
#include "etc/utf8.h"

namespace {

using namespace quantor::detail;

// The value of a tree that the simplifier may have reshaped.
X_Expr Measured(X_ParsNodePtr tree) {
    if (!tree) return kNoExpr;
    const X_Expr value{tree.get(), tree->Depth(), tree->NodeCount()};
    tree.release();
    return value;
}

// The simplifier's work allowance for reading the file at `path`.
uint64_t ParseWorkAllowance(const std::wstring& path) {
    std::error_code error;
    const uintmax_t bytes = std::filesystem::file_size(ToUtf8(path), error);
    return kParseBaseWorkAllowance + (error ? 0 : kParseWorkPerByte * static_cast<uint64_t>(bytes));
}

}  // namespace

int X_DscrParse::TokenNext() {
    const int id = scanner.TokenGet(errors.lastToken);
    return id == TOKID_EOF ? 0 : id;
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
    ParseError_ReportAt(node.get(), L"expression too deep\n");
    lastReduction_ = kNoExpr;
    return false;
}

bool X_DscrParse::Formula(X_Expr& result, X_Expr target, X_Expr source) {
    Conv_Begin(actions);
    return Operator(result, ND_CONVFORM, target, source);
}

// Once the file's work allowance is spent nothing is copied: every formula
// from then on is reported as too complex by the simplifier anyway.
X_Expr X_DscrParse::EmptyOperand() {
    if (!lastReduction_.node || TreeWork_Exhausted()) return Record(kNoExpr);
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

bool Parse_UnitdescrFile(QtrAdminStd* admin, const std::wstring& path) {
    X_DscrParse parse(admin);
    if (!parse.scanner.SFOpen(path)) {
        Error_Report(kSrcParsOps, 93, L"Parse_UnitdescrFile(,\"%s\"): file not found\n", path);
        return false;
    }
    parse.errors.fileName = parse.scanner.FileName();
    {
        const X_ParseStateScope scope(parse.errors);
        const TreeWorkAllowance allowance(ParseWorkAllowance(parse.scanner.FileName()));
        yyparse(parse);
    }
    parse.scanner.Close();
    const int32_t errorCount = parse.errors.errorCount;
    if (errorCount == 0) return true;
    Error_Report(kSrcParsOps, 108, L"Parse_UnitdescrFile(,\"%s\"): %d errors\n", path, errorCount);
    return false;
}
