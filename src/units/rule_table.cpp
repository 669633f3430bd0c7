// A unit's table of rules: the rules in the order they were added and a name
// index over their positions, whose names are the keys of the rules.
#include "quantor/rule_table.h"

#include <algorithm>

#include "units/name_hash.h"

namespace quantor::detail {

std::wstring_view RuleTable::KeyAt(std::uint32_t position) const {
    if (!storedKeys_.empty()) {
        for (const auto& [at, key] : storedKeys_) {
            if (at == position) return key;
        }
    }
    return rules_[position]->TrgtUnit()->Name();
}

std::uint32_t RuleTable::PositionOf(std::wstring_view key) const {
    return index_.Find(key, [this](std::uint32_t position) { return KeyAt(position); });
}

const QtrConvInfoBase* RuleTable::Find(std::wstring_view key) const {
    const std::uint32_t position = PositionOf(key);
    return position == PositionIndex::kNotFound ? nullptr : rules_[position];
}

const QtrConvInfoBase* RuleTable::Find(const QtrUnitBase* target, std::wstring_view name,
                                       std::uint64_t nameHash) const {
    const auto isKey = [this, target, name](std::uint32_t position) {
        if (!storedKeys_.empty()) return KeyAt(position) == name;
        const QtrUnitBase* held = rules_[position]->TrgtUnit();
        return held == target || held->Name() == name;
    };
    const std::uint32_t position = index_.FindHashed(PositionIndex::Hash(nameHash), isKey);
    return position == PositionIndex::kNotFound ? nullptr : rules_[position];
}

bool RuleTable::Insert(const QtrConvInfoBase* rule) { return Insert(rule, NameHash(rule->TrgtUnit()->Name())); }

bool RuleTable::Insert(const QtrConvInfoBase* rule, std::uint64_t nameHash) {
    const QtrUnitBase* target = rule->TrgtUnit();
    const std::wstring_view key = target->Name();
    if (Find(target, key, nameHash)) return false;
    index_.AppendHashed(PositionIndex::Hash(nameHash), [this](std::uint32_t position) { return KeyAt(position); });
    rules_.push_back(rule);
    return true;
}

const QtrConvInfoBase* RuleTable::Replace(std::wstring_view key, const QtrConvInfoBase* rule) {
    const std::uint32_t position = PositionOf(key);
    if (position == PositionIndex::kNotFound) return nullptr;
    const QtrConvInfoBase* held = rules_[position];
    // The rule stays under its key; a rule to another target keeps the key stored.
    std::wstring keptKey(key);
    std::erase_if(storedKeys_, [position](const auto& stored) { return stored.first == position; });
    rules_[position] = rule;
    const QtrUnitBase* target = rule->TrgtUnit();
    if (!target || target->Name() != keptKey) storedKeys_.emplace_back(position, std::move(keptKey));
    return held;
}

std::vector<const QtrConvInfoBase*> RuleTable::RulesByKey() const {
    std::vector<std::uint32_t> positions(rules_.size());
    for (std::uint32_t i = 0; i < positions.size(); ++i) positions[i] = i;
    std::sort(positions.begin(), positions.end(), [this](auto a, auto b) { return KeyAt(a) < KeyAt(b); });
    std::vector<const QtrConvInfoBase*> sorted;
    sorted.reserve(positions.size());
    for (std::uint32_t position : positions) sorted.push_back(rules_[position]);
    return sorted;
}

void RuleTable::Reserve(std::size_t count) {
    rules_.reserve(count);
    index_.Reserve(count, [this](std::uint32_t position) { return KeyAt(position); });
}

void RuleTable::Clear() {
    rules_.clear();
    index_.Clear();
    storedKeys_.clear();
}

}  // namespace quantor::detail
