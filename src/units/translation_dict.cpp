// The translation dictionary: unit names and their display names in one
// language, read from an .rlg file of "name<TAB>translation" lines. The file
// is located like a description file; a bare name that the file search does
// not find is looked for in the folder that the settings give for the
// description files, so translations can live beside the catalogue.
#include <utility>

#include "quantor/translation.h"
#include "units/rlg_file.h"

bool XLMTranslDict::RLGFileRead(const wchar_t* path, bool /*flag*/) {
    if (!path) return false;
    quantor::detail::RlgEntries read;
    if (!quantor::detail::RlgFileRead(path, read)) return false;
    for (auto& [name, translation] : read) entries_.insert_or_assign(std::move(name), std::move(translation));
    return true;
}

std::wstring XLMTranslDict::StringTranslate(const wchar_t* name) const {
    if (!name) return {};
    const auto entry = entries_.find(name);
    return entry != entries_.end() ? entry->second : std::wstring(name);
}
