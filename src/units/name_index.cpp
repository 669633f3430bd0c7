// The administration's name table: open addressing over name views, placed
// by their hash, growing by doubling so that it stays at most half full.
#include "quantor/name_index.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "units/name_hash.h"

namespace quantor::detail {
namespace {

constexpr std::size_t kFirstSlotCount = 16;
// A slot keeps a name's length in 32 bits; a longer name is never indexed.
constexpr std::size_t kLongestName = UINT32_MAX;

}  // namespace

std::size_t NameIndex::SlotOf(std::wstring_view name, std::uint32_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t index = hash & mask;; index = (index + 1) & mask) {
        const Slot& slot = slots_[index];
        if (!slot.name || (slot.hash == hash && SameName(slot.Name(), name))) return index;
    }
}

const NameIndex::Entry* NameIndex::Find(std::wstring_view name) const { return Find(name, NameHash(name)); }

const NameIndex::Entry* NameIndex::Find(std::wstring_view name, std::uint64_t hash) const {
    if (size_ == 0 || name.size() > kLongestName) return nullptr;
    const Slot& slot = slots_[SlotOf(name, static_cast<std::uint32_t>(hash))];
    return slot.name ? &slot.entry : nullptr;
}

bool NameIndex::TryEmplace(std::wstring_view name, const Entry& entry) {
    if (name.size() > kLongestName) return false;
    Reserve(size_ + 1);
    const auto hash = static_cast<std::uint32_t>(NameHash(name));
    Slot& slot = slots_[SlotOf(name, hash)];
    if (slot.name) return false;
    // A view of an empty name still points into its string, so it is never
    // taken for a free slot.
    slot = Slot{name.data(), static_cast<std::uint32_t>(name.size()), hash, entry};
    ++size_;
    return true;
}

void NameIndex::Reserve(std::size_t count) {
    if (count * 2 <= slots_.size()) return;
    Rehash(std::max(kFirstSlotCount, std::bit_ceil(count * 2)));
}

void NameIndex::Rehash(std::size_t slotCount) {
    std::vector<Slot> old(slotCount);
    old.swap(slots_);
    const std::size_t mask = slots_.size() - 1;
    for (const Slot& slot : old) {
        if (!slot.name) continue;
        std::size_t index = slot.hash & mask;
        while (slots_[index].name) index = (index + 1) & mask;
        slots_[index] = slot;
    }
}

}  // namespace quantor::detail
