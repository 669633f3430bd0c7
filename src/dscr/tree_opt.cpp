// The simplifier's driver, Tree_Opt: rounds of the four passes over a node
// until a round changes nothing, or until the bound of depth + 2 rounds.
//
// Every pass re-runs Tree_Opt on both children, so run naively the work grows
// as 4^depth. Tree_Opt therefore marks a node once it has reached its fixed
// point, and a later call on a marked node answers 0 at once. This changes
// nothing that can be observed, for these reasons:
// - A round that edits no node and reports nothing returns 0 from every pass
//   (a rule that fires always edits or reports), so the call ends after it.
//   The same holds, inductively, for every nested call in that round: a call
//   that edits and reports nothing returns 0.
// - A call's behaviour depends only on its subtree. So when a call's last
//   round edited and reported nothing, a new call on the unchanged subtree
//   would repeat exactly that round and return 0: the node is marked.
// - Any edit of a node clears that node's mark. Its ancestors are unmarked
//   too: up to the node whose pass makes the edit they are calls in progress,
//   which are never marked, and Tree_ExprElim, the one pass that edits below
//   its node's children, clears the marks on the path to what it edits.
// Counts are not trusted for this, only the edits and reports themselves:
// Tree_OptRules drops its children's counts when the left child is missing,
// and a -1 can cancel a 1. Marks hold for one top-level Tree_Opt only (they
// record its number), so edits made between calls cannot leave stale marks.
//
// A subtree that never reaches its fixed point is run to its bound on every
// call, and each enclosing call then runs to its bound as well, so the work
// grows with the depth as fast as the naive algorithm's. To end in time on
// any input, the simplifier works within the limits of tree_limits.h: a
// formula that needs more work or deeper recursion than they allow is left
// as far as it got and reported as too complex.
#include "dscr/tree_opt.h"

#include <atomic>

#include "dscr/tree_limits.h"

namespace quantor::detail {

int Tree_OptChildren(X_ParsNode& node, TreeOptimizer optimize) {
    int changes = 0;
    if (node.Left()) changes += optimize(*node.Left());
    if (node.Right()) changes += optimize(*node.Right());
    return changes;
}

}  // namespace quantor::detail

namespace {

using namespace quantor::detail;

std::atomic<uint64_t> gLastRunNumber{0};

// Gives the running top-level Tree_Opt its own number for the marks, a fresh
// nesting limit and its share of work.
class RunScope {
public:
    RunScope()
        : previousNumber_(TreeThread().runNumber),
          previousNestingExceeded_(TreeLimits().nestingExceeded),
          allowance_(kFormulaWorkAllowance) {
        TreeThread().runNumber = ++gLastRunNumber;
        TreeLimits().nestingExceeded = false;
    }
    ~RunScope() {
        TreeThread().runNumber = previousNumber_;
        TreeLimits().nestingExceeded = previousNestingExceeded_;
    }
    RunScope(const RunScope&) = delete;
    RunScope& operator=(const RunScope&) = delete;

private:
    uint64_t previousNumber_;
    bool previousNestingExceeded_;
    TreeWorkAllowance allowance_;
};

struct RoundCounts {
    int rules = 0;
    int constCalc = 0;
    int exprElim = 0;
    int reorder = 0;

    // Tree_ExprElim's changes end no round early but are not added up.
    int Changes() const { return rules + constCalc + reorder; }
    bool AllZero() const { return rules == 0 && constCalc == 0 && exprElim == 0 && reorder == 0; }
};

RoundCounts Tree_OptRound(X_ParsNode& node, TreeOptimizer optimize) {
    RoundCounts counts;
    counts.rules = Tree_OptRules(node, optimize);
    counts.constCalc = Tree_ConstCalc(node, optimize);
    counts.exprElim = Tree_ExprElim(node, optimize);
    counts.reorder = Tree_Reorder(node, optimize);
    return counts;
}

int Tree_OptMarked(X_ParsNode& node) {
    const uint64_t runNumber = TreeThread().runNumber;
    if (node.FixedPointMark() == runNumber) return 0;
    TreeStep step;
    if (!step.Allowed()) return 0;
    const int bound = (node.IsLeaf() ? 0 : node.Depth()) + 1;
    int changes = 0;
    int rounds = 0;
    while (rounds <= bound) {
        if (!step.Charge()) return changes;
        const uint64_t activityBefore = TreeActivityCount();
        const RoundCounts counts = Tree_OptRound(node, Tree_OptMarked);
        changes += counts.Changes();
        ++rounds;
        if (counts.AllZero()) {
            if (TreeActivityCount() == activityBefore) node.SetFixedPointMark(runNumber);
            return changes;
        }
    }
    TreeError_Report(&node, L"X_ParsNode::Tree_Opt: break after %d changes and %d loops\n", changes, rounds);
    return -1;
}

}  // namespace

namespace {

// Whether no pass changes or reports `c` as the right operand of `op` next
// to the names `source` and `target`: the constant folding leaves it unless
// it is neutral, absorbing or a sign (0, 1 or -1), and the cancelling pass
// compares it with the names' values.
bool IsInertConstant(TE_PNodeId op, double c, const X_ParsNode& source, const X_ParsNode& target) {
    if (TreeValuesEqual(c, 0.0) || TreeValuesEqual(c, source.Value()) || TreeValuesEqual(c, target.Value()))
        return false;
    return op == ND_PLUS || op == ND_MINUS || !(TreeValuesEqual(c, 1.0) || TreeValuesEqual(c, -1.0));
}

// The formula "T <- S op c" of two different names and a number, which is
// what nearly every catalogue rule says, with a number that no pass touches.
// No rule matches it, the name on the left of each operation stays there,
// and nothing cancels, so a run would change and report nothing: it is its
// own fixed point.
bool IsPlainScalingFormula(const X_ParsNode& formula) {
    const X_ParsNode* target = formula.Left();
    const X_ParsNode* operation = formula.Right();
    if (formula.Type() != ND_CONVFORM || !target || !target->IsName() || !operation) return false;
    const TE_PNodeId op = operation->Type();
    const X_ParsNode* source = operation->Left();
    const X_ParsNode* constant = operation->Right();
    return (op == ND_MULT || op == ND_DIV || op == ND_PLUS || op == ND_MINUS) && source && source->IsName() &&
           constant && constant->IsConstant() && source->Name() != target->Name() &&
           IsInertConstant(op, constant->Value(), *source, *target);
}

// A negated number, as a format shift such as -3 is written: a run folds it
// into the negative number, one change, and does nothing else.
bool IsNegatedNumber(const X_ParsNode& node) {
    return node.Type() == ND_UNMINUS && node.Left() && node.Left()->IsConstant() && !node.Right();
}

}  // namespace

// No pass changes or reports a lone leaf (a number or a name) or a plain
// scaling formula, and a negated number folds in one step, so these need no
// run at all.
int X_ParsNode::Tree_Opt() {
    if (IsLeaf() || IsPlainScalingFormula(*this)) return 0;
    if (IsNegatedNumber(*this)) {
        SetFloat(-Left()->Value());
        return 1;
    }
    const RunScope run;
    const int changes = Tree_OptMarked(*this);
    if (!TreeLimit_Reached()) return changes;
    TreeError_Report(this, L"X_ParsNode::Tree_Opt: formula too complex\n");
    return -1;
}
