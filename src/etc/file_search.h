// Locating description and translation files. A file is usually named
// without a folder; the search tries the name as given, the host program's
// folder, the installation's data folder beside a "program/bin" folder, the
// current folder, the folder configured in QUANTOR_RLG_PATH and finally every
// folder of PATH, and answers the absolute path of the first file found.
#pragma once

#include <string>

// The absolute path of the first place that holds `name`, or an empty string.
// Only the name as given may carry a folder; every later place is tried with
// the file-name part alone. A missing or empty PATH is reported when the
// places before it fail.
std::wstring UnitFilePathSearch(const std::wstring& name);

// The same search, with `executablePath` standing for the running program.
std::wstring UnitFilePathSearchFrom(const std::wstring& name, const std::wstring& executablePath);

// The folder configured for translation and description files: the
// environment variable QUANTOR_RLG_PATH, or an empty string.
std::wstring RlgPathGet();
