// What the formula simplifier keeps per thread: its limits (tree_limits.h),
// the number of the running top-level Tree_Opt, which its fixed-point marks
// record (tree_opt.cpp), and a count of the edits and reports made so far
// (pars_node.h). They live in one thread-local object, so that a step of the
// simplifier reaches all of them with a single lookup of thread storage.
#pragma once

#include <cstdint>

namespace quantor::detail {

struct TreeLimitState {
    uint64_t workLeft = UINT64_MAX;  // UINT64_MAX: no allowance installed
    int nesting = 0;
    bool nestingExceeded = false;
};

struct TreeThreadState {
    TreeLimitState limits;
    uint64_t runNumber = 0;
    uint64_t activity = 0;
};

// The simplifier reaches this object at every step. The initial-exec model
// makes that a plain load instead of a call into the dynamic loader; it needs
// the object's 32 bytes in the static TLS block, which the loader keeps
// room for even when a host loads the library with dlopen.
[[gnu::tls_model("initial-exec")]] inline thread_local TreeThreadState tTreeThreadState;
inline TreeThreadState& TreeThread() { return tTreeThreadState; }

}  // namespace quantor::detail
