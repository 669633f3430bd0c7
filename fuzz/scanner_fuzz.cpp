// Fuzz target for the scanner alone: any bytes as a description file are cut
// into tokens up to the end of the file, which must come after at most one
// token per character.
#include "dscr/scanner.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::DiagnosticsSilence();
    static const fuzz::ScratchFile input("quantor-fuzz-scanner");
    input.Write(data, size);
    X_New_Scanfile scanner;
    if (!scanner.SFOpen(input.WidePath())) return 0;
    X_Token token;
    size_t tokens = 0;
    while (scanner.TokenGet(token) != TOKID_EOF) {
        fuzz::Require(++tokens <= size + 1, "the scanner does not come to the end of the file");
        fuzz::Require(token.line >= 1 && token.column >= 0, "a token has no position");
    }
    return 0;
}
