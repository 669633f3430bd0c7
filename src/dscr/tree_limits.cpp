// Installing and removing a work allowance of the simplifier's limits.
#include "dscr/tree_limits.h"

#include <algorithm>

namespace quantor::detail {

TreeWorkAllowance::TreeWorkAllowance(uint64_t units) : outer_(TreeLimits().workLeft), granted_(std::min(units, outer_)) {
    TreeLimits().workLeft = granted_;
}

TreeWorkAllowance::~TreeWorkAllowance() {
    const uint64_t spent = granted_ - TreeLimits().workLeft;
    TreeLimits().workLeft = outer_ == UINT64_MAX ? outer_ : outer_ - spent;
}

}  // namespace quantor::detail
