// The blocks of a unit's stored rules.
#include "quantor/rule_store.h"

#include <algorithm>
#include <functional>

namespace quantor::detail {

namespace {

// The first block holds a few rules; each later one as many as all before,
// so that a unit whose rules are not reserved ahead needs few blocks.
constexpr std::size_t kFirstBlockRoom = 4;

}  // namespace

const QtrConvInfoStd* RuleStore::Add(const QtrConvInfoStd& rule) {
    if (blocks_.empty() || blocks_.back().size() == blocks_.back().capacity()) {
        std::size_t stored = 0;
        for (const auto& block : blocks_) stored += block.size();
        Reserve(std::max(kFirstBlockRoom, stored));
    }
    return &blocks_.back().emplace_back(rule);
}

void RuleStore::DropLast() {
    if (!blocks_.empty() && !blocks_.back().empty()) blocks_.back().pop_back();
}

void RuleStore::Reserve(std::size_t count) {
    if (!blocks_.empty() && blocks_.back().capacity() - blocks_.back().size() >= count) return;
    blocks_.emplace_back().reserve(count);
}

bool RuleStore::Holds(const QtrConvInfoBase* rule) const {
    // std::less orders pointers into different blocks as well.
    const std::less<const QtrConvInfoBase*> before;
    return std::any_of(blocks_.begin(), blocks_.end(), [&](const std::vector<QtrConvInfoStd>& block) {
        return !block.empty() && !before(rule, block.data()) && before(rule, block.data() + block.size());
    });
}

}  // namespace quantor::detail
