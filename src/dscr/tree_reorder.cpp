// Operand order for the simplifier, Tree_Reorder: in a sum, a difference or
// a product the operand that holds a unit name comes first, and otherwise
// the deeper operand comes second. A difference is turned into a sum with a
// negated operand before its operands are exchanged.
#include "dscr/tree_opt.h"

namespace {

bool IsReorderable(const X_ParsNode& n) {
    const TE_PNodeId type = n.Type();
    return (type == ND_MULT || type == ND_PLUS || type == ND_MINUS) && n.Left() && n.Right();
}

bool OperandsExchangeWanted(const X_ParsNode& n) {
    const bool leftHasName = n.Left()->FindName(nullptr) != nullptr;
    const bool rightHasName = n.Right()->FindName(nullptr) != nullptr;
    if (leftHasName != rightHasName) return rightHasName;
    return n.Left()->Depth() > n.Right()->Depth();
}

// a - b becomes (u- b) + a; a op b becomes b op a.
void OperandsExchange(X_ParsNode& n) {
    if (n.Type() == ND_MINUS) {
        n.SetRight(X_ParsNode::NewOperator(ND_UNMINUS, n.TakeRight(), nullptr));
        n.SetType(ND_PLUS);
    }
    X_ParsNodePtr left = n.TakeLeft();
    n.SetLeft(n.TakeRight());
    n.SetRight(std::move(left));
}

}  // namespace

namespace quantor::detail {

int Tree_Reorder(X_ParsNode& node, TreeOptimizer optimize) {
    if (node.IsLeaf()) return 0;
    const int childChanges = Tree_OptChildren(node, optimize);
    if (!IsReorderable(node) || !OperandsExchangeWanted(node)) return childChanges;
    OperandsExchange(node);
    return childChanges + 1;
}

}  // namespace quantor::detail
