// Names people type: resolves what a person typed to a unit or category of an
// administration (the exact name, then a synonym of the active language or of
// English, then a display name of the active translation, then a unique
// case-insensitive match), and suggests the closest known names for a name
// that resolves to nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "quantor/export.h"
#include "quantor/model.h"

class QtrAdminStd;
namespace quantor::detail {
class NameTables;
}

// How a typed name was found, from the most to the least exact.
enum class QtrNameMatch { None, Exact, Synonym, DisplayName, CaseInsensitive };

struct QtrResolvedName {
    const QtrCategoryBase* category = nullptr;  // set when the name is a category's
    const QtrUnitBase* unit = nullptr;          // set when the name is a unit's
    QtrNameMatch match = QtrNameMatch::None;
};

class QUANTOR_API QtrNameResolver {
public:
    // Resolves names of `admin`, which must outlive the resolver and be loaded
    // before it: a name added later is found exactly but by no other stage.
    // Knows only the exact and case-insensitive names until language files
    // are read.
    explicit QtrNameResolver(const QtrAdminStd& admin);
    QtrNameResolver(const QtrNameResolver&) = delete;
    QtrNameResolver& operator=(const QtrNameResolver&) = delete;
    ~QtrNameResolver();

    // Reads the synonyms of `languageId`, then those of English (0x0409), and
    // the display names of `languageId` from UnitSynonyms<id>.rlg and
    // UnitAbbrevNames<id>.rlg, located like the translation files, so the
    // active language wins a synonym that English gives another unit. A
    // missing file is no error; one that exists but cannot be read is
    // reported to the log and makes the answer false.
    bool LanguageLoad(uint16_t languageId);
    // Adds one synonym file ("synonym<TAB>unit or category name" lines) or one
    // display-name file ("unit name<TAB>display name" lines); false, adding
    // nothing, when it is missing or malformed. A synonym already held keeps
    // its unit; a line naming no unit or category is skipped; a display name
    // given to two units names neither.
    bool SynonymFileRead(const wchar_t* path);
    bool DisplayNameFileRead(const wchar_t* path);

    // The unit or category that `typed` names: its exact name, else a synonym,
    // else a display name, else a case-insensitive match that only one unit
    // or category has. Never allocates for a name of up to 64 characters;
    // safe to call from many threads at once.
    QtrResolvedName Resolve(const wchar_t* typed) const;
    // The synonyms that resolve to the unit (or, without one, the category)
    // of `named`, sorted; the exact name and display names are not among them.
    std::vector<std::wstring> Synonyms(const QtrResolvedName& named) const;
    // Up to `most` known names closest to `typed` (at most three edits,
    // letter case ignored), closest first, one name per unit or category.
    std::vector<std::wstring> Suggest(const wchar_t* typed, std::size_t most = 5) const;

private:
    const QtrAdminStd& admin_;
    std::unique_ptr<quantor::detail::NameTables> tables_;
};

// The resolver of the default administration with the settings' language;
// null while the default administration cannot be loaded.
QUANTOR_API const QtrNameResolver* QtrNameResolverDefault();
// Resolves through QtrNameResolverDefault(); no match when there is none.
QUANTOR_API QtrResolvedName NameResolve(const wchar_t* typed);
