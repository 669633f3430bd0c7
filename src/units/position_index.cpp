// The position index's table: the hash of a name, and slots placed by linear
// probing, moved when the table grows without reading a name again.
#include "quantor/position_index.h"

#include "units/name_hash.h"

namespace quantor::detail {
namespace {

constexpr std::size_t kFirstTableSize = 16;

}  // namespace

// The upper half of the model's name hash, whose lower bits are spread best.
std::uint32_t PositionIndex::Hash(std::wstring_view name) { return Hash(NameHash(name)); }

void PositionIndex::Clear() {
    slots_.clear();
    slots_.shrink_to_fit();
    count_ = 0;
}

bool PositionIndex::TableResize(std::size_t count) {
    std::size_t size = slots_.empty() ? kFirstTableSize : slots_.size();
    while (!Holds(size, count)) size *= 2;
    if (size == slots_.size()) return false;
    std::vector<std::uint64_t> held(size, 0);
    held.swap(slots_);
    for (const std::uint64_t slot : held)
        if (slot != 0) SlotFill(HashOf(slot), PositionOf(slot));
    return true;
}

void PositionIndex::SlotFill(std::uint32_t hash, std::uint32_t position) {
    std::size_t index = hash & Mask();
    while (slots_[index] != 0) index = (index + 1) & Mask();
    slots_[index] = (std::uint64_t{hash} << 32) | (std::uint64_t{position} + 1);
}

}  // namespace quantor::detail
