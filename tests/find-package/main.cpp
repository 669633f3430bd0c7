// A host program linked to the installed library: it includes the umbrella
// header, converts a value through the default administration (which must
// find the installed catalogue) and fails if an answer is wrong.
#include <quantor/quantor.h>

#include <cstdio>
#include <string>

int main() {
    QtrSetLogSink([](const QtrLogEntry& entry) { std::fprintf(stderr, "log: %ls", entry.message.c_str()); });
    double metres = 0.0;
    const bool converted = UnitConvert(metres, L"m", 2.5, L"km");
    std::wstring image;
    Cnvrt_Dbl2IEEE(metres, image);
    const bool ok = converted && IsDblEqual(metres, 2500.0, 10) && image == L"40A3880000000000";
    std::printf("Quantor consumer: 2.5 km = %g m (%ls): %s\n", metres, image.c_str(), ok ? "ok" : "wrong");
    return ok ? 0 : 1;
}
