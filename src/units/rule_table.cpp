// A unit's table of rules: an open-addressing index with linear probing over
// the rules kept in the order they were added. Each slot holds 32 bits of the
// key's hash, so a probe compares names only when the tags agree, and the
// index doubles when it is three quarters full.
#include "quantor/rule_table.h"

#include <algorithm>
#include <bit>

#include "units/name_hash.h"

namespace quantor::detail {
namespace {

constexpr std::size_t kFirstSlotCount = 8;

std::uint64_t TagOf(std::uint64_t hash) { return hash & 0xffffffff00000000u; }
std::uint32_t PositionOf(std::uint64_t slot) { return static_cast<std::uint32_t>(slot) - 1; }
std::uint64_t SlotFor(std::uint64_t hash, std::size_t position) {
    return TagOf(hash) | static_cast<std::uint32_t>(position + 1);
}

}  // namespace

std::wstring_view RuleTable::KeyAt(std::uint32_t position) const {
    if (!storedKeys_.empty()) {
        for (const auto& [at, key] : storedKeys_) {
            if (at == position) return key;
        }
    }
    return rules_[position]->TrgtUnit()->Name();
}

std::size_t RuleTable::SlotOf(std::wstring_view key, std::uint64_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t index = hash & mask;; index = (index + 1) & mask) {
        const Slot slot = slots_[index];
        if (slot == 0) return index;
        if (TagOf(slot) == TagOf(hash) && KeyAt(PositionOf(slot)) == key) return index;
    }
}

const QtrConvInfoBase* RuleTable::Find(std::wstring_view key) const {
    if (rules_.empty()) return nullptr;
    const Slot slot = slots_[SlotOf(key, NameHash(key))];
    return slot == 0 ? nullptr : rules_[PositionOf(slot)];
}

bool RuleTable::Insert(const QtrConvInfoBase* rule) {
    if ((rules_.size() + 1) * 4 > slots_.size() * 3) Grow();
    const std::wstring_view key = rule->TrgtUnit()->Name();
    const std::uint64_t hash = NameHash(key);
    const std::size_t index = SlotOf(key, hash);
    if (slots_[index] != 0) return false;
    slots_[index] = SlotFor(hash, rules_.size());
    rules_.push_back(rule);
    return true;
}

const QtrConvInfoBase* RuleTable::Replace(std::wstring_view key, const QtrConvInfoBase* rule) {
    if (rules_.empty()) return nullptr;
    const Slot slot = slots_[SlotOf(key, NameHash(key))];
    if (slot == 0) return nullptr;
    const std::uint32_t position = PositionOf(slot);
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

void RuleTable::Clear() {
    rules_.clear();
    slots_.clear();
    storedKeys_.clear();
}

void RuleTable::Grow() {
    std::vector<Slot> grown(std::max(kFirstSlotCount, slots_.size() * 2), 0);
    const std::size_t mask = grown.size() - 1;
    for (std::uint32_t position = 0; position < rules_.size(); ++position) {
        const std::uint64_t hash = NameHash(KeyAt(position));
        std::size_t index = hash & mask;
        while (grown[index] != 0) index = (index + 1) & mask;
        grown[index] = SlotFor(hash, position);
    }
    slots_.swap(grown);
}

}  // namespace quantor::detail
