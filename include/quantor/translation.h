// A dictionary of unit-name translations read from .rlg files: UTF-8 (byte-order
// mark optional) or UTF-16 with a byte-order mark, one "name<TAB>translation"
// per line; blank lines and lines starting with '#' are ignored.
#pragma once

#include <string>
#include <unordered_map>

#include "quantor/export.h"

class QUANTOR_API XLMTranslDict {
public:
    XLMTranslDict() = default;
    XLMTranslDict(const XLMTranslDict&) = delete;
    XLMTranslDict& operator=(const XLMTranslDict&) = delete;

    // Adds the entries of the file at `path`, located like a description
    // file (a bare name is also looked for in the settings' description-file
    // folder); a name already held takes the file's translation. False, with
    // nothing added, when the file is missing or a line that is neither blank
    // nor a comment has no TAB. `flag` has no effect.
    bool RLGFileRead(const wchar_t* path, bool flag);
    // The translation of `name`, or `name` itself when none is held.
    std::wstring StringTranslate(const wchar_t* name) const;

private:
    std::unordered_map<std::wstring, std::wstring> entries_;
};
