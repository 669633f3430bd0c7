// Language files (.rlg): UTF-8 or UTF-16 text of "key<TAB>value" lines,
// blank lines and '#' comments ignored. A file is located like a description
// file; a bare name that the file search does not find is looked for in the
// folder that the settings give for the description files, so language files
// can live beside the catalogue.
#include "units/rlg_file.h"

#include <filesystem>
#include <string_view>

#include "etc/file_search.h"
#include "etc/text_reader.h"
#include "etc/utf8.h"
#include "units/settings_source.h"

namespace {

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

bool IsIgnoredLine(std::wstring_view line) {
    return line.starts_with(L'#') || line.find_first_not_of(L" \t") == std::wstring_view::npos;
}

}  // namespace

namespace quantor::detail {

std::wstring RlgFileLocate(const std::wstring& path) {
    std::wstring found = UnitFilePathSearch(path.c_str());
    const bool bareName = path.find(L'/') == std::wstring::npos;
    if (found.empty() && bareName) found = SettingsFolderCandidate(path);
    return found;
}

bool RlgEntriesRead(const std::wstring& found, RlgEntries& entries) {
    TextReader reader;
    if (!reader.Open(found)) return false;
    std::wstring line;
    while (reader.ReadLine(line)) {
        if (IsIgnoredLine(line)) continue;
        const size_t tab = line.find(L'\t');
        if (tab == std::wstring::npos) return false;
        entries.emplace_back(line.substr(0, tab), line.substr(tab + 1));
    }
    return true;
}

bool RlgFileRead(const std::wstring& path, RlgEntries& entries) {
    const std::wstring found = RlgFileLocate(path);
    return !found.empty() && RlgEntriesRead(found, entries);
}

}  // namespace quantor::detail
