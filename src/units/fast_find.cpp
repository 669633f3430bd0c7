// The administration's name index: every category and unit name it knows,
// resolved to its category or unit by one lookup. The first name indexed
// wins every clash, without a message, so a unit named like an earlier
// category or unit stays out of the index, and so does a category named like
// an earlier unit, together with all its units. Only what the administration
// holds is indexed, so no entry can outlive the category or unit it names.
#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

#include "quantor/admin.h"
#include "quantor/category.h"

const QtrAdminStd::IndexEntry* QtrAdminStd::IndexEntryFind(std::wstring_view name) const {
    const std::uint32_t position = indexByName_.Find(name, [this](std::uint32_t at) { return index_[at].name; });
    return position == quantor::detail::NameIndex::kNotFound ? nullptr : &index_[position];
}

bool QtrAdminStd::IndexEntryAdd(const IndexEntry& entry) {
    if (IndexEntryFind(entry.name)) return false;
    indexByName_.Append(entry.name, [this](std::uint32_t at) { return index_[at].name; });
    index_.push_back(entry);
    return true;
}

bool QtrAdminStd::FastFind(const wchar_t* name, const QtrCategoryBase*& category, const QtrUnitBase*& unit) const {
    const IndexEntry* entry = name ? IndexEntryFind(name) : nullptr;
    if (!entry) return false;
    category = entry->category;
    unit = entry->unit;
    return category || unit;
}

void QtrAdminStd::IndexUnit(const QtrUnitBase* unit) {
    if (unit && !published_) IndexEntryAdd(IndexEntry{unit->Name(), nullptr, unit});
}

// A unit is indexed only as one of the units of a category held here.
void QtrAdminStd::FastfindUnitAdd(const QtrUnitBase* unit) {
    const QtrCategoryBase* category = unit ? unit->Category() : nullptr;
    if (!held_.contains(category)) return;
    const auto* own = dynamic_cast<const QtrCategoryStd*>(category);
    if (!own || own->Holds(unit)) IndexUnit(unit);
}

void QtrAdminStd::IndexUnits(const QtrCategoryBase& category) {
    std::vector<const QtrUnitBase*> units;
    category.UnitPtrs(units);
    // Room for the whole category at once, yet growing at least twofold, so
    // that categories of a few units each still cost constant time apiece.
    const std::size_t count = index_.size() + units.size();
    if (count > index_.capacity()) index_.reserve(std::max(count, 2 * index_.capacity()));
    indexByName_.Reserve(count, [this](std::uint32_t at) { return index_[at].name; });
    for (const QtrUnitBase* unit : units) IndexUnit(unit);
}

bool QtrAdminStd::IndexCategory(const QtrCategoryBase* category) {
    return IndexEntryAdd(IndexEntry{category->Name(), category, nullptr});
}

void QtrAdminStd::FastfindCategAdd(const QtrCategoryBase* category) {
    if (!held_.contains(category) || published_) return;
    if (IndexCategory(category)) IndexUnits(*category);
}
