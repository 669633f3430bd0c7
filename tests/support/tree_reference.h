// The simplifier as the plain algorithm runs it, for comparison with
// Tree_Opt, which skips subtrees at their fixed point and works within
// limits: rounds of the four passes until all return 0, at most depth + 2
// rounds, every subtree re-run in every pass. Shared by the tree tests and
// the simplifier's fuzz target.
#pragma once

#include <regex>
#include <string>

#include "dscr/parse_error.h"
#include "dscr/pars_node.h"
#include "dscr/tree_opt.h"
#include "support/sink_capture.h"

// Thrown when a subtree that never settles makes the plain algorithm
// explode: such a tree is set aside.
struct TooExpensive {};

inline long gSubtreeRuns = 0;

inline int PlainTreeOpt(X_ParsNode& node) {
    using namespace quantor::detail;
    if (++gSubtreeRuns > 100000) throw TooExpensive();
    int changes = 0, rounds = 0;
    for (const int bound = node.Depth() + 1; rounds <= bound; ++rounds) {
        const int counts[] = {Tree_OptRules(node, PlainTreeOpt), Tree_ConstCalc(node, PlainTreeOpt),
                              Tree_ExprElim(node, PlainTreeOpt), Tree_Reorder(node, PlainTreeOpt)};
        changes += counts[0] + counts[1] + counts[3];  // Tree_ExprElim's changes are not added up
        if (counts[0] == 0 && counts[1] == 0 && counts[2] == 0 && counts[3] == 0) return changes;
    }
    ParseError_ReportAt(&node, L"X_ParsNode::Tree_Opt: break after %d changes and %d loops\n", changes, rounds);
    return -1;
}

// One plain simplification of a whole tree, set aside (TooExpensive) past
// 100000 subtree runs.
inline int PlainTreeOptBounded(X_ParsNode& node) {
    gSubtreeRuns = 0;
    return PlainTreeOpt(node);
}

// Every field of every node, values exact.
inline std::wstring Dump(const X_ParsNode* node) {
    if (!node) return L"-";
    return QtrFormat(L"%s@%d:%d[%s|%.17g](", X_ParsNode::NodeTypeName(node->Type()), node->Line(), node->Column(),
                     node->Name(), node->Value()) + Dump(node->Left()) + L"," + Dump(node->Right()) + L")";
}

// The result, the error count, the tree and the messages without identity numbers.
template <class Simplify>
std::wstring OutcomeOf(X_ParsNode& tree, Simplify simplify) {
    static const std::wregex kIdentity(L"\\([0-9a-f]{8}\\)");
    X_ParseState state;
    X_ParseStateScope scope(state);
    TraceCapture trace;
    const int result = simplify(tree);
    return QtrFormat(L"result %d, errors %d: ", result, state.errorCount) + Dump(&tree) + L"\n" +
           std::regex_replace(trace.Text(), kIdentity, L"(id)");
}
