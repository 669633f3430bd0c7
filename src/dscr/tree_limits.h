// Resource limits of the formula simplifier, so that no description file can
// hang it or exhaust a small thread stack. Two limits hold per thread:
// - nesting: the simplifier's recursive walks (the driver and the matchers)
//   may nest at most kMaxTreeNesting levels; deeper, the formula is too
//   complex. The other tree walks do not recurse.
// - work: every node visited, made or matched costs one unit, charged to the
//   allowance of the running parse (one per file, in proportion to its size)
//   or, outside a parse, to the allowance of one Tree_Opt call.
// A simplification that reaches a limit stops where it is and is reported as
// "formula too complex"; a parse whose allowance is spent makes no more nodes.
#pragma once

#include <cstdint>

#include "dscr/tree_thread_state.h"

namespace quantor::detail {

// Levels of recursion the simplifier may use: about 270 bytes of stack each
// in a release build, so that it fits a 128 KiB thread stack with room for
// the parser beneath it.
inline constexpr int kMaxTreeNesting = 300;

// The work one Tree_Opt may do, and what a parse grants all its formulas
// together: a base for the smallest file plus a share for every byte. A unit
// costs about ten nanoseconds in a release build, so a file costs at most
// about half a second per megabyte and a tiny file some 40 ms. A valid
// formula of three hundred terms needs about 100000 units; a sum of a
// hundred unit names, which no rule can hold, meets the bound.
inline constexpr uint64_t kFormulaWorkAllowance = 2'000'000;
inline constexpr uint64_t kParseBaseWorkAllowance = 4'000'000;
inline constexpr uint64_t kParseWorkPerByte = 40;
// What an error report costs beyond the nodes it visits, and what a node
// copy costs: both take far longer than a visit.
inline constexpr uint64_t kReportWork = 100;
inline constexpr uint64_t kNodeCopyWork = 20;

// This thread's limits.
inline TreeLimitState& TreeLimits() { return TreeThread().limits; }

inline void TreeWork_Charge(uint64_t units) {
    TreeLimitState& limits = TreeLimits();
    if (limits.workLeft != UINT64_MAX) limits.workLeft = limits.workLeft > units ? limits.workLeft - units : 0;
}

inline bool TreeWork_Exhausted() { return TreeLimits().workLeft == 0; }

// Whether the running simplification must stop.
inline bool TreeLimit_Reached() {
    const TreeLimitState& limits = TreeLimits();
    return limits.workLeft == 0 || limits.nestingExceeded;
}

// Grants this thread at most `units` of work while it lives, out of the
// allowance in force (if any), which is charged with what was spent.
class TreeWorkAllowance {
public:
    explicit TreeWorkAllowance(uint64_t units);
    ~TreeWorkAllowance();
    TreeWorkAllowance(const TreeWorkAllowance&) = delete;
    TreeWorkAllowance& operator=(const TreeWorkAllowance&) = delete;

private:
    uint64_t outer_;
    uint64_t granted_;
};

// One step of the simplifier's recursion: a level of nesting, which past
// kMaxTreeNesting levels marks the limit reached, and a unit of work.
class TreeStep {
public:
    TreeStep() : limits_(TreeLimits()) {
        if (++limits_.nesting > kMaxTreeNesting) limits_.nestingExceeded = true;
        Charge();
    }
    ~TreeStep() { --limits_.nesting; }
    TreeStep(const TreeStep&) = delete;
    TreeStep& operator=(const TreeStep&) = delete;

    // Whether the walk may go on.
    bool Allowed() const { return limits_.workLeft != 0 && !limits_.nestingExceeded; }
    // Charges one more unit of work; whether the walk may go on.
    bool Charge() {
        if (limits_.workLeft != UINT64_MAX && limits_.workLeft != 0) --limits_.workLeft;
        return Allowed();
    }

private:
    TreeLimitState& limits_;
};

}  // namespace quantor::detail
