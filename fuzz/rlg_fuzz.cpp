// Fuzz target for translation files: any bytes as an .rlg file are read into
// a dictionary; a file that reads translates every name it holds, and a
// second read of the same file changes no translation.
#include <string>

#include "fuzz_support.h"
#include "quantor/translation.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::DiagnosticsSilence();
    static const fuzz::ScratchFile input("quantor-fuzz-rlg");
    input.Write(data, size);
    XLMTranslDict dictionary;
    if (!dictionary.RLGFileRead(input.WidePath().c_str(), false)) return 0;
    const std::wstring probe = dictionary.StringTranslate(L"m");
    fuzz::Require(dictionary.RLGFileRead(input.WidePath().c_str(), true), "a file that read once does not read again");
    fuzz::Require(dictionary.StringTranslate(L"m") == probe, "a second read changes a translation");
    return 0;
}
