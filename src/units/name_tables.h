// The names a resolver knows beyond the administration's own index: synonyms,
// display names read backwards, and the case-folded form of every name. Each
// maps to a unit or a category of the administration. Built while language
// files are added; afterwards only read, so lookups from many threads are safe.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "quantor/model.h"
#include "units/rlg_file.h"

class QtrAdminStd;

namespace quantor::detail {

// A unit or a category; neither set means "no such name" or, in a table,
// "more than one candidate".
struct NameTarget {
    const QtrCategoryBase* category = nullptr;
    const QtrUnitBase* unit = nullptr;
    bool IsSet() const { return category || unit; }
    bool operator==(const NameTarget&) const = default;
};

// Where a known spelling comes from, in the order a typed name is tried.
enum class SpellingKind { Exact, Synonym, DisplayName };

// A name a person may type, as it resolves on its own.
struct Spelling {
    std::wstring name;
    std::wstring folded;
    NameTarget target;
    SpellingKind kind;
};

class NameTables {
public:
    // Knows the exact names of `admin`, which must outlive the tables.
    explicit NameTables(const QtrAdminStd& admin);

    // Adds "synonym<TAB>name" entries; a synonym already held keeps its
    // target, and an entry whose name the administration does not index is
    // skipped.
    void SynonymsAdd(const RlgEntries& entries);
    // Adds "name<TAB>display name" entries read backwards; a display name
    // given to two different units or categories names neither.
    void DisplayNamesAdd(const RlgEntries& entries);

    // Lookups without allocation; an unset target when there is no single match.
    NameTarget Synonym(std::wstring_view name) const;
    NameTarget DisplayName(std::wstring_view name) const;
    NameTarget CaseInsensitive(std::wstring_view name) const;

    // The synonyms that resolve to `target`, sorted; not those that are
    // exact names of the administration, which never resolve as synonyms.
    std::vector<std::wstring> SynonymsOf(NameTarget target) const;

    // Every name that resolves on its own, each once, with its target.
    const std::vector<Spelling>& Spellings() const { return spellings_; }

private:
    struct NameHash {
        using is_transparent = void;
        std::size_t operator()(std::wstring_view name) const noexcept {
            return std::hash<std::wstring_view>{}(name);
        }
    };
    using NameMap = std::unordered_map<std::wstring, NameTarget, NameHash, std::equal_to<>>;

    NameTarget Indexed(const std::wstring& name) const;
    static NameTarget Found(const NameMap& map, std::wstring_view name);
    void SpellingsBuild();
    void SpellingAdd(const std::wstring& name, NameTarget target, SpellingKind kind);

    const QtrAdminStd& admin_;
    NameMap synonyms_;
    NameMap displayNames_;
    NameMap folded_;
    std::vector<Spelling> spellings_;
    std::size_t longestName_ = 0;
};

}  // namespace quantor::detail
