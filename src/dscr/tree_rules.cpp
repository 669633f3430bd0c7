// The simplifier's rewrite rules A1 to H3. They push unary minus inwards,
// turn additive and multiplicative chains to the right, distribute over a
// constant factor, and move the terms on the left of a conversion formula's
// arrow across to the right with the inverse operation. The rules are tried
// in the table's order and only the first that matches fires.
#include <initializer_list>

#include "dscr/tree_opt.h"

namespace {

// What a rule's condition looks at: the node's type T and the types of its
// left and right children, LT and RT (ND_NOTYPE for a missing right child).
struct RuleSite {
    TE_PNodeId t;
    TE_PNodeId lt;
    TE_PNodeId rt;
};

struct Rule {
    bool (*applies)(const RuleSite& site);
    void (*rewrite)(X_ParsNode& n);
};

bool IsOneOf(TE_PNodeId id, std::initializer_list<TE_PNodeId> ids) {
    for (TE_PNodeId candidate : ids)
        if (id == candidate) return true;
    return false;
}

// In the rewrites, N is the node, L and R its children, a and b L's children
// and c = R; "op" and "inv" stand for an operation and its inverse.

// (a op b) ... c  becomes  a ... (b op c); answers the moved L.
X_ParsNode& ChainToRight(X_ParsNode& n) {
    X_ParsNodePtr l = n.TakeLeft();
    X_ParsNode& moved = *l;
    n.SetLeft(l->TakeLeft());
    l->SetLeft(l->TakeRight());
    l->SetRight(n.TakeRight());
    n.SetRight(std::move(l));
    return moved;
}

// (a op b) ... c  becomes  a ... (c op b), or (op a) ... c  becomes
// a ... (op c); answers the moved L.
X_ParsNode& OperandAcross(X_ParsNode& n) {
    X_ParsNodePtr l = n.TakeLeft();
    X_ParsNode& moved = *l;
    n.SetLeft(l->TakeLeft());
    l->SetLeft(n.TakeRight());
    n.SetRight(std::move(l));
    return moved;
}

// a op (u- b)  becomes  a op' b.
void UnaryRightUnwrap(X_ParsNode& n, TE_PNodeId newType) {
    n.SetType(newType);
    n.SetRight(n.Right()->TakeLeft());
}

void A1_Rewrite(X_ParsNode& n) { n.ReplaceBy(n.Left()); }

void B1_Rewrite(X_ParsNode& n) {
    X_ParsNode& l = *n.Left();
    l.ReplaceBy(l.Left());
    n.SetType(ND_UNPLUS);
}

void B2_Rewrite(X_ParsNode& n) {
    X_ParsNode& l = *n.Left();
    n.SetRight(X_ParsNode::NewOperator(ND_UNMINUS, l.TakeRight(), nullptr));
    n.SetType(l.Type());
    l.SetType(ND_UNMINUS);
}

void B4_Rewrite(X_ParsNode& n) {
    X_ParsNodePtr l = n.TakeLeft();
    n.SetType(l->Type());
    n.SetLeft(l->TakeLeft());
    l->SetLeft(l->TakeRight());
    l->SetType(ND_UNMINUS);
    n.SetRight(std::move(l));
}

void C1_Rewrite(X_ParsNode& n) { UnaryRightUnwrap(n, ND_MINUS); }

void D1_Rewrite(X_ParsNode& n) { ChainToRight(n); }

void E1_Rewrite(X_ParsNode& n) { UnaryRightUnwrap(n, ND_PLUS); }

void E2_Rewrite(X_ParsNode& n) {
    X_ParsNode& l = *n.Left();
    l.SetType(ND_PLUS);
    l.SetRight(n.TakeRight());
    n.SetType(ND_UNMINUS);
}

void F1_Rewrite(X_ParsNode& n) {
    const TE_PNodeId inverse = n.Inv_NodeId();
    ChainToRight(n).SetType(inverse);
}

void F2_Rewrite(X_ParsNode& n) {
    const TE_PNodeId outer = n.Type();
    const TE_PNodeId inner = n.Left()->Type();
    ChainToRight(n).SetType(outer);
    n.SetType(inner);
}

void H1_Rewrite(X_ParsNode& n) {
    const TE_PNodeId inverse = n.Left()->Inv_NodeId();
    OperandAcross(n).SetType(inverse);
}

void H3_Rewrite(X_ParsNode& n) { OperandAcross(n); }

void G1_Rewrite(X_ParsNode& n) { OperandAcross(n); }

void G2_Rewrite(X_ParsNode& n) {
    X_ParsNode& l = *n.Left();
    const TE_PNodeId op = n.Type();
    const TE_PNodeId sum = l.Type();
    X_ParsNodePtr b = l.TakeRight();
    X_ParsNodePtr c = n.TakeRight();
    auto cCopy = std::make_unique<X_ParsNode>(*c);
    l.SetRight(std::move(c));
    l.SetType(op);
    n.SetRight(X_ParsNode::NewOperator(op, std::move(b), std::move(cCopy)));
    n.SetType(sum);
}

const Rule kRules[] = {
    // A1: (u+ a) =: (a)
    {[](const RuleSite& s) { return s.t == ND_UNPLUS; }, A1_Rewrite},
    // B1: ((u- (u- a))) =: (u+ a); A1 removes the u+ in a later round
    {[](const RuleSite& s) { return s.t == ND_UNMINUS && s.lt == ND_UNMINUS; }, B1_Rewrite},
    // B2: (u- (a + b)) =: ((u- a) + (u- b)), also for a - b
    {[](const RuleSite& s) { return s.t == ND_UNMINUS && IsOneOf(s.lt, {ND_PLUS, ND_MINUS}); }, B2_Rewrite},
    // B4: (u- (a * b)) =: (a * (u- b)), also for a / b
    {[](const RuleSite& s) { return s.t == ND_UNMINUS && IsOneOf(s.lt, {ND_MULT, ND_DIV}); }, B4_Rewrite},
    // C1: (a + (u- b)) =: (a - b)
    {[](const RuleSite& s) { return s.t == ND_PLUS && s.rt == ND_UNMINUS; }, C1_Rewrite},
    // D1: ((2 + 3) + 4) =: (2 + (3 + 4)), also for products
    {[](const RuleSite& s) { return IsOneOf(s.t, {ND_PLUS, ND_MULT}) && s.lt == s.t; }, D1_Rewrite},
    // E1: (a - (u- b)) =: (a + b)
    {[](const RuleSite& s) { return s.t == ND_MINUS && s.rt == ND_UNMINUS; }, E1_Rewrite},
    // E2: ((u- a) - b) =: (u- (a + b))
    {[](const RuleSite& s) { return s.t == ND_MINUS && s.lt == ND_UNMINUS; }, E2_Rewrite},
    // F1: ((2 - 3) - 4) =: (2 - (3 + 4)), also for quotients
    {[](const RuleSite& s) { return IsOneOf(s.t, {ND_MINUS, ND_DIV}) && s.lt == s.t; }, F1_Rewrite},
    // F2: ((2 + 3) - 4) =: (2 + (3 - 4)), also ((2 * 3) / 4)
    {[](const RuleSite& s) { return (s.t == ND_MINUS && s.lt == ND_PLUS) || (s.t == ND_DIV && s.lt == ND_MULT); }, F2_Rewrite},
    // H1: ((a + b) => c) =: (a => (c - b)): b crosses the arrow inverted
    {[](const RuleSite& s) { return s.t == ND_CONVFORM && IsOneOf(s.lt, {ND_PLUS, ND_MINUS, ND_DIV, ND_MULT}); }, H1_Rewrite},
    // H3: ((u- a) => b) =: (a => (u- b))
    {[](const RuleSite& s) { return s.t == ND_CONVFORM && s.lt == ND_UNMINUS; }, H3_Rewrite},
    // G1: ((u- a) * b) =: (a * (u- b)), also for quotients
    {[](const RuleSite& s) { return IsOneOf(s.t, {ND_MULT, ND_DIV}) && s.lt == ND_UNMINUS; }, G1_Rewrite},
    // G2: ((a + b) * c) =: ((a * c) + (b * c)), c a constant; also for - and /
    {[](const RuleSite& s) {
         return IsOneOf(s.t, {ND_MULT, ND_DIV}) && IsOneOf(s.lt, {ND_PLUS, ND_MINUS}) &&
                X_ParsNode::IsConstantType(s.rt);
     }, G2_Rewrite},
};

}  // namespace

namespace quantor::detail {

int Tree_OptRules(X_ParsNode& node, TreeOptimizer optimize) {
    if (node.IsLeaf()) return 0;
    const int childChanges = Tree_OptChildren(node, optimize);
    // Without a left child no rule applies, and the children's changes are
    // not passed on.
    if (!node.Left()) return 0;
    const RuleSite site{node.Type(), node.Left()->Type(), node.Right() ? node.Right()->Type() : ND_NOTYPE};
    for (const Rule& rule : kRules) {
        if (rule.applies(site)) {
            rule.rewrite(node);
            return childChanges + 1;
        }
    }
    return childChanges;
}

}  // namespace quantor::detail
