// Findings of the semantic actions: warnings about what the model accepts
// silently, and errors that the model reports only to the log, each worded
// for the author of the description file.
#include "dscr/action_findings.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <utility>
#include <vector>

#include "dscr/parse_error.h"
#include "etc/format.h"
#include "quantor/admin.h"
#include "quantor/convinfo.h"
#include "quantor/unit.h"

namespace {

X_ParseFindings& Findings() { return ParseState_Current().findings; }

void Warn(X_Place place, const std::wstring& message) { Findings().AddWarning(place.line, place.column, message); }

std::wstring Quoted(const std::wstring& name) { return L"'" + name + L"'"; }

// "the unit 'm' of category 'Length'" or "the category 'Length'".
std::wstring HolderText(const QtrCategoryBase* category, const QtrUnitBase* unit) {
    if (!unit) return L"the category " + Quoted(category ? category->Name() : std::wstring());
    const QtrCategoryBase* owner = unit->Category();
    return L"the unit " + Quoted(unit->Name()) + (owner ? L" of category " + Quoted(owner->Name()) : L"");
}

// Whether `name` is in the index already; its holder when it is.
bool IndexedHolder(const QtrAdminStd* admin, const std::wstring& name, std::wstring& holder) {
    const QtrCategoryBase* category = nullptr;
    const QtrUnitBase* unit = nullptr;
    if (!admin || !admin->FastFind(name.c_str(), category, unit)) return false;
    holder = HolderText(category, unit);
    return true;
}

// " on line N" when the place is known.
std::wstring LineText(const X_Place& place) {
    return place.line > 0 ? QtrFormat(L" on line %d", place.line) : std::wstring();
}

X_Place UnitPlace(const X_DeclarationPlaces& places, const QtrUnitBase* unit) {
    const auto found = places.units.find(unit);
    return found != places.units.end() ? found->second : places.categoryHead;
}

// The units with their positions, ordered by address, to find a rule's target.
using UnitPosition = std::pair<const QtrUnitBase*, size_t>;
using UnitPositions = std::vector<UnitPosition>;

bool AddressBefore(const UnitPosition& a, const UnitPosition& b) { return std::less<>()(a.first, b.first); }

UnitPositions PositionsByAddress(const std::vector<const QtrUnitBase*>& units) {
    UnitPositions positions;
    positions.reserve(units.size());
    for (size_t i = 0; i < units.size(); ++i) positions.emplace_back(units[i], i);
    std::sort(positions.begin(), positions.end(), AddressBefore);
    return positions;
}

// Calls `link(j)` for every unit j to which units[i] holds a rule. A unit of
// this library lists its rules, so the cost follows the rules stored; a unit
// of another kind is asked about every other unit.
template <class Link>
void RuleTargetsVisit(const std::vector<const QtrUnitBase*>& units, const UnitPositions& positions, size_t i,
                      std::vector<const QtrConvInfoBase*>& rules, Link link) {
    const auto* own = dynamic_cast<const QtrUnitStd*>(units[i]);
    if (!own) {
        for (size_t j = 0; j < units.size(); ++j)
            if (j != i && units[i]->ConvInfo(units[j])) link(j);
        return;
    }
    own->ConvInfosGet(rules);
    for (const QtrConvInfoBase* rule : rules) {
        const UnitPosition key{rule->TrgtUnit(), 0};
        const auto found = std::lower_bound(positions.begin(), positions.end(), key, AddressBefore);
        if (found != positions.end() && found->first == key.first) link(found->second);
    }
}

// The group of every unit: units linked by a rule, directly or through
// others, share the group of the earliest of them.
std::vector<size_t> UnitGroups(const std::vector<const QtrUnitBase*>& units) {
    std::vector<size_t> group(units.size());
    std::iota(group.begin(), group.end(), size_t{0});
    const auto root = [&group](size_t i) {
        while (group[i] != i) i = group[i] = group[group[i]];
        return i;
    };
    const UnitPositions positions = PositionsByAddress(units);
    std::vector<const QtrConvInfoBase*> rules;
    for (size_t i = 0; i < units.size(); ++i) {
        RuleTargetsVisit(units, positions, i, rules, [&](size_t j) {
            const size_t a = root(i), b = root(j);
            group[std::max(a, b)] = std::min(a, b);
        });
    }
    for (size_t i = 0; i < units.size(); ++i) group[i] = root(i);
    return group;
}

}  // namespace

X_Place PlaceOf(const X_ParsNode* node) {
    const X_ParsNode* earliest = node ? node->EarliestPosition() : nullptr;
    return earliest ? X_Place{earliest->Line(), earliest->Column()} : X_Place{};
}

void CategoryNameCheck(const QtrAdminStd* admin, const std::wstring& name, X_Place head) {
    std::wstring holder;
    if (!IndexedHolder(admin, name, holder)) return;
    Warn(head, L"The name " + Quoted(name) + L" already belongs to " + holder +
                   L". Lookups by this name find that one, so this category and its units cannot be found by "
                   L"name. Rename the category.");
}

void UnitNameCheck(const QtrAdminStd* admin, const std::wstring& name, X_Place place) {
    std::wstring holder;
    if (!IndexedHolder(admin, name, holder)) return;
    Warn(place, L"The name " + Quoted(name) + L" already belongs to " + holder +
                    L". Lookups by this name find that one, not this unit. Rename one of them.");
}

void UnitRedeclared(const X_DeclarationPlaces& places, const QtrCategoryBase& category, const QtrUnitBase& held,
                    X_Place place) {
    const auto first = places.units.find(&held);
    const std::wstring where = first != places.units.end() ? LineText(first->second) : std::wstring();
    Warn(place, L"The unit " + Quoted(held.Name()) + L" of category " + Quoted(category.Name()) +
                    L" is declared already" + where + L"; this declaration is ignored. Remove one of them.");
}

void UnitRefused(const QtrCategoryBase& category, const std::wstring& name, X_Place place,
                 const std::wstring& libraryText) {
    Findings().AddError(place.line, place.column,
                        L"Category " + Quoted(category.Name()) + L" refused the unit " + Quoted(name) +
                            L"; the unit is missing from the catalogue. The library's message says why.",
                        libraryText);
}

void RuleUnitUnknown(const QtrCategoryBase& category, const std::wstring& name, X_Place place,
                     const std::wstring& libraryText) {
    Findings().AddError(place.line, place.column,
                        Quoted(name) + L" is not a unit of category " + Quoted(category.Name()) +
                            L", so this rule is ignored. Declare it with 'unit " + name +
                            L";' before this statement, or correct the name.",
                        libraryText);
}

void RuleRepeated(const X_DeclarationPlaces& places, const QtrUnitBase& source, const QtrUnitBase& target,
                  X_Place place) {
    const auto first = places.rules.find({&source, &target});
    const std::wstring pair = Quoted(source.Name()) + L" to " + Quoted(target.Name());
    if (first == places.rules.end()) {
        Warn(place, L"A rule from " + pair + L" was derived already from an earlier block of this category; this "
                                             L"convert statement is ignored. Remove it or the rule it repeats.");
        return;
    }
    Warn(place, L"A rule from " + pair + L" is given already" + LineText(first->second) +
                    L"; this later convert statement is ignored. Remove one of them.");
}

void FormatShiftCheck(int pre, int post, X_Place place) {
    if ((pre != 0) == (post != 0)) return;
    Warn(place, QtrFormat(L"Only one of the format numbers (%d, %d) is not zero; a printed catalogue leaves such a "
                          L"format clause out, so it would not read back the same. Make both numbers non-zero, "
                          L"or both zero.",
                          pre, post));
}

void CompletionMisses(const X_DeclarationPlaces& places, const QtrCategoryBase& category,
                      const std::wstring& libraryText) {
    // Findings that nobody collects need not be worked out.
    if (!Findings().IsCollecting()) return;
    std::vector<const QtrUnitBase*> units;
    category.UnitPtrs(units);
    const std::vector<size_t> groups = UnitGroups(units);
    bool reported = false;
    for (size_t i = 1; i < units.size(); ++i) {
        if (groups[i] != i || groups[i] == groups[0]) continue;
        const X_Place place = UnitPlace(places, units[i]);
        Findings().AddError(place.line, place.column,
                            L"No rule links the unit " + Quoted(units[i]->Name()) + L" with " +
                                Quoted(units[0]->Name()) + L" of category " + Quoted(category.Name()) +
                                L", directly or through other units, so they cannot be converted into each other. "
                                L"Add a convert statement such as 'convert " +
                                units[i]->Name() + L" <- " + units[0]->Name() + L" * 1000;' with the right factor.",
                            libraryText);
        reported = true;
    }
    if (reported) return;
    const X_Place head = places.categoryHead;
    Findings().AddError(head.line, head.column,
                        L"Category " + Quoted(category.Name()) +
                            L" lacks rules that could not be derived from its convert statements: chaining or "
                            L"inverting them leaves the range of double precision (the library's message names "
                            L"the first). Link such units through a unit of middling size instead.",
                        libraryText);
}

void DefaultsCheck(const QtrCategoryBase& category, X_Place head) {
    if (category.DefaultInternUnitGet()) return;
    Warn(head, L"Category " + Quoted(category.Name()) +
                   L" has no default unit, so a lookup by the category's name finds no unit. Add 'defaultintern "
                   L"<unit>;' to its block; it also gives the display unit unless 'defaultsurface' names another.");
}
