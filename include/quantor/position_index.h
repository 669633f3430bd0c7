// An index from names to the positions 0, 1, 2, ... of a sequence that its
// owner keeps (a unit's rules, a category's units). It is part of the layout
// of the model's classes only; hosts never use it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "quantor/export.h"
#include "quantor/name_equal.h"

namespace quantor::detail {

// The names stay with the owner, which passes a function that answers the
// name at a position. Up to kScanLimit positions are searched in order and
// need no memory of their own; beyond that, an open-addressing table with
// linear probing holds 8 bytes per slot (a 32-bit hash of the name and the
// position), so a probe reads a name only when the hashes agree. The table
// doubles when it is three quarters full and never forgets a position.
class QUANTOR_API PositionIndex {
public:
    static constexpr std::uint32_t kNotFound = 0xffffffffu;
    static constexpr std::uint32_t kScanLimit = 8;

    // The position whose name is `name`, or kNotFound.
    template <class NameAt>
    std::uint32_t Find(std::wstring_view name, const NameAt& nameAt) const {
        const auto named = [&name, &nameAt](std::uint32_t position) { return SameName(nameAt(position), name); };
        return slots_.empty() ? Scan(named) : Probe(Hash(name), named);
    }

    // The position for which `isName` holds, where `hash` is the Hash of the
    // name sought, known to the caller; `isName` says whether a position
    // holds that name.
    template <class IsName>
    std::uint32_t FindHashed(std::uint32_t hash, const IsName& isName) const {
        return slots_.empty() ? Scan(isName) : Probe(hash, isName);
    }

    // Indexes the next position, Size(), under `name`, which no position
    // holds yet; `nameAt` answers for the positions indexed before.
    template <class NameAt>
    void Append(std::wstring_view name, const NameAt& nameAt) {
        AppendHashed(Hash(name), nameAt);
    }
    // Append for a name whose Hash the caller knows.
    template <class NameAt>
    void AppendHashed(std::uint32_t hash, const NameAt& nameAt) {
        if (!slots_.empty() || count_ + 1 > kScanLimit) {
            if (!HasRoomFor(count_ + 1)) TableBuild(count_ + 1, nameAt);
            SlotFill(hash, count_);
        }
        ++count_;
    }

    // Makes room for `count` positions in all, so that appending up to
    // there does not rebuild the table.
    template <class NameAt>
    void Reserve(std::size_t count, const NameAt& nameAt) {
        if (count > kScanLimit) TableBuild(count, nameAt);
    }

    std::uint32_t Size() const { return count_; }
    void Clear();

    static std::uint32_t Hash(std::wstring_view name);
    // The Hash of a name whose 64-bit model name hash is `nameHash`.
    static std::uint32_t Hash(std::uint64_t nameHash) { return static_cast<std::uint32_t>(nameHash >> 32); }

private:
    template <class IsName>
    std::uint32_t Scan(const IsName& isName) const {
        for (std::uint32_t position = 0; position < count_; ++position)
            if (isName(position)) return position;
        return kNotFound;
    }

    template <class IsName>
    std::uint32_t Probe(std::uint32_t hash, const IsName& isName) const {
        for (std::size_t index = hash & Mask();; index = (index + 1) & Mask()) {
            const std::uint64_t slot = slots_[index];
            if (slot == 0) return kNotFound;
            if (HashOf(slot) == hash && isName(PositionOf(slot))) return PositionOf(slot);
        }
    }

    static std::uint32_t HashOf(std::uint64_t slot) { return static_cast<std::uint32_t>(slot >> 32); }
    static std::uint32_t PositionOf(std::uint64_t slot) { return static_cast<std::uint32_t>(slot) - 1; }
    std::size_t Mask() const { return slots_.size() - 1; }
    // Whether `size` slots hold `count` positions at most three quarters full.
    static bool Holds(std::size_t size, std::size_t count) { return count * 4 <= size * 3; }
    bool HasRoomFor(std::size_t count) const { return !slots_.empty() && Holds(slots_.size(), count); }

    // Gives the table room for `count` positions and indexes the positions
    // held so far, reading their names only when there was no table yet.
    template <class NameAt>
    void TableBuild(std::size_t count, const NameAt& nameAt) {
        const bool scanned = slots_.empty();
        if (!TableResize(count) || !scanned) return;
        for (std::uint32_t position = 0; position < count_; ++position) SlotFill(Hash(nameAt(position)), position);
    }
    // Resizes the table for `count` positions, moving the slots it holds;
    // false when it is big enough already.
    bool TableResize(std::size_t count);
    void SlotFill(std::uint32_t hash, std::uint32_t position);

    std::vector<std::uint64_t> slots_;
    std::uint32_t count_ = 0;
};

}  // namespace quantor::detail
