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
#include "quantor/position_index.h"

namespace quantor::detail {

// Rules in the order they were added, found by key through a name index over
// their positions, so that a stored rule costs little beyond the rule itself
// (nothing for the few rules of a small table) and a lookup allocates
// nothing. The key of a rule is its target unit's name, read from the target
// when needed: a held rule's target must outlive the table, as the units of
// one category do. Only a replacement under another rule's key stores a key.
class QUANTOR_API RuleTable {
public:
    RuleTable() = default;
    RuleTable(const RuleTable&) = delete;
    RuleTable& operator=(const RuleTable&) = delete;

    // The rule kept under `key`, or null.
    const QtrConvInfoBase* Find(std::wstring_view key) const;
    // The rule kept under the name of `target`, which is `name` with the
    // model name hash `nameHash`; a rule that leads to `target` itself is
    // recognised without reading a name.
    const QtrConvInfoBase* Find(const QtrUnitBase* target, std::wstring_view name, std::uint64_t nameHash) const;
    // Keeps `rule` under its target's name; false (nothing kept) when a rule
    // is held under that name already. `nameHash` is the model name hash of
    // that name when the caller knows it.
    bool Insert(const QtrConvInfoBase* rule);
    bool Insert(const QtrConvInfoBase* rule, std::uint64_t nameHash);
    // Puts `rule` in the place of the rule kept under `key` and answers the
    // rule it replaces, or null (nothing changed) when none is kept.
    const QtrConvInfoBase* Replace(std::wstring_view key, const QtrConvInfoBase* rule);
    // Every rule, in the order they were added.
    const std::vector<const QtrConvInfoBase*>& Rules() const { return rules_; }
    // Every rule in ascending order of key.
    std::vector<const QtrConvInfoBase*> RulesByKey() const;
    // Makes room for `count` rules in all, so that adding up to there
    // neither moves the rules nor rebuilds the index.
    void Reserve(std::size_t count);
    void Clear();

private:
    std::wstring_view KeyAt(std::uint32_t position) const;
    // The position of the rule kept under `key`, or PositionIndex::kNotFound.
    std::uint32_t PositionOf(std::wstring_view key) const;

    std::vector<const QtrConvInfoBase*> rules_;
    PositionIndex index_;
    // Keys that differ from the target's name of the rule they hold, by
    // position: only after Replace with a rule to another target.
    std::vector<std::pair<std::uint32_t, std::wstring>> storedKeys_;
};

}  // namespace quantor::detail
