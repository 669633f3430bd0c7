// The translation dictionary: unit names and their display names in one
// language, read from an .rlg file of "name<TAB>translation" lines. The file
// is located like a description file; a bare name that the file search does
// not find is looked for in the folder that the settings give for the
// description files, so translations can live beside the catalogue.
#include <filesystem>
#include <string_view>

#include "etc/file_search.h"
#include "etc/text_reader.h"
#include "etc/utf8.h"
#include "quantor/translation.h"
#include "units/settings_source.h"

namespace {

using Entries = std::unordered_map<std::wstring, std::wstring>;

// `name` in the settings' description-file folder, or empty when the
// settings give no folder or the file is not there.
std::wstring SettingsFolderCandidate(const std::wstring& name) {
    const auto settings = quantor::detail::SettingsCreate();
    if (!settings || !quantor::detail::SettingsPrepareLevels(*settings, {4, 3, 1})) return {};
    std::wstring folder;
    if (quantor::detail::SettingsFolderRead(*settings, folder) != quantor::detail::FolderSetting::Read) return {};
    std::wstring candidate = folder + L"/" + name;
    std::error_code error;
    return std::filesystem::is_regular_file(quantor::detail::ToUtf8(candidate), error) ? candidate : std::wstring();
}

std::wstring RlgFileLocate(const std::wstring& path) {
    std::wstring found = UnitFilePathSearch(path.c_str());
    const bool bareName = path.find(L'/') == std::wstring::npos;
    if (found.empty() && bareName) found = SettingsFolderCandidate(path);
    return found;
}

bool IsIgnoredLine(std::wstring_view line) {
    return line.starts_with(L'#') || line.find_first_not_of(L" \t") == std::wstring_view::npos;
}

// Reads every entry of the file; false if it cannot be read or a line that
// is neither blank nor a comment has no TAB.
bool EntriesRead(const std::wstring& path, Entries& entries) {
    quantor::detail::TextReader reader;
    if (!reader.Open(path)) return false;
    std::wstring line;
    while (reader.ReadLine(line)) {
        if (IsIgnoredLine(line)) continue;
        const size_t tab = line.find(L'\t');
        if (tab == std::wstring::npos) return false;
        entries.insert_or_assign(line.substr(0, tab), line.substr(tab + 1));
    }
    return true;
}

}  // namespace

bool XLMTranslDict::RLGFileRead(const wchar_t* path, bool /*flag*/) {
    if (!path) return false;
    const std::wstring found = RlgFileLocate(path);
    Entries read;
    if (found.empty() || !EntriesRead(found, read)) return false;
    read.merge(entries_);
    entries_.swap(read);
    return true;
}

std::wstring XLMTranslDict::StringTranslate(const wchar_t* name) const {
    if (!name) return {};
    const auto entry = entries_.find(name);
    return entry != entries_.end() ? entry->second : std::wstring(name);
}
