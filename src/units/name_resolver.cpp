// The resolver of typed names: tries the administration's exact index, then
// the synonyms, then the display names of the active language, then a unique
// case-insensitive match. Language files are located like the translation
// files; a missing one is no error, since not every language has each kind.
#include <utility>

#include "etc/diag_log.h"
#include "quantor/admin.h"
#include "quantor/names.h"
#include "units/name_tables.h"
#include "units/rlg_file.h"

namespace {

using quantor::detail::NameTarget;

constexpr uint16_t kEnglish = 0x0409;

QtrResolvedName Resolved(NameTarget target, QtrNameMatch match) {
    if (!target.IsSet()) return {};
    return {target.category, target.unit, match};
}

// The entries of the file at `path`; false when it is missing or malformed.
bool EntriesRead(const wchar_t* path, quantor::detail::RlgEntries& entries) {
    return path && quantor::detail::RlgFileRead(path, entries);
}

using FileRead = bool (QtrNameResolver::*)(const wchar_t*);

// Reads the file of `languageId` named by `nameFormat` if it exists; a file
// that exists but cannot be read is reported.
bool LanguageFileRead(QtrNameResolver& resolver, FileRead read, const wchar_t* nameFormat, uint16_t languageId) {
    const std::wstring path = QtrFormat(nameFormat, languageId);
    if (quantor::detail::RlgFileLocate(path).empty() || (resolver.*read)(path.c_str())) return true;
    Error_Report(kSrcUnitsStd, __LINE__, L"QtrNameResolver::LanguageLoad(%04x): cannot read \"%s\"\n", languageId,
                 path);
    return false;
}

}  // namespace

QtrNameResolver::QtrNameResolver(const QtrAdminStd& admin)
    : admin_(admin), tables_(std::make_unique<quantor::detail::NameTables>(admin)) {}

QtrNameResolver::~QtrNameResolver() = default;

bool QtrNameResolver::SynonymFileRead(const wchar_t* path) {
    quantor::detail::RlgEntries entries;
    if (!EntriesRead(path, entries)) return false;
    tables_->SynonymsAdd(entries);
    return true;
}

bool QtrNameResolver::DisplayNameFileRead(const wchar_t* path) {
    quantor::detail::RlgEntries entries;
    if (!EntriesRead(path, entries)) return false;
    tables_->DisplayNamesAdd(entries);
    return true;
}

bool QtrNameResolver::LanguageLoad(uint16_t languageId) {
    // The active language's synonyms are read first, so they win a clash.
    const wchar_t* const synonyms = L"UnitSynonyms%04x.rlg";
    bool allRead = LanguageFileRead(*this, &QtrNameResolver::SynonymFileRead, synonyms, languageId);
    if (languageId != kEnglish)
        allRead &= LanguageFileRead(*this, &QtrNameResolver::SynonymFileRead, synonyms, kEnglish);
    allRead &= LanguageFileRead(*this, &QtrNameResolver::DisplayNameFileRead, L"UnitAbbrevNames%04x.rlg", languageId);
    return allRead;
}

QtrResolvedName QtrNameResolver::Resolve(const wchar_t* typed) const {
    if (!typed || !*typed) return {};
    NameTarget exact;
    if (admin_.FastFind(typed, exact.category, exact.unit)) return Resolved(exact, QtrNameMatch::Exact);
    const std::wstring_view name(typed);
    if (const NameTarget target = tables_->Synonym(name); target.IsSet())
        return Resolved(target, QtrNameMatch::Synonym);
    if (const NameTarget target = tables_->DisplayName(name); target.IsSet())
        return Resolved(target, QtrNameMatch::DisplayName);
    return Resolved(tables_->CaseInsensitive(name), QtrNameMatch::CaseInsensitive);
}

std::vector<std::wstring> QtrNameResolver::Synonyms(const QtrResolvedName& named) const {
    if (named.unit) return tables_->SynonymsOf({nullptr, named.unit});
    if (named.category) return tables_->SynonymsOf({named.category, nullptr});
    return {};
}
