// The table in which a unit keeps its rules, keyed by the name of each rule's
// target unit. It is part of QtrUnitStd's layout only; hosts use the unit.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "quantor/export.h"
#include "quantor/model.h"

namespace quantor::detail {

// Rules in the order they were added, found by key through an open-addressing
// index of 8 bytes per slot (a hash tag and a position), so that a stored
// rule costs little beyond the rule itself and a lookup allocates nothing.
// The key of a rule is its target unit's name, read from the target when
// needed: a held rule's target must outlive the table, as the units of one
// category do. Only a replacement under another rule's key stores a key.
class QUANTOR_API RuleTable {
public:
    RuleTable() = default;
    RuleTable(const RuleTable&) = delete;
    RuleTable& operator=(const RuleTable&) = delete;

    // The rule kept under `key`, or null.
    const QtrConvInfoBase* Find(std::wstring_view key) const;
    // Keeps `rule` under its target's name; false (nothing kept) when a rule
    // is held under that name already.
    bool Insert(const QtrConvInfoBase* rule);
    // Puts `rule` in the place of the rule kept under `key` and answers the
    // rule it replaces, or null (nothing changed) when none is kept.
    const QtrConvInfoBase* Replace(std::wstring_view key, const QtrConvInfoBase* rule);
    // Every rule, in the order they were added.
    const std::vector<const QtrConvInfoBase*>& Rules() const { return rules_; }
    // Every rule in ascending order of key.
    std::vector<const QtrConvInfoBase*> RulesByKey() const;
    void Clear();

private:
    // A slot of the index: the high half of the key's hash and the position
    // of the rule plus one; 0 marks an empty slot.
    using Slot = std::uint64_t;

    std::wstring_view KeyAt(std::uint32_t position) const;
    // The slot that holds `key`, or the empty slot where it would go.
    std::size_t SlotOf(std::wstring_view key, std::uint64_t hash) const;
    void Grow();

    std::vector<const QtrConvInfoBase*> rules_;
    std::vector<Slot> slots_;
    // Keys that differ from the target's name of the rule they hold, by
    // position: only after Replace with a rule to another target.
    std::vector<std::pair<std::uint32_t, std::wstring>> storedKeys_;
};

}  // namespace quantor::detail
