// A dictionary of unit-name translations read from an .rlg file.
#pragma once

#include <string>
#include <unordered_map>

#include "quantor/export.h"

class QUANTOR_API XLMTranslDict {
public:
    XLMTranslDict() = default;
    XLMTranslDict(const XLMTranslDict&) = delete;
    XLMTranslDict& operator=(const XLMTranslDict&) = delete;

    // Reads "name<TAB>translation" lines, located like a description file;
    // false when the file is missing or malformed.
    bool RLGFileRead(const wchar_t* path, bool flag);
    // The translation of `name`, or `name` itself when none is held.
    std::wstring StringTranslate(const wchar_t* name) const;

private:
    std::unordered_map<std::wstring, std::wstring> entries_;
};
