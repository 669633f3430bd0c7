// The administration's name index: every category and unit name it knows,
// resolved to its category or unit by one lookup. The first name indexed
// wins every clash, without a message, so a unit named like an earlier
// category or unit stays out of the index, and so does a category named like
// an earlier unit, together with all its units. Only what the administration
// holds is indexed, so no entry can outlive the category or unit it names.
#include <string_view>
#include <vector>

#include "quantor/admin.h"
#include "quantor/category.h"
#include "units/name_hash.h"

bool QtrAdminStd::FastFind(const wchar_t* name, const QtrCategoryBase*& category, const QtrUnitBase*& unit) const {
    if (!name) return false;
    const auto [view, hash] = quantor::detail::NameHashed(name);
    const IndexEntry* entry = index_.Find(view, hash);
    if (!entry) return false;
    category = entry->category;
    unit = entry->unit;
    return category || unit;
}

void QtrAdminStd::IndexUnit(const QtrUnitBase* unit) {
    if (unit && !published_) index_.TryEmplace(unit->Name(), IndexEntry{nullptr, unit});
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
    index_.Reserve(index_.Size() + units.size());
    for (const QtrUnitBase* unit : units) IndexUnit(unit);
}

void QtrAdminStd::FastfindCategAdd(const QtrCategoryBase* category) {
    if (!held_.contains(category) || published_) return;
    if (index_.TryEmplace(category->Name(), IndexEntry{category, nullptr})) IndexUnits(*category);
}
