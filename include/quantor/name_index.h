// The table behind an administration's name index: category and unit
// pointers by name. It is part of QtrAdminStd's layout only; hosts use the
// administration.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "quantor/export.h"
#include "quantor/model.h"
#include "quantor/name_equal.h"

namespace quantor::detail {

// Open addressing with linear probing over a power-of-two number of slots,
// each holding a name, its hash and its entry, so that a lookup hashes once,
// masks instead of dividing, and compares names only when the hashes agree.
// A name is a view of the string that its category or unit keeps, which must
// outlive the entry. The table doubles when it is half full.
class QUANTOR_API NameIndex {
public:
    struct Entry {
        const QtrCategoryBase* category = nullptr;
        const QtrUnitBase* unit = nullptr;
    };

    NameIndex() = default;
    NameIndex(const NameIndex&) = delete;
    NameIndex& operator=(const NameIndex&) = delete;

    // The entry of `name`, or null; `hash` is the name's hash when the
    // caller has it already.
    const Entry* Find(std::wstring_view name) const;
    const Entry* Find(std::wstring_view name, std::uint64_t hash) const;
    // Enters `name` with `entry`; false (nothing changed) when `name` is
    // present already or longer than a slot can hold (4 G characters).
    bool TryEmplace(std::wstring_view name, const Entry& entry);
    // Makes room for `count` names in all without growing on the way.
    void Reserve(std::size_t count);
    std::size_t Size() const { return size_; }

private:
    // 32 bytes, so that a slot never straddles two cache lines. The length
    // and the hash's lower half (all that places a slot) are kept in 32 bits.
    struct Slot {
        const wchar_t* name = nullptr;  // null: a free slot
        std::uint32_t length = 0;
        std::uint32_t hash = 0;
        Entry entry;

        std::wstring_view Name() const { return {name, length}; }
    };

    // The slot that holds `name`, or the free slot where it would go.
    std::size_t SlotOf(std::wstring_view name, std::uint32_t hash) const;
    void Rehash(std::size_t slotCount);

    std::vector<Slot> slots_;
    std::size_t size_ = 0;
};

}  // namespace quantor::detail
