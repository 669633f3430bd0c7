// Reading a description file: Parse_UnitdescrFile runs the grammar's parser
// over one file into an administration. Everything one parse needs lives in
// its parse object (scanner, error state and findings, the actions' state,
// the value of the most recent reduction), so parses on separate threads
// never meet. The parse object also builds the values of the grammar's
// expression rules, refuses expressions nested too deep for the tree's
// recursive walks, and marks where each statement begins.
#pragma once

#include <string>
#include <vector>

#include "dscr/pars_node.h"
#include "dscr/parse_error.h"
#include "dscr/scanner.h"
#include "dscr/semantic_actions.h"
#include "quantor/diagnostics.h"

class QtrAdminStd;

// The value of a grammar symbol: an expression tree (or null) with its
// height and node count, carried along so that limits are checked without
// walking the tree. A plain aggregate, as the parser's value stack requires.
struct X_Expr {
    X_ParsNode* node;  // owned by the parser's value stack
    int depth;         // node->Depth(); -1 without a node
    int nodes;         // nodes in the tree
};

inline constexpr X_Expr kNoExpr{nullptr, -1, 0};

class X_DscrParse {
public:
    // Deeper or larger expressions are refused: the simplifier recurses
    // (within its own nesting limit, tree_limits.h), and the empty operand's
    // copies could double a tree's size with every operator. Real formulas
    // are less than 30 levels deep.
    static constexpr int kMaxExpressionDepth = 200;
    static constexpr int kMaxExpressionNodes = 10000;

    explicit X_DscrParse(QtrAdminStd* admin) : actions(admin) {}
    // Frees the trees still owned by values, which an exception can leave.
    ~X_DscrParse();
    X_DscrParse(const X_DscrParse&) = delete;
    X_DscrParse& operator=(const X_DscrParse&) = delete;

    // The token source: hands the next token to the parser and keeps it as
    // the last token; 0 at the end of the file. A keyword that starts a
    // statement or a category begins a new statement for the error bound.
    int TokenNext();
    // Reports the syntax error at the last token ("parse error"); the finding
    // names what was found and the `expected` token ids.
    void SyntaxError_Report(std::vector<int> expected);

    // Values of the expression rules; each records itself as the value of
    // the most recent reduction.
    X_Expr Leaf(TE_PNodeId type);  // from the last token
    // False when the node is refused (reported, operands freed); the parse
    // then ends.
    bool Operator(X_Expr& result, TE_PNodeId type, X_Expr left, X_Expr right);
    // Conv_Begin, then the ND_CONVFORM node of a `convert` statement.
    bool Formula(X_Expr& result, X_Expr target, X_Expr source);
    // A missing operand stands for a copy of the value of the most recent
    // reduction.
    X_Expr EmptyOperand();
    X_Expr ConstExpr(X_Expr expression);
    X_Expr NoValue();
    // Hands a value's tree over to a semantic action; if it was the value of
    // the most recent reduction, that value is cleared with it.
    X_ParsNodePtr Take(X_Expr value);
    // Frees a value's tree; the parser calls it for values it abandons.
    void Free(X_Expr value);

    X_ParseState errors;  // file name, last token and error count
    X_New_Scanfile scanner;
    X_ActionState actions;

private:
    // Makes `tree` a value owned by this parse and the value of the most
    // recent reduction.
    X_Expr Record(X_ParsNodePtr tree, int depth, int nodes);
    void ScanFault_Record();

    X_Expr lastReduction_ = kNoExpr;
    // Where the last token and the one before it end: line, 0-based column.
    int lastEndLine_ = -1;
    int lastEndColumn_ = 0;
    int precedingEndLine_ = -1;
    int precedingEndColumn_ = 0;
    bool scanFaultRecorded_ = false;
    // The trees of all values made and not yet taken or freed: those on the
    // parser's stack, which bison cannot free when an exception passes.
    std::vector<X_ParsNode*> owned_;
};

// Reads the description file at `path` into `admin`. True when the file was
// read without a counted error; a faulty file is reported by one log line.
// With `findings`, every error and warning is also appended there.
bool Parse_UnitdescrFile(QtrAdminStd* admin, const std::wstring& path, QtrDiagnostics* findings = nullptr);
