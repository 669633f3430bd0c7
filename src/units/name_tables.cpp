// The resolver's name tables. After each file is added the list of spellings
// and the case-folded index are rebuilt from scratch: the exact names first,
// then the synonyms and display names that no earlier kind already claims.
// A folded form shared by names of different targets is kept as ambiguous.
#include "units/name_tables.h"

#include <algorithm>

#include "quantor/admin.h"
#include "units/name_case_fold.h"

namespace quantor::detail {

namespace {

// Longest name folded on the stack; longer typed names fold into a string.
constexpr std::size_t kStackFoldLength = 64;

}  // namespace

NameTables::NameTables(const QtrAdminStd& admin) : admin_(admin) { SpellingsBuild(); }

NameTarget NameTables::Indexed(const std::wstring& name) const {
    NameTarget target;
    admin_.FastFind(name.c_str(), target.category, target.unit);
    return target;
}

NameTarget NameTables::Found(const NameMap& map, std::wstring_view name) {
    const auto entry = map.find(name);
    return entry != map.end() ? entry->second : NameTarget{};
}

void NameTables::SynonymsAdd(const RlgEntries& entries) {
    for (const auto& [synonym, name] : entries) {
        const NameTarget target = Indexed(name);
        if (target.IsSet()) synonyms_.try_emplace(synonym, target);
    }
    SpellingsBuild();
}

void NameTables::DisplayNamesAdd(const RlgEntries& entries) {
    for (const auto& [name, displayName] : entries) {
        const NameTarget target = Indexed(name);
        if (!target.IsSet()) continue;
        const auto [entry, added] = displayNames_.try_emplace(displayName, target);
        if (!added && entry->second != target) entry->second = NameTarget{};
    }
    SpellingsBuild();
}

NameTarget NameTables::Synonym(std::wstring_view name) const { return Found(synonyms_, name); }

std::vector<std::wstring> NameTables::SynonymsOf(NameTarget target) const {
    std::vector<std::wstring> names;
    for (const auto& [synonym, named] : synonyms_)
        if (named == target && !Indexed(synonym).IsSet()) names.push_back(synonym);
    std::sort(names.begin(), names.end());
    return names;
}

NameTarget NameTables::DisplayName(std::wstring_view name) const { return Found(displayNames_, name); }

NameTarget NameTables::CaseInsensitive(std::wstring_view name) const {
    if (name.size() > longestName_) return {};
    if (name.size() > kStackFoldLength) return Found(folded_, CaseFolded(name));
    wchar_t buffer[kStackFoldLength];
    CaseFoldInto(name, buffer);
    return Found(folded_, std::wstring_view(buffer, name.size()));
}

void NameTables::SpellingAdd(const std::wstring& name, NameTarget target, SpellingKind kind) {
    if (!target.IsSet()) return;
    Spelling spelling{name, CaseFolded(name), target, kind};
    const auto [entry, added] = folded_.try_emplace(spelling.folded, target);
    if (!added && entry->second != target) entry->second = NameTarget{};
    longestName_ = std::max(longestName_, name.size());
    spellings_.push_back(std::move(spelling));
}

void NameTables::SpellingsBuild() {
    spellings_.clear();
    folded_.clear();
    longestName_ = 0;
    std::vector<const QtrCategoryBase*> categories;
    admin_.CategPtrs(categories);
    std::vector<const QtrUnitBase*> units;
    for (const QtrCategoryBase* category : categories) {
        // A name indexed for an earlier category or unit is listed once, by
        // the first owner, which is the one the index answers for.
        if (Indexed(category->Name()) == NameTarget{category, nullptr})
            SpellingAdd(category->Name(), {category, nullptr}, SpellingKind::Exact);
        units.clear();
        category->UnitPtrs(units);
        for (const QtrUnitBase* unit : units)
            if (Indexed(unit->Name()) == NameTarget{nullptr, unit})
                SpellingAdd(unit->Name(), {nullptr, unit}, SpellingKind::Exact);
    }
    for (const auto& [synonym, target] : synonyms_)
        if (!Indexed(synonym).IsSet()) SpellingAdd(synonym, target, SpellingKind::Synonym);
    for (const auto& [displayName, target] : displayNames_)
        if (!Indexed(displayName).IsSet() && !synonyms_.contains(displayName))
            SpellingAdd(displayName, target, SpellingKind::DisplayName);
}

}  // namespace quantor::detail
