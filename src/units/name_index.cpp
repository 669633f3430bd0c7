// The administration's name table: open addressing over name views, placed
// by their hash, growing by doubling so that it stays at most half full.
#include "quantor/name_index.h"

#include <algorithm>
#include <bit>

#include "units/name_hash.h"

namespace quantor::detail {
namespace {

constexpr std::size_t kFirstSlotCount = 16;

}  // namespace

std::size_t NameIndex::SlotOf(std::wstring_view name, std::uint64_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t index = hash & mask;; index = (index + 1) & mask) {
        const Slot& slot = slots_[index];
        if (!slot.name.data() || (slot.hash == hash && slot.name == name)) return index;
    }
}

const NameIndex::Entry* NameIndex::Find(std::wstring_view name) const {
    if (size_ == 0) return nullptr;
    const Slot& slot = slots_[SlotOf(name, NameHash(name))];
    return slot.name.data() ? &slot.entry : nullptr;
}

bool NameIndex::TryEmplace(std::wstring_view name, const Entry& entry) {
    Reserve(size_ + 1);
    const std::uint64_t hash = NameHash(name);
    Slot& slot = slots_[SlotOf(name, hash)];
    if (slot.name.data()) return false;
    // A view of an empty name still points into its string, so it is never
    // taken for a free slot.
    slot = Slot{name, hash, entry};
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
        if (!slot.name.data()) continue;
        std::size_t index = slot.hash & mask;
        while (slots_[index].name.data()) index = (index + 1) & mask;
        slots_[index] = slot;
    }
}

}  // namespace quantor::detail
