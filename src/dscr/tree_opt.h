// The simplifier of formula trees. X_ParsNode::Tree_Opt is the driver: it
// runs four passes over a node in rounds until a round changes nothing or a
// bound on the rounds is reached. Each pass first brings the node's children
// to their own fixed point through the driver it is given, then works on the
// node itself, and returns its number of changes (children's included).
#pragma once

#include <optional>

#include "dscr/pars_node.h"
#include "quantor/numeric.h"

namespace quantor::detail {

// Brings a subtree to its fixed point; its change count, or -1 at the bound.
using TreeOptimizer = int (*)(X_ParsNode& node);

// Every comparison of two values in the simplifier: equal to 10 significant digits.
inline bool TreeValuesEqual(double a, double b) { return IsDblEqual(a, b, 10); }

// Runs `optimize` on the left child and then on the right child, where
// present; the sum of their results.
int Tree_OptChildren(X_ParsNode& node, TreeOptimizer optimize);

// The rewrite rules A1 to H3 (tree_rules.cpp).
int Tree_OptRules(X_ParsNode& node, TreeOptimizer optimize);
// Constant folding and neutral operands, CC L1 to CC R4 (tree_const_calc.cpp).
int Tree_ConstCalc(X_ParsNode& node, TreeOptimizer optimize);
// Removal of subexpressions that cancel (tree_expr_elim.cpp).
int Tree_ExprElim(X_ParsNode& node, TreeOptimizer optimize);
// Unit names first, the deeper operand second (tree_reorder.cpp).
int Tree_Reorder(X_ParsNode& node, TreeOptimizer optimize);

// The matchers of Tree_ExprElim: a = b, a = -b and a = 1 / b. Either side
// may be null; two nulls match.
bool IsEqualExpr(const X_ParsNode* a, const X_ParsNode* b);
bool IsNegatedExpr(const X_ParsNode* a, const X_ParsNode* b);
bool IsReciprocalExpr(const X_ParsNode* a, const X_ParsNode* b);

// A part `a` of a left operand and a part `b` of a right operand that cancel;
// a null parent means the part is the operand itself.
struct CancelPair {
    X_ParsNode* a = nullptr;
    X_ParsNode* parentA = nullptr;
    X_ParsNode* b = nullptr;
    X_ParsNode* parentB = nullptr;
};

// Searches `right` for a node that `matches` the whole of `left`, then does
// the same for the terms of `left` when it is a sum or a difference.
std::optional<CancelPair> FindCancelPair(X_ParsNode* left, X_ParsNode* right, X_ParsNode::NodeMatcher matches);

}  // namespace quantor::detail
