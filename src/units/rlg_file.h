// Language files (.rlg): locating them like description files, with the
// settings' description-file folder as the last place for a bare name, and
// reading their "key<TAB>value" lines. The translation dictionary and the
// resolver of typed names both read them.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace quantor::detail {

using RlgEntries = std::vector<std::pair<std::wstring, std::wstring>>;

// The full path of `path` found by the file search or, for a bare name, in
// the settings' description-file folder; empty when it is in neither.
std::wstring RlgFileLocate(const std::wstring& path);

// Appends the entries of the file at `found` in file order; false if it cannot
// be read or a line that is neither blank nor a '#' comment has no TAB.
bool RlgEntriesRead(const std::wstring& found, RlgEntries& entries);

// RlgFileLocate, then RlgEntriesRead; false also when the file is not found.
bool RlgFileRead(const std::wstring& path, RlgEntries& entries);

}  // namespace quantor::detail
