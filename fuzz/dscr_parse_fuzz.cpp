// Fuzz target for reading description files: any bytes are parsed into an
// administration; every rule of a catalogue that parsed must hold finite
// numbers and a factor other than zero (so that no "nan" or "inf" is ever
// printed), and its print with all rules must read back to the same
// categories, units and conversions.
#include <cmath>
#include <vector>

#include "fuzz_support.h"
#include "quantor/admin_dscr.h"
#include "quantor/category.h"
#include "quantor/convinfo.h"
#include "quantor/types.h"
#include "quantor/unit.h"

namespace {

bool WithinOneUlp(double a, double b) { return a == b || std::nextafter(a, b) == b; }

// A rule read from a statement prints exactly; a derived one within one unit
// in the last place.
void SameRuleRequire(const QtrConvInfoBase* rule, const QtrConvInfoBase* back) {
    fuzz::Require((rule == nullptr) == (back == nullptr), "a rule is lost or gained in the print");
    if (!rule) return;
    fuzz::Require(std::isfinite(rule->Factor()) && rule->Factor() != 0.0 && std::isfinite(rule->Addend()),
                  "a rule holds a number that cannot be printed");
    const bool exact = rule->Is_Explicit();
    fuzz::Require(exact ? rule->Factor() == back->Factor() : WithinOneUlp(rule->Factor(), back->Factor()),
                  "a factor changes in the print");
    fuzz::Require(exact ? rule->Addend() == back->Addend() : WithinOneUlp(rule->Addend(), back->Addend()),
                  "an addend changes in the print");
}

void SameCatalogueRequire(const QtrAdminStd& original, const QtrAdminStd& reread) {
    std::vector<const QtrCategoryBase*> categories, again;
    original.CategPtrs(categories);
    reread.CategPtrs(again);
    fuzz::Require(categories.size() == again.size(), "the print has another number of categories");
    for (size_t c = 0; c < categories.size(); ++c) {
        std::vector<const QtrUnitBase*> units, back;
        categories[c]->UnitPtrs(units);
        again[c]->UnitPtrs(back);
        fuzz::Require(categories[c]->Name() == again[c]->Name() && units.size() == back.size(),
                      "a category changes in the print");
        for (size_t s = 0; s < units.size(); ++s) {
            fuzz::Require(units[s]->Name() == back[s]->Name(), "a unit changes in the print");
            for (size_t t = 0; t < units.size(); ++t)
                if (s != t) SameRuleRequire(units[s]->ConvInfo(units[t]), back[s]->ConvInfo(back[t]));
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::DiagnosticsSilence();
    static const fuzz::ScratchFile input("quantor-fuzz-input");
    static const fuzz::ScratchFile printed("quantor-fuzz-printed");

    input.Write(data, size);
    QtrAdminDscr admin;
    if (!admin.Import_Parse(input.WidePath().c_str())) return 0;

    QtrTextFile out;
    fuzz::Require(out.Open(printed.WidePath().c_str()), "cannot write the print");
    admin.PrettyPrint(&out, true);
    out.Close();
    QtrAdminDscr reread;
    fuzz::Require(reread.Import_Parse(printed.WidePath().c_str()), "the print does not read back");
    SameCatalogueRequire(admin, reread);
    return 0;
}
