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

bool ParseFile(QtrAdminStd* admin, const std::wstring& path) {
    X_DscrParse parse(admin);
    if (!parse.scanner.SFOpen(path)) {
        Error_Report(kSrcParsOps, 93, L"Parse_UnitdescrFile(,\"%s\"): file not found\n", path);
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
bool Parse_UnitdescrFile(QtrAdminStd* admin, const std::wstring& path) {
    try {
        return ParseFile(admin, path);
    } catch (const std::exception&) {
    }
    try {
        Error_Report(kSrcParsOps, 108, L"Parse_UnitdescrFile(,\"%s\"): out of memory\n", path);
    } catch (const std::exception&) {
    }
    return false;
}
