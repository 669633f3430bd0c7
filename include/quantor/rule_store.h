// Storage for the rules a unit keeps by value: completion derives most of a
// category's rules, and storing them side by side in a few blocks instead of
// one heap object each saves an allocation and its overhead per rule. It is
// part of QtrUnitStd's layout only; hosts use the unit.
#pragma once

#include <cstddef>
#include <vector>

#include "quantor/convinfo.h"
#include "quantor/export.h"

namespace quantor::detail {

// Copies of rules in blocks that never move, so a stored rule keeps its
// address for the life of the store. A block is filled up to the room it
// was made with and then followed by a new one.
class QUANTOR_API RuleStore {
public:
    RuleStore() = default;
    RuleStore(const RuleStore&) = delete;
    RuleStore& operator=(const RuleStore&) = delete;

    // A stored copy of `rule`.
    const QtrConvInfoStd* Add(const QtrConvInfoStd& rule);
    // Takes back the copy added last, which nothing may refer to any more.
    void DropLast();
    // Makes room for `count` more rules in the current block, or in a new one.
    void Reserve(std::size_t count);
    // Whether `rule` is one of the stored copies.
    bool Holds(const QtrConvInfoBase* rule) const;

private:
    std::vector<std::vector<QtrConvInfoStd>> blocks_;
};

}  // namespace quantor::detail
