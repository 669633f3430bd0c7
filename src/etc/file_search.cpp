// The search for description and translation files: a fixed list of folders
// tried in order, ending with the folders of PATH. Paths are handed to the
// operating system as UTF-8; a candidate counts when it exists and is not a
// folder.
#include "etc/file_search.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "etc/diag_log.h"
#include "etc/utf8.h"

namespace {

using quantor::detail::FromUtf8;
using quantor::detail::ToUtf8;

std::wstring EnvironmentValue(const char* variable) {
    const char* value = std::getenv(variable);
    return value ? FromUtf8(value) : std::wstring();
}

std::wstring ExecutablePath() {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::wstring() : FromUtf8(path.string());
}

// Stores the absolute path of `candidate` in `found` when a file of that name
// exists.
bool ExistingFile(const std::wstring& candidate, std::wstring& found) {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::canonical(ToUtf8(candidate), error);
    if (error || std::filesystem::is_directory(path, error)) return false;
    found = FromUtf8(path.string());
    return true;
}

std::wstring FileNamePart(const std::wstring& name) {
    const size_t slash = name.rfind(L'/');
    return slash == std::wstring::npos ? name : name.substr(slash + 1);
}

std::wstring FolderPart(const std::wstring& path) {
    const size_t slash = path.rfind(L'/');
    return slash == std::wstring::npos ? std::wstring() : path.substr(0, slash + 1);
}

std::wstring WithTrailingSlash(std::wstring folder) {
    if (!folder.ends_with(L'/')) folder += L'/';
    return folder;
}

// ASCII case folding: the pattern is ASCII, and the process locale must not
// change what matches (in a Turkish locale towlower('I') is a dotless i).
wchar_t AsciiLower(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; }

size_t FindIgnoringCase(std::wstring text, const std::wstring& lowerCasePattern) {
    std::ranges::transform(text, text.begin(), AsciiLower);
    return text.find(lowerCasePattern);
}

// The program's own folder, and for a program in a ".../program/bin" folder
// (any letter case) the installation's data folder beside it.
std::vector<std::wstring> ProgramFolders(const std::wstring& executablePath) {
    if (executablePath.empty()) return {};
    std::vector<std::wstring> folders{FolderPart(executablePath)};
    const size_t bin = FindIgnoringCase(executablePath, L"program/bin");
    if (bin != std::wstring::npos) folders.push_back(executablePath.substr(0, bin) + L"data/unitsandcurrencies/");
    return folders;
}

// The folders tried before PATH, after the name as given.
std::vector<std::wstring> FixedFolders(const std::wstring& executablePath) {
    std::vector<std::wstring> folders = ProgramFolders(executablePath);
    folders.push_back(L"./");
    const std::wstring configured = RlgPathGet();
    if (!configured.empty()) folders.push_back(WithTrailingSlash(configured));
    return folders;
}

// The entries of a PATH value; empty entries are skipped.
std::vector<std::wstring> PathFolders(const std::wstring& pathValue) {
    std::vector<std::wstring> folders;
    size_t start = 0;
    while (start <= pathValue.size()) {
        const size_t end = std::min(pathValue.find(L':', start), pathValue.size());
        if (end > start) folders.push_back(WithTrailingSlash(pathValue.substr(start, end - start)));
        start = end + 1;
    }
    return folders;
}

bool FirstExistingIn(const std::vector<std::wstring>& folders, const std::wstring& fileName, std::wstring& found) {
    for (const std::wstring& folder : folders)
        if (ExistingFile(folder + fileName, found)) return true;
    return false;
}

}  // namespace

std::wstring UnitFilePathSearchFrom(const std::wstring& name, const std::wstring& executablePath) {
    std::wstring found;
    if (ExistingFile(name, found)) return found;
    const std::wstring fileName = FileNamePart(name);
    if (FirstExistingIn(FixedFolders(executablePath), fileName, found)) return found;
    const std::wstring pathValue = EnvironmentValue("PATH");
    if (pathValue.empty()) {
        Error_Report(kSrcEtc, 195, L"UnitFilePathSearch(\"%s\"): no PATH-environment variable\n", name);
        return {};
    }
    FirstExistingIn(PathFolders(pathValue), fileName, found);
    return found;
}

std::wstring UnitFilePathSearch(const std::wstring& name) { return UnitFilePathSearchFrom(name, ExecutablePath()); }

std::wstring RlgPathGet() { return EnvironmentValue("QUANTOR_RLG_PATH"); }
