// Removal of subexpressions that cancel, Tree_ExprElim: a part of a node's
// left operand and a part of its right operand that match each other (equal
// in a difference, a product or a conversion formula; negated in a sum;
// reciprocal in a quotient) are both removed, or the node becomes 0 or 1
// when the two operands themselves match. The structural matchers and the
// pair search live here too.
// The matchers and the searches recurse; each level counts towards the
// simplifier's limits (tree_limits.h), and at a limit they answer "no match".
#include "dscr/tree_limits.h"
#include "dscr/tree_opt.h"

namespace quantor::detail {

bool IsEqualExpr(const X_ParsNode* a, const X_ParsNode* b) {
    const TreeStep step;
    if (!step.Allowed()) return false;
    if (!a || !b) return !a && !b;
    if (a->IsLeaf() && b->IsLeaf()) return a->IsConstant() ? TreeValuesEqual(a->Value(), b->Value()) : a->Name() == b->Name();
    if (a->Type() == ND_UNMINUS) return IsNegatedExpr(a->Left(), b);
    if (b->Type() == ND_UNMINUS) return IsNegatedExpr(a, b->Left());
    // The types of inner nodes are not compared: a + b matches a * b.
    if (!a->Left()) return false;
    return IsEqualExpr(a->Left(), b->Left()) && (!a->Right() || IsEqualExpr(a->Right(), b->Right()));
}

bool IsNegatedExpr(const X_ParsNode* a, const X_ParsNode* b) {
    const TreeStep step;
    if (!step.Allowed()) return false;
    if (!a || !b) return !a && !b;
    if (a->IsConstant() && b->IsConstant()) return TreeValuesEqual(a->Value(), -b->Value());
    if (a->Type() == ND_UNMINUS) return IsEqualExpr(a->Left(), b);
    if (b->Type() == ND_UNMINUS) return IsEqualExpr(a, b->Left());
    if (a->Type() != b->Type()) return false;
    const X_ParsNode* al = a->Left();
    const X_ParsNode* ar = a->Right();
    const X_ParsNode* bl = b->Left();
    const X_ParsNode* br = b->Right();
    switch (a->Type()) {
        case ND_MULT:
        case ND_DIV: return (IsEqualExpr(al, bl) && IsNegatedExpr(ar, br)) || (IsNegatedExpr(al, bl) && IsEqualExpr(ar, br));
        case ND_MINUS: return (IsEqualExpr(al, br) && IsEqualExpr(ar, bl)) || (IsNegatedExpr(al, bl) && IsNegatedExpr(ar, br));
        case ND_PLUS: return (IsNegatedExpr(al, bl) && IsNegatedExpr(ar, br)) || (IsNegatedExpr(al, br) && IsNegatedExpr(ar, bl));
        default: return false;
    }
}

namespace {

// 1 / x: a quotient whose dividend is the constant 1.
bool IsOneOver(const X_ParsNode* x) {
    return x->Type() == ND_DIV && x->Left() && x->Left()->IsConstant() && TreeValuesEqual(x->Left()->Value(), 1.0);
}

}  // namespace

bool IsReciprocalExpr(const X_ParsNode* a, const X_ParsNode* b) {
    if (!a || !b) return !a && !b;
    if (a->IsConstant() && b->IsConstant()) return TreeValuesEqual(a->Value(), 1.0 / b->Value());
    if (IsOneOver(a)) return IsEqualExpr(a->Right(), b);
    if (IsOneOver(b)) return IsEqualExpr(a, b->Right());
    return false;
}

std::optional<CancelPair> FindCancelPair(X_ParsNode* left, X_ParsNode* right, X_ParsNode::NodeMatcher matches) {
    const TreeStep step;
    if (!left || !right || !step.Allowed()) return std::nullopt;
    CancelPair pair;
    if (right->FindNode(left, matches, pair.parentB, pair.b)) {
        pair.a = left;
        return pair;
    }
    const TE_PNodeId type = left->Type();
    if (type != ND_PLUS && type != ND_MINUS) return std::nullopt;
    std::optional<CancelPair> below = FindCancelPair(left->Left(), right, matches);
    if (type == ND_PLUS && !below) below = FindCancelPair(left->Right(), right, matches);
    // A difference's subtrahend is searched even after its minuend gave a
    // pair, and that later answer is the one that counts.
    if (type == ND_MINUS) below = FindCancelPair(left->Right(), right, matches);
    if (below && !below->parentA) below->parentA = left;
    return below;
}

}  // namespace quantor::detail

namespace {

using namespace quantor::detail;

X_ParsNode::NodeMatcher CancelMatcher(TE_PNodeId type) {
    switch (type) {
        case ND_MINUS:
        case ND_CONVFORM:
        case ND_MULT: return IsEqualExpr;
        case ND_PLUS: return IsNegatedExpr;
        case ND_DIV: return IsReciprocalExpr;
        default: return nullptr;
    }
}

// Clears the fixed-point marks (see tree_opt.cpp) on the path from `from`
// down to `target`: an edit of `target` changes every subtree on the way.
bool FixedPointMarksClear(X_ParsNode* from, const X_ParsNode* target) {
    const TreeStep step;
    if (!from || !step.Allowed()) return false;
    if (from != target && !FixedPointMarksClear(from->Left(), target) && !FixedPointMarksClear(from->Right(), target))
        return false;
    from->SetFixedPointMark(0);
    return true;
}

// The two operands themselves cancel.
void OperandsCancel(X_ParsNode& n) {
    switch (n.Type()) {
        case ND_PLUS:
        case ND_MINUS: n.SetFloat(0.0); break;
        case ND_MULT:
        case ND_DIV: n.SetFloat(1.0); break;
        default: TreeError_Report(&n, L"Tree_ExprElim: cannot delete subexprs in %s\n", n.NodeText()); break;
    }
}

// Removes b and then a, each from its parent; a missing parent is N.
void PartsCancel(X_ParsNode& n, const CancelPair& pair) {
    X_ParsNode* parentA = pair.parentA ? pair.parentA : &n;
    X_ParsNode* parentB = pair.parentB ? pair.parentB : &n;
    FixedPointMarksClear(&n, parentA);
    FixedPointMarksClear(&n, parentB);
    // Removing b from N moves N's left operand up into N; when that operand
    // was a's parent, N holds a from then on.
    if (parentB == &n && parentA == n.Left()) parentA = &n;
    parentB->SubExpr_Del(pair.b);
    parentA->SubExpr_Del(pair.a);
}

}  // namespace

namespace quantor::detail {

int Tree_ExprElim(X_ParsNode& node, TreeOptimizer optimize) {
    const int childChanges = Tree_OptChildren(node, optimize);
    const X_ParsNode::NodeMatcher matcher = CancelMatcher(node.Type());
    if (!matcher) return childChanges;
    const std::optional<CancelPair> pair = FindCancelPair(node.Left(), node.Right(), matcher);
    if (!pair) return childChanges;
    if (pair->parentA || pair->parentB)
        PartsCancel(node, *pair);
    else
        OperandsCancel(node);
    return childChanges + 1;
}

}  // namespace quantor::detail
