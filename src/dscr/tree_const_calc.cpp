// Constant folding for the simplifier, Tree_ConstCalc: an operation on two
// constants becomes its result, and a constant operand that is neutral (0 or
// 1), absorbing (0) or a sign (-1) simplifies its operation. The rules for a
// constant left operand (CC L) and a constant right operand (CC R) are tried
// in their table's order; the first that matches fires.
#include "dscr/tree_opt.h"

namespace {

using quantor::detail::TreeValuesEqual;

struct FoldRule {
    bool (*applies)(TE_PNodeId op, double c);
    void (*rewrite)(X_ParsNode& n);
};

bool IsMultOrDiv(TE_PNodeId op) { return op == ND_MULT || op == ND_DIV; }

// The zero test is on the dividend, not the divisor: a constant divided by a
// constant zero is left to the floating-point division.
double QuotientFold(const X_ParsNode& n, double dividend, double divisor) {
    if (TreeValuesEqual(dividend, 0.0)) {
        TreeError_Report(&n, L"X_ParsNode::Tree_ConstCalc, div by zero\n");
        return 1.0;
    }
    return dividend / divisor;
}

// Both operands constant: the operation's result, for the four arithmetic
// operations only.
bool ConstantOperandsFold(X_ParsNode& n) {
    const double left = n.Left()->Value();
    const double right = n.Right()->Value();
    switch (n.Type()) {
        case ND_DIV: n.SetFloat(QuotientFold(n, left, right)); return true;
        case ND_MINUS: n.SetFloat(left - right); return true;
        case ND_MULT: n.SetFloat(left * right); return true;
        case ND_PLUS: n.SetFloat(left + right); return true;
        default: return false;
    }
}

void ReplaceByRightOperand(X_ParsNode& n) { n.ReplaceBy(n.Right()); }
void ReplaceByLeftOperand(X_ParsNode& n) { n.ReplaceBy(n.Left()); }
void BecomeZero(X_ParsNode& n) { n.SetFloat(0.0); }

// Only the left operand constant; 0 - x, -1 / x and 1 / x stay as they are.
const FoldRule kLeftConstantRules[] = {
    // CC L1: (u- (c)) =: (-c), and (u+ (c)) =: (c)
    {[](TE_PNodeId op, double) { return op == ND_UNMINUS || op == ND_UNPLUS; },
     [](X_ParsNode& n) {
         const double c = n.Left()->Value();
         n.SetFloat(n.Type() == ND_UNMINUS ? -c : c);
     }},
    // CC L2: (-1 * x) =: (u-  x)
    {[](TE_PNodeId op, double c) { return op == ND_MULT && TreeValuesEqual(c, -1.0); },
     [](X_ParsNode& n) {
         n.SetLeft(n.TakeRight());
         n.SetType(ND_UNMINUS);
     }},
    // CC L5: (1 * x) =: (x)
    {[](TE_PNodeId op, double c) { return op == ND_MULT && TreeValuesEqual(c, 1.0); }, ReplaceByRightOperand},
    // CC L3: (0 + x) =: (x)
    {[](TE_PNodeId op, double c) { return op == ND_PLUS && TreeValuesEqual(c, 0.0); }, ReplaceByRightOperand},
    // CC L4: (0 * x) =: (0), also 0 / x
    {[](TE_PNodeId op, double c) { return IsMultOrDiv(op) && TreeValuesEqual(c, 0.0); }, BecomeZero},
};

// Only the right operand constant.
const FoldRule kRightConstantRules[] = {
    // CC R1: (x * -1.0) =: (u- x), also x / -1
    {[](TE_PNodeId op, double c) { return IsMultOrDiv(op) && TreeValuesEqual(c, -1.0); },
     [](X_ParsNode& n) {
         n.SetRight(nullptr);
         n.SetType(ND_UNMINUS);
     }},
    // CC R4: (x * 1) =: (x), also x / 1
    {[](TE_PNodeId op, double c) { return IsMultOrDiv(op) && TreeValuesEqual(c, 1.0); }, ReplaceByLeftOperand},
    // CC R2: (x + 0.0) =: (x), also x - 0
    {[](TE_PNodeId op, double c) { return (op == ND_PLUS || op == ND_MINUS) && TreeValuesEqual(c, 0.0); }, ReplaceByLeftOperand},
    // CC R3: (x * 0) =: (0)
    {[](TE_PNodeId op, double c) { return op == ND_MULT && TreeValuesEqual(c, 0.0); }, BecomeZero},
    // CC R3: (x / 0) =: (1), err
    {[](TE_PNodeId op, double c) { return op == ND_DIV && TreeValuesEqual(c, 0.0); },
     [](X_ParsNode& n) {
         TreeError_Report(n.Right(), L"X_ParsNode::Tree_ConstCalc: div by zero!!!\n");
         n.SetFloat(1.0);
     }},
};

template <size_t N>
bool FirstRuleApply(const FoldRule (&rules)[N], X_ParsNode& n, double c) {
    for (const FoldRule& rule : rules) {
        if (rule.applies(n.Type(), c)) {
            rule.rewrite(n);
            return true;
        }
    }
    return false;
}

bool IsConstantOperand(const X_ParsNode* operand) { return operand && operand->IsConstant(); }

}  // namespace

namespace quantor::detail {

int Tree_ConstCalc(X_ParsNode& node, TreeOptimizer optimize) {
    const int childChanges = Tree_OptChildren(node, optimize);
    const bool leftConstant = IsConstantOperand(node.Left());
    const bool rightConstant = IsConstantOperand(node.Right());
    bool folded = false;
    if (leftConstant && rightConstant) {
        folded = ConstantOperandsFold(node);
    } else if (leftConstant) {
        folded = FirstRuleApply(kLeftConstantRules, node, node.Left()->Value());
    } else if (rightConstant) {
        folded = FirstRuleApply(kRightConstantRules, node, node.Right()->Value());
    }
    return childChanges + (folded ? 1 : 0);
}

}  // namespace quantor::detail
