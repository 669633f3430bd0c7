// The shipped catalogue: every region mode loads without a message or a
// finding, 268 conversions agree with the factors of NIST SP 811 (appendix
// B.8) and with the exact values behind them, exactly defined units convert
// to the last bit, every unit name means one unit, and the name files of the
// four languages load, cover every unit and category, agree with one another
// and lead each typed name to its unit.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "etc/utf8.h"
#include "quantor/admin.h"
#include "quantor/admin_dscr.h"
#include "quantor/category.h"
#include "quantor/names.h"
#include "quantor/translation.h"
#include "quantor/unit.h"
#include "support/sink_capture.h"

namespace {

const std::string kFolder = QUANTOR_TEST_DATA_DIR "/unitsandcurrencies/";
const char* const kRegionFiles[] = {"",
                                    "curr_dscr_atlantic.txt",
                                    "curr_dscr_extended_european.txt",
                                    "curr_dscr_america.txt",
                                    "curr_dscr_asia_pacific.txt",
                                    "curr_dscr_middle_east.txt",
                                    "curr_dscr_customized.txt"};
const char* const kLanguages[] = {"0409", "0407", "040c", "0c0a"};

std::wstring Wide(const std::string& text) { return quantor::detail::FromUtf8(text); }

// The default loading of one region mode: the unit file, the common currency
// file and the region's file (none for mode 1). `findings` receives every
// finding of the three reads.
std::unique_ptr<QtrAdminDscr> Load(const std::string& region, QtrDiagnostics& findings) {
    auto admin = std::make_unique<QtrAdminDscr>();
    for (const std::string& file : {std::string("unit_dscr.txt"), std::string("curr_dscr_edy.txt"), region})
        if (!file.empty()) {
            EXPECT_TRUE(admin->Import_Parse(Wide(kFolder + file).c_str(), findings)) << file;
        }
    return admin;
}

std::unique_ptr<QtrAdminDscr> Load(const std::string& region) {
    QtrDiagnostics findings;
    return Load(region, findings);
}

// "file:line:column: error|warning: message", as a catalogue author reads it.
std::string FindingText(const QtrDiagnostic& finding) {
    return quantor::detail::ToUtf8(finding.file) + ":" + std::to_string(finding.line) + ":" +
           std::to_string(finding.column) + (finding.severity == QtrSeverity::Error ? ": error: " : ": warning: ") +
           quantor::detail::ToUtf8(finding.message);
}

// Every unit of the administration, with its category.
std::map<std::wstring, const QtrCategoryBase*> Units(const QtrAdminStd& admin) {
    std::map<std::wstring, const QtrCategoryBase*> units;
    std::vector<const QtrCategoryBase*> categories;
    admin.CategPtrs(categories);
    for (const QtrCategoryBase* category : categories) {
        std::vector<const QtrUnitBase*> members;
        category->UnitPtrs(members);
        for (const QtrUnitBase* unit : members) units.emplace(unit->Name(), category);
    }
    return units;
}

// A conversion of the shipped catalogue (region mode 1); NaN when it fails.
double Convert(const QtrAdminStd& admin, const wchar_t* from, const wchar_t* to, double value = 1.0) {
    double result = std::nan("");
    return admin.Convert(result, to, value, from) ? result : std::nan("");
}

class ShippedCatalogue : public testing::Test {
protected:
    static void SetUpTestSuite() { admin_ = Load("").release(); }
    static void TearDownTestSuite() { delete admin_; }
    static const QtrAdminDscr* admin_;
};
const QtrAdminDscr* ShippedCatalogue::admin_ = nullptr;

TEST(ShippedCatalogueFiles, EveryRegionModeLoadsWithoutAMessageOrFinding) {
    for (const char* region : kRegionFiles) {
        SCOPED_TRACE(region);
        const LogCapture log;
        const TraceCapture trace;
        QtrDiagnostics findings;
        const auto admin = Load(region, findings);
        EXPECT_EQ(log.Messages(), std::vector<std::wstring>{});
        EXPECT_EQ(trace.Text(), L"");
        for (const QtrDiagnostic& finding : findings) ADD_FAILURE() << FindingText(finding);
        std::vector<std::wstring> categories;
        admin->CategNames(categories);
        EXPECT_GE(categories.size(), 46u);
        EXPECT_GE(Units(*admin).size(), 600u + 25u);  // units besides the common currencies
        for (const std::wstring& name : categories) {
            const QtrCategoryBase* category = admin->Category(name.c_str());
            EXPECT_NE(category->DefaultInternUnitGet(), nullptr) << name;
            EXPECT_NE(category->DefaultSurfaceUnitGet(), nullptr) << name;
        }
    }
}

// A name found through the administration is the unit of the category that
// declares it: no unit hides behind another of the same name or a category.
TEST(ShippedCatalogueFiles, EveryNameMeansOneUnit) {
    for (const char* region : kRegionFiles) {
        SCOPED_TRACE(region);
        const auto admin = Load(region);
        for (const auto& [name, category] : Units(*admin)) {
            const QtrUnitBase* unit = admin->Unit(name.c_str());
            ASSERT_NE(unit, nullptr) << quantor::detail::ToUtf8(name);
            EXPECT_EQ(unit->Category(), category) << quantor::detail::ToUtf8(name);
            EXPECT_EQ(admin->Category(name.c_str()), nullptr) << quantor::detail::ToUtf8(name);
        }
    }
}

struct NistRow {
    const char* row;  // the row of NIST SP 811, appendix B.8
    const wchar_t* from;
    const wchar_t* to;
    const char* printed;  // NIST's factor as printed (bold: exact)
    double exact;         // the factor from the unit's exact definition
};

const NistRow kNist[] = {
    {"angstrom (Å) to meter", L"angstrom", L"m", "1.0E-10", 1e-10},
    {"astronomical unit (ua) to meter", L"au", L"m", "1.495979E+11", 1.495978707e+11},
    {"foot (ft) to meter", L"ft", L"m", "3.048E-01", 0.3048},
    {"foot (U.S. survey) (ft) to meter", L"ftUS", L"m", "3.048006E-01", 0.3048006096012192},
    {"inch (in) to meter", L"in", L"m", "2.54E-02", 0.0254},
    {"inch (in) to centimeter", L"in", L"cm", "2.54E+00", 2.54},
    {"light year (l.y.) to meter", L"ly", L"m", "9.46073E+15", 9.4607304725808e+15},
    {"microinch to meter", L"uin", L"m", "2.54E-08", 2.54e-08},
    {"micron (µ) to meter", L"um", L"m", "1.0E-06", 1e-06},
    {"mil (0.001 in) to meter", L"mil", L"m", "2.54E-05", 2.54e-05},
    {"mil (0.001 in) to millimeter", L"mil", L"mm", "2.54E-02", 0.0254},
    {"mile (mi) to meter", L"mi", L"m", "1.609344E+03", 1609.344},
    {"mile (mi) to kilometer", L"mi", L"km", "1.609344E+00", 1.609344},
    {"mile (based on U.S. survey foot) to meter", L"miUS", L"m", "1.609347E+03", 1609.3472186944373},
    {"mile, nautical to meter", L"nmi", L"m", "1.852E+03", 1852},
    {"parsec (pc) to meter", L"pc", L"m", "3.085678E+16", 30856775814913676},
    {"pica (computer) (1/6 in) to meter", L"pica", L"m", "4.233333E-03", 0.004233333333333334},
    {"pica (computer) (1/6 in) to millimeter", L"pica", L"mm", "4.233333E+00", 4.233333333333333},
    {"point (computer) (1/72 in) to meter", L"point", L"m", "3.527778E-04", 0.00035277777777777776},
    {"point (computer) (1/72 in) to millimeter", L"point", L"mm", "3.527778E-01", 0.3527777777777778},
    {"yard (yd) to meter", L"yd", L"m", "9.144E-01", 0.9144},
    {"are (a) to square meter", L"a", L"m2", "1.0E+02", 1e+02},
    {"barn (b) to square meter", L"barn", L"m2", "1.0E-28", 1e-28},
    {"circular mil to square meter", L"circmil", L"m2", "5.067075E-10", 5.067074790974977e-10},
    {"circular mil to square millimeter", L"circmil", L"mm2", "5.067075E-04", 0.0005067074790974977},
    {"hectare (ha) to square meter", L"ha", L"m2", "1.0E+04", 1e+04},
    {"square foot (ft²) to square meter", L"ft2", L"m2", "9.290304E-02", 0.09290304},
    {"square inch (in²) to square meter", L"in2", L"m2", "6.4516E-04", 0.00064516},
    {"square inch (in²) to square centimeter", L"in2", L"cm2", "6.4516E+00", 6.4516},
    {"square mile (mi²) to square meter", L"mi2", L"m2", "2.589988E+06", 2589988.110336},
    {"square mile (mi²) to square kilometer", L"mi2", L"km2", "2.589988E+00", 2.589988110336},
    {"square yard (yd²) to square meter", L"yd2", L"m2", "8.361274E-01", 0.83612736},
    {"barrel [for petroleum, 42 gallons (U.S.)] to cubic meter", L"bbl", L"m3", "1.589873E-01", 0.158987294928},
    {"barrel [for petroleum, 42 gallons (U.S.)] to liter", L"bbl", L"l", "1.589873E+02", 158.987294928},
    {"bushel (U.S.) (bu) to cubic meter", L"bu", L"m3", "3.523907E-02", 0.03523907016688},
    {"bushel (U.S.) (bu) to liter", L"bu", L"l", "3.523907E+01", 35.23907016688},
    {"cubic foot (ft³) to cubic meter", L"ft3", L"m3", "2.831685E-02", 0.028316846592},
    {"cubic inch (in³) to cubic meter", L"in3", L"m3", "1.638706E-05", 1.6387064e-05},
    {"cubic yard (yd³) to cubic meter", L"yd3", L"m3", "7.645549E-01", 0.764554857984},
    {"cup (U.S.) to cubic meter", L"cup", L"m3", "2.365882E-04", 0.0002365882365},
    {"cup (U.S.) to liter", L"cup", L"l", "2.365882E-01", 0.2365882365},
    {"cup (U.S.) to milliliter", L"cup", L"ml", "2.365882E+02", 236.5882365},
    {"fluid ounce (U.S.) (fl oz) to cubic meter", L"floz", L"m3", "2.957353E-05", 2.95735295625e-05},
    {"fluid ounce (U.S.) (fl oz) to milliliter", L"floz", L"ml", "2.957353E+01", 29.5735295625},
    {"gallon [Canadian and U.K. (Imperial)] (gal) to cubic meter", L"galUK", L"m3", "4.54609E-03", 0.00454609},
    {"gallon [Canadian and U.K. (Imperial)] (gal) to liter", L"galUK", L"l", "4.54609E+00", 4.54609},
    {"gallon (U.S.) (gal) to cubic meter", L"gal", L"m3", "3.785412E-03", 0.003785411784},
    {"gallon (U.S.) (gal) to liter", L"gal", L"l", "3.785412E+00", 3.785411784},
    {"gill [Canadian and U.K. (Imperial)] (gi) to cubic meter", L"giUK", L"m3", "1.420653E-04", 0.0001420653125},
    {"gill [Canadian and U.K. (Imperial)] (gi) to liter", L"giUK", L"l", "1.420653E-01", 0.1420653125},
    {"gill (U.S.) (gi) to cubic meter", L"gi", L"m3", "1.182941E-04", 0.00011829411825},
    {"gill (U.S.) (gi) to liter", L"gi", L"l", "1.182941E-01", 0.11829411825},
    {"liter (L) to cubic meter", L"l", L"m3", "1.0E-03", 0.001},
    {"ounce [Canadian and U.K. fluid (Imperial)] (fl oz) to cubic meter", L"flozUK", L"m3", "2.841306E-05", 2.84130625e-05},
    {"ounce [Canadian and U.K. fluid (Imperial)] (fl oz) to milliliter", L"flozUK", L"ml", "2.841306E+01", 28.4130625},
    {"peck (U.S.) (pk) to cubic meter", L"pk", L"m3", "8.809768E-03", 0.00880976754172},
    {"peck (U.S.) (pk) to liter", L"pk", L"l", "8.809768E+00", 8.80976754172},
    {"pint (U.S. dry) (dry pt) to cubic meter", L"drypt", L"m3", "5.506105E-04", 0.0005506104713575},
    {"pint (U.S. dry) (dry pt) to liter", L"drypt", L"l", "5.506105E-01", 0.5506104713575},
    {"pint (U.S. liquid) (liq pt) to cubic meter", L"pt", L"m3", "4.731765E-04", 0.000473176473},
    {"pint (U.S. liquid) (liq pt) to liter", L"pt", L"l", "4.731765E-01", 0.473176473},
    {"quart (U.S. dry) (dry qt) to cubic meter", L"dryqt", L"m3", "1.101221E-03", 0.001101220942715},
    {"quart (U.S. dry) (dry qt) to liter", L"dryqt", L"l", "1.101221E+00", 1.101220942715},
    {"quart (U.S. liquid) (liq qt) to cubic meter", L"qt", L"m3", "9.463529E-04", 0.000946352946},
    {"quart (U.S. liquid) (liq qt) to liter", L"qt", L"l", "9.463529E-01", 0.946352946},
    {"tablespoon to cubic meter", L"tbsp", L"m3", "1.478676E-05", 1.478676478125e-05},
    {"tablespoon to milliliter", L"tbsp", L"ml", "1.478676E+01", 14.78676478125},
    {"teaspoon to cubic meter", L"tsp", L"m3", "4.928922E-06", 4.92892159375e-06},
    {"teaspoon to milliliter", L"tsp", L"ml", "4.928922E+00", 4.92892159375},
    {"carat, metric to kilogram", L"ct", L"kg", "2.0E-04", 0.0002},
    {"carat, metric to gram", L"ct", L"g", "2.0E-01", 0.2},
    {"grain (gr) to kilogram", L"gr", L"kg", "6.479891E-05", 6.479891e-05},
    {"grain (gr) to milligram", L"gr", L"mg", "6.479891E+01", 64.79891},
    {"hundredweight (long, 112 lb) to kilogram", L"cwtUK", L"kg", "5.080235E+01", 50.80234544},
    {"hundredweight (short, 100 lb) to kilogram", L"cwt", L"kg", "4.535924E+01", 45.359237},
    {"ounce (avoirdupois) (oz) to kilogram", L"oz", L"kg", "2.834952E-02", 0.028349523125},
    {"ounce (avoirdupois) (oz) to gram", L"oz", L"g", "2.834952E+01", 28.349523125},
    {"ounce (troy or apothecary) (oz) to kilogram", L"ozt", L"kg", "3.110348E-02", 0.0311034768},
    {"ounce (troy or apothecary) (oz) to gram", L"ozt", L"g", "3.110348E+01", 31.1034768},
    {"pennyweight (dwt) to kilogram", L"dwt", L"kg", "1.555174E-03", 0.00155517384},
    {"pound (avoirdupois) (lb) to kilogram", L"lb", L"kg", "4.535924E-01", 0.45359237},
    {"pound (troy or apothecary) (lb) to kilogram", L"lbt", L"kg", "3.732417E-01", 0.3732417216},
    {"slug (slug) to kilogram", L"slug", L"kg", "1.459390E+01", 14.593902937206364},
    {"ton, long (2240 lb) to kilogram", L"tonUK", L"kg", "1.016047E+03", 1016.0469088},
    {"ton, metric (t) to kilogram", L"t", L"kg", "1.0E+03", 1e+03},
    {"ton, short (2000 lb) to kilogram", L"ton", L"kg", "9.071847E+02", 907.18474},
    {"dram (avoirdupois) (dr) to kilogram", L"dr", L"kg", "1.771845E-03", 0.0017718451953125},
    {"dram (avoirdupois) (dr) to gram", L"dr", L"g", "1.771845E+00", 1.7718451953125},
    {"day (d) to second", L"d", L"s", "8.64E+04", 8.64e+04},
    {"hour (h) to second", L"h", L"s", "3.6E+03", 3.6e+03},
    {"minute (min) to second", L"min", L"s", "6.0E+01", 6e+01},
    {"year (365 days) to second", L"yr", L"s", "3.1536E+07", 3.1536e+07},
    {"foot per hour (ft/h) to meter per second", L"ft_h", L"m_s", "8.466667E-05", 8.466666666666666e-05},
    {"foot per minute (ft/min) to meter per second", L"ft_min", L"m_s", "5.08E-03", 0.00508},
    {"foot per second (ft/s) to meter per second", L"ft_s", L"m_s", "3.048E-01", 0.3048},
    {"inch per second (in/s) to meter per second", L"in_s", L"m_s", "2.54E-02", 0.0254},
    {"kilometer per hour (km/h) to meter per second", L"km_h", L"m_s", "2.777778E-01", 0.2777777777777778},
    {"knot (nautical mile per hour) to meter per second", L"kn", L"m_s", "5.144444E-01", 0.5144444444444445},
    {"mile per hour (mi/h) to meter per second", L"mph", L"m_s", "4.4704E-01", 0.44704},
    {"mile per hour (mi/h) to kilometer per hour", L"mph", L"km_h", "1.609344E+00", 1.609344},
    {"foot per second squared (ft/s²) to meter per second squared", L"ft_s2", L"m_s2", "3.048E-01", 0.3048},
    {"gal (Gal) to meter per second squared", L"cm_s2", L"m_s2", "1.0E-02", 0.01},
    {"inch per second squared (in/s²) to meter per second squared", L"in_s2", L"m_s2", "2.54E-02", 0.0254},
    {"standard acceleration of gravity (gn) to meter per second squared", L"gn", L"m_s2", "9.80665E+00", 9.80665},
    {"dyne (dyn) to newton", L"dyn", L"N", "1.0E-05", 1e-05},
    {"gram-force to newton", L"gf", L"N", "9.80665E-03", 0.00980665},
    {"kilogram-force (kgf) to newton", L"kgf", L"N", "9.80665E+00", 9.80665},
    {"kip (1 kip = 1000 lbf) to newton", L"kip", L"N", "4.448222E+03", 4448.2216152605},
    {"kip (1 kip = 1000 lbf) to kilonewton", L"kip", L"kN", "4.448222E+00", 4.4482216152605},
    {"ounce (avoirdupois)-force (ozf) to newton", L"ozf", L"N", "2.780139E-01", 0.2780138509537812},
    {"pound-force (lbf) to newton", L"lbf", L"N", "4.448222E+00", 4.4482216152605},
    {"poundal to newton", L"pdl", L"N", "1.382550E-01", 0.138254954376},
    {"ton-force (2000 lbf) to newton", L"tonf", L"N", "8.896443E+03", 8896.443230521},
    {"ton-force (2000 lbf) to kilonewton", L"tonf", L"kN", "8.896443E+00", 8.896443230521},
    {"atmosphere, standard (atm) to pascal", L"atm", L"Pa", "1.01325E+05", 101325},
    {"atmosphere, standard (atm) to kilopascal", L"atm", L"kPa", "1.01325E+02", 101.325},
    {"atmosphere, technical (at) to pascal", L"at", L"Pa", "9.80665E+04", 98066.5},
    {"atmosphere, technical (at) to kilopascal", L"at", L"kPa", "9.80665E+01", 98.0665},
    {"bar (bar) to pascal", L"bar", L"Pa", "1.0E+05", 1e+05},
    {"bar (bar) to kilopascal", L"bar", L"kPa", "1.0E+02", 1e+02},
    {"centimeter of water, conventional (cmH2O) to pascal", L"cmH2O", L"Pa", "9.80665E+01", 98.0665},
    {"dyne per square centimeter (dyn/cm²) to pascal", L"dyn_cm2", L"Pa", "1.0E-01", 0.1},
    {"foot of water, conventional (ftH2O) to pascal", L"ftH2O", L"Pa", "2.989067E+03", 2989.06692},
    {"foot of water, conventional (ftH2O) to kilopascal", L"ftH2O", L"kPa", "2.989067E+00", 2.98906692},
    {"inch of mercury, conventional (inHg) to pascal", L"inHg", L"Pa", "3.386389E+03", 3386.388640341},
    {"inch of mercury, conventional (inHg) to kilopascal", L"inHg", L"kPa", "3.386389E+00", 3.386388640341},
    {"inch of water, conventional (inH2O) to pascal", L"inH2O", L"Pa", "2.490889E+02", 249.08891},
    {"kilogram-force per square centimeter (kgf/cm²) to pascal", L"at", L"Pa", "9.80665E+04", 98066.5},
    {"kilogram-force per square millimeter (kgf/mm²) to pascal", L"kgf_mm2", L"Pa", "9.80665E+06", 9.80665e+06},
    {"kilogram-force per square millimeter (kgf/mm²) to megapascal", L"kgf_mm2", L"MPa", "9.80665E+00", 9.80665},
    {"kip per square inch (ksi) to pascal", L"ksi", L"Pa", "6.894757E+06", 6894757.293168361},
    {"kip per square inch (ksi) to kilopascal", L"ksi", L"kPa", "6.894757E+03", 6894.757293168362},
    {"millibar (mbar) to pascal", L"mbar", L"Pa", "1.0E+02", 1e+02},
    {"millibar (mbar) to kilopascal", L"mbar", L"kPa", "1.0E-01", 0.1},
    {"millimeter of mercury, conventional (mmHg) to pascal", L"mmHg", L"Pa", "1.333224E+02", 133.322387415},
    {"millimeter of water, conventional (mmH2O) to pascal", L"mmH2O", L"Pa", "9.80665E+00", 9.80665},
    {"pound-force per square foot (lbf/ft²) to pascal", L"psf", L"Pa", "4.788026E+01", 47.880258980335846},
    {"pound-force per square inch (psi) to pascal", L"psi", L"Pa", "6.894757E+03", 6894.757293168362},
    {"pound-force per square inch (psi) to kilopascal", L"psi", L"kPa", "6.894757E+00", 6.894757293168361},
    {"torr (Torr) to pascal", L"Torr", L"Pa", "1.333224E+02", 133.32236842105263},
    {"British thermal unit, IT (BtuIT) to joule", L"BTU", L"J", "1.055056E+03", 1055.05585262},
    {"British thermal unit, thermochemical (Btuth) to joule", L"BTUth", L"J", "1.054350E+03", 1054.3502644888888},
    {"calorie, IT (calIT) to joule", L"calIT", L"J", "4.1868E+00", 4.1868},
    {"calorie, thermochemical (calth) to joule", L"cal", L"J", "4.184E+00", 4.184},
    {"electronvolt (eV) to joule", L"eV", L"J", "1.602177E-19", 1.602176634e-19},
    {"erg (erg) to joule", L"erg", L"J", "1.0E-07", 1e-07},
    {"foot pound-force (ft·lbf) to joule", L"ftlbf", L"J", "1.355818E+00", 1.3558179483314003},
    {"kilocalorie, IT (kcalIT) to joule", L"kcalIT", L"J", "4.1868E+03", 4186.8},
    {"kilocalorie, thermochemical (kcalth) to joule", L"kcal", L"J", "4.184E+03", 4184},
    {"kilowatt hour (kW·h) to joule", L"kWh", L"J", "3.6E+06", 3.6e+06},
    {"kilowatt hour (kW·h) to megajoule", L"kWh", L"MJ", "3.6E+00", 3.6},
    {"quad (10^15 BtuIT) to joule", L"quad", L"J", "1.055056E+18", 1.05505585262e+18},
    {"therm (EC) to joule", L"therm", L"J", "1.05506E+08", 105505585.262},
    {"ton of TNT (energy equivalent) to joule", L"tTNT", L"J", "4.184E+09", 4.184e+09},
    {"watt hour (W·h) to joule", L"Wh", L"J", "3.6E+03", 3.6e+03},
    {"British thermal unit IT per hour (BtuIT/h) to watt", L"BTU_h", L"W", "2.930711E-01", 0.2930710701722222},
    {"calorie, thermochemical, per second (calth/s) to watt", L"cal_s", L"W", "4.184E+00", 4.184},
    {"erg per second (erg/s) to watt", L"erg_s", L"W", "1.0E-07", 1e-07},
    {"foot pound-force per second (ft·lbf/s) to watt", L"ftlbf_s", L"W", "1.355818E+00", 1.3558179483314003},
    {"horsepower (550 ft·lbf/s) (hp) to watt", L"hp", L"W", "7.456999E+02", 745.6998715822702},
    {"horsepower (electric) to watt", L"hpE", L"W", "7.46E+02", 746},
    {"horsepower (metric) to watt", L"PS", L"W", "7.354988E+02", 735.49875},
    {"ton of refrigeration (12 000 BtuIT/h) to watt", L"TR", L"W", "3.516853E+03", 3516.8528420666667},
    {"dyne centimeter (dyn·cm) to newton meter", L"dyncm", L"Nm", "1.0E-07", 1e-07},
    {"kilogram-force meter (kgf·m) to newton meter", L"kgfm", L"Nm", "9.80665E+00", 9.80665},
    {"ounce (avoirdupois)-force inch (ozf·in) to newton meter", L"ozfin", L"Nm", "7.061552E-03", 0.0070615518142260435},
    {"ounce (avoirdupois)-force inch (ozf·in) to millinewton meter", L"ozfin", L"mNm", "7.061552E+00", 7.061551814226044},
    {"pound-force foot (lbf·ft) to newton meter", L"lbfft", L"Nm", "1.355818E+00", 1.3558179483314003},
    {"pound-force inch (lbf·in) to newton meter", L"lbfin", L"Nm", "1.129848E-01", 0.1129848290276167},
    {"gram per cubic centimeter (g/cm³) to kilogram per cubic meter", L"g_cm3", L"kg_m3", "1.0E+03", 1e+03},
    {"ounce (avoirdupois) per cubic inch (oz/in³) to kilogram per cubic meter", L"oz_in3", L"kg_m3", "1.729994E+03", 1729.994044387695},
    {"pound per cubic foot (lb/ft³) to kilogram per cubic meter", L"lb_ft3", L"kg_m3", "1.601846E+01", 16.018463373960138},
    {"pound per cubic inch (lb/in³) to kilogram per cubic meter", L"lb_in3", L"kg_m3", "2.767990E+04", 27679.90471020312},
    {"pound per cubic yard (lb/yd³) to kilogram per cubic meter", L"lb_yd3", L"kg_m3", "5.932764E-01", 0.5932764212577829},
    {"pound per gallon [Canadian and U.K. (Imperial)] to kilogram per cubic meter", L"lb_galUK", L"kg_m3", "9.977637E+01", 99.7763726631017},
    {"pound per gallon [Canadian and U.K. (Imperial)] to kilogram per liter", L"lb_galUK", L"kg_l", "9.977637E-02", 0.0997763726631017},
    {"pound per gallon (U.S.) (lb/gal) to kilogram per cubic meter", L"lb_gal", L"kg_m3", "1.198264E+02", 119.82642731689663},
    {"pound per gallon (U.S.) (lb/gal) to kilogram per liter", L"lb_gal", L"kg_l", "1.198264E-01", 0.11982642731689663},
    {"slug per cubic foot (slug/ft³) to kilogram per cubic meter", L"slug_ft3", L"kg_m3", "5.153788E+02", 515.3788183931962},
    {"centipoise (cP) to pascal second", L"cP", L"Pas", "1.0E-03", 0.001},
    {"poise (P) to pascal second", L"P", L"Pas", "1.0E-01", 0.1},
    {"pound per foot hour [lb/(ft·h)] to pascal second", L"lb_fth", L"Pas", "4.133789E-04", 0.00041337887321376497},
    {"pound per foot second [lb/(ft·s)] to pascal second", L"lb_fts", L"Pas", "1.488164E+00", 1.4881639435695537},
    {"pound-force second per square foot (lbf·s/ft²) to pascal second", L"lbfs_ft2", L"Pas", "4.788026E+01", 47.880258980335846},
    {"pound-force second per square inch (lbf·s/in²) to pascal second", L"reyn", L"Pas", "6.894757E+03", 6894.757293168362},
    {"centistokes (cSt) to meter squared per second", L"cSt", L"m2_s", "1.0E-06", 1e-06},
    {"stokes (St) to meter squared per second", L"St", L"m2_s", "1.0E-04", 0.0001},
    {"square foot per hour (ft²/h) to square meter per second", L"ft2_h", L"m2_s", "2.58064E-05", 2.58064e-05},
    {"square foot per second (ft²/s) to square meter per second", L"ft2_s", L"m2_s", "9.290304E-02", 0.09290304},
    {"square inch per second (in²/s) to square meter per second", L"in2_s", L"m2_s", "6.4516E-04", 0.00064516},
    {"cubic foot per minute (ft³/min) to cubic meter per second", L"ft3_min", L"m3_s", "4.719474E-04", 0.0004719474432},
    {"cubic foot per minute (ft³/min) to liter per second", L"ft3_min", L"l_s", "4.719474E-01", 0.4719474432},
    {"cubic foot per second (ft³/s) to cubic meter per second", L"ft3_s", L"m3_s", "2.831685E-02", 0.028316846592},
    {"cubic inch per minute (in³/min) to cubic meter per second", L"in3_min", L"m3_s", "2.731177E-07", 2.7311773333333333e-07},
    {"gallon (U.S.) per day (gal/d) to cubic meter per second", L"gal_d", L"m3_s", "4.381264E-08", 4.3812636388888886e-08},
    {"gallon (U.S.) per day (gal/d) to liter per second", L"gal_d", L"l_s", "4.381264E-05", 4.3812636388888886e-05},
    {"gallon (U.S.) per minute (gpm) to cubic meter per second", L"gal_min", L"m3_s", "6.309020E-05", 6.30901964e-05},
    {"gallon (U.S.) per minute (gpm) to liter per second", L"gal_min", L"l_s", "6.309020E-02", 0.0630901964},
    {"pound per hour (lb/h) to kilogram per second", L"lb_h", L"kg_s", "1.259979E-04", 0.00012599788055555556},
    {"pound per minute (lb/min) to kilogram per second", L"lb_min", L"kg_s", "7.559873E-03", 0.007559872833333333},
    {"pound per second (lb/s) to kilogram per second", L"lb_s", L"kg_s", "4.535924E-01", 0.45359237},
    {"ton, short, per hour to kilogram per second", L"ton_h", L"kg_s", "2.519958E-01", 0.2519957611111111},
    {"degree (°) to radian", L"deg", L"rad", "1.745329E-02", 0.017453292519943295},
    {"gon (also called grade) to radian", L"gon", L"rad", "1.570796E-02", 0.015707963267948963},
    {"gon (also called grade) to degree", L"gon", L"deg", "9.0E-01", 0.9},
    {"mil (angle) to radian", L"milNATO", L"rad", "9.817477E-04", 0.0009817477042468102},
    {"mil (angle) to degree", L"milNATO", L"deg", "5.625E-02", 0.05625},
    {"minute (') to radian", L"arcmin", L"rad", "2.908882E-04", 0.0002908882086657216},
    {"revolution (r) to radian", L"rev", L"rad", "6.283185E+00", 6.283185307179586},
    {"second ('') to radian", L"arcsec", L"rad", "4.848137E-06", 4.84813681109536e-06},
    {"revolution per minute (rpm) to radian per second", L"rev_min", L"rad_s", "1.047198E-01", 0.10471975511965977},
    {"degree per second (°/s) to radian per second", L"deg_s", L"rad_s", "1.745329E-02", 0.017453292519943295},
    {"abampere to ampere", L"abA", L"A", "1.0E+01", 1e+01},
    {"abcoulomb to coulomb", L"abC", L"C", "1.0E+01", 1e+01},
    {"ampere hour (A·h) to coulomb", L"Ah", L"C", "3.6E+03", 3.6e+03},
    {"statampere to ampere", L"statA", L"A", "3.335641E-10", 3.3356409519815207e-10},
    {"statcoulomb to coulomb", L"statC", L"C", "3.335641E-10", 3.3356409519815207e-10},
    {"gamma (γ) to tesla", L"gamma", L"T", "1.0E-09", 1e-09},
    {"gauss (Gs, G) to tesla", L"G", L"T", "1.0E-04", 0.0001},
    {"maxwell (Mx) to weber", L"Mx", L"Wb", "1.0E-08", 1e-08},
    {"oersted (Oe) to ampere per meter", L"Oe", L"A_m", "7.957747E+01", 79.57747154594767},
    {"mho to siemens", L"mho", L"S", "1.0E+00", 1},
    {"ohm centimeter (Ω·cm) to ohm meter", L"ohmcm", L"ohmm", "1.0E-02", 0.01},
    {"ohm circular-mil per foot to ohm meter", L"ohmcmil_ft", L"ohmm", "1.662426E-09", 1.6624261125245987e-09},
    {"ohm circular-mil per foot to ohm square millimeter per meter", L"ohmcmil_ft", L"ohmmm2_m", "1.662426E-03", 0.0016624261125245988},
    {"candela per square inch (cd/in²) to candela per square meter", L"cd_in2", L"cd_m2", "1.550003E+03", 1550.0031000062},
    {"footcandle to lux", L"fc", L"lx", "1.076391E+01", 10.763910416709722},
    {"footlambert to candela per square meter", L"fL", L"cd_m2", "3.426259E+00", 3.426259099635391},
    {"lambert to candela per square meter", L"lambert", L"cd_m2", "3.183099E+03", 3183.098861837907},
    {"phot (ph) to lux", L"ph", L"lx", "1.0E+04", 1e+04},
    {"stilb (sb) to candela per square meter", L"cd_cm2", L"cd_m2", "1.0E+04", 1e+04},
    {"curie (Ci) to becquerel", L"Ci", L"Bq", "3.7E+10", 3.7e+10},
    {"rad (absorbed dose) (rad) to gray", L"rd", L"Gy", "1.0E-02", 0.01},
    {"rem (rem) to sievert", L"rem", L"Sv", "1.0E-02", 0.01},
    {"roentgen (R) to coulomb per kilogram", L"R", L"C_kg", "2.58E-04", 0.000258},
    {"British thermal unit IT per pound (BtuIT/lb) to joule per kilogram", L"BTU_lb", L"J_kg", "2.326E+03", 2326},
    {"British thermal unit IT per pound degree Fahrenheit to joule per kilogram kelvin", L"BTU_lbF", L"J_kgK", "4.1868E+03", 4186.8},
    {"British thermal unit IT per cubic foot (BtuIT/ft³) to joule per cubic meter", L"BTU_ft3", L"J_m3", "3.725895E+04", 37258.94580783128},
    {"British thermal unit IT per hour square foot (BtuIT/(h·ft²)) to watt per square meter", L"BTU_hft2", L"W_m2", "3.154591E+00", 3.154590745063049},
    {"British thermal unit IT per hour square foot degree Fahrenheit to watt per square meter kelvin", L"BTU_hft2F", L"W_m2K", "5.678263E+00", 5.678263341113488},
    {"British thermal unit IT foot per hour square foot degree Fahrenheit to watt per meter kelvin", L"BTU_hftF", L"W_mK", "1.730735E+00", 1.7307346663713912},
    {"British thermal unit IT inch per hour square foot degree Fahrenheit to watt per meter kelvin", L"BTUin_hft2F", L"W_mK", "1.442279E-01", 0.1442278888642826},
    {"calorie, thermochemical, per centimeter second degree Celsius to watt per meter kelvin", L"cal_scmK", L"W_mK", "4.184E+02", 418.4},
    {"calorie, thermochemical, per gram (calth/g) to joule per kilogram", L"cal_g", L"J_kg", "4.184E+03", 4184},
    {"calorie, thermochemical, per gram kelvin to joule per kilogram kelvin", L"cal_gK", L"J_kgK", "4.184E+03", 4184},
    {"clo to square meter kelvin per watt", L"clo", L"m2K_W", "1.55E-01", 0.155},
    {"degree Fahrenheit hour square foot per British thermal unit IT to square meter kelvin per watt", L"ft2hF_BTU", L"m2K_W", "1.761102E-01", 0.17611018368230585},
    {"watt per square centimeter (W/cm²) to watt per square meter", L"W_cm2", L"W_m2", "1.0E+04", 1e+04},
    {"denier to kilogram per meter", L"den", L"kg_m", "1.111111E-07", 1.1111111111111111e-07},
    {"pound per foot (lb/ft) to kilogram per meter", L"lb_ft", L"kg_m", "1.488164E+00", 1.4881639435695537},
    {"pound per inch (lb/in) to kilogram per meter", L"lb_in", L"kg_m", "1.785797E+01", 17.857967322834646},
    {"pound per yard (lb/yd) to kilogram per meter", L"lb_yd", L"kg_m", "4.960546E-01", 0.4960546478565179},
    {"tex to kilogram per meter", L"tex", L"kg_m", "1.0E-06", 1e-06},
    {"ounce (avoirdupois) per square foot (oz/ft²) to kilogram per square meter", L"oz_ft2", L"kg_m2", "3.051517E-01", 0.30515172727394063},
    {"ounce (avoirdupois) per square yard (oz/yd²) to kilogram per square meter", L"oz_yd2", L"kg_m2", "3.390575E-02", 0.03390574747488229},
    {"pound per square foot (lb/ft²) to kilogram per square meter", L"lb_ft2", L"kg_m2", "4.882428E+00", 4.88242763638305},
    {"pound-force per foot (lbf/ft) to newton per meter", L"lbf_ft", L"N_m", "1.459390E+01", 14.593902937206364},
    {"pound-force per inch (lbf/in) to newton per meter", L"lbf_in", L"N_m", "1.751268E+02", 175.1268352464764},
    {"pound-force second (lbf·s) to newton second", L"lbfs", L"Ns", "4.448222E+00", 4.4482216152605},
    {"pound foot per second (lb·ft/s) to kilogram meter per second", L"lbft_s", L"Ns", "1.382550E-01", 0.138254954376},
    {"cubic foot per pound (ft³/lb) to cubic meter per kilogram", L"ft3_lb", L"m3_kg", "6.242796E-02", 0.06242796057614461},
    {"cubic inch per pound (in³/lb) to cubic meter per kilogram", L"in3_lb", L"m3_kg", "3.612729E-05", 3.612729200008369e-05},
    {"mile per gallon (U.S.) (mpg) to kilometer per liter", L"mpg", L"km_l", "4.251437E-01", 0.425143707430272},
    {"mile per gallon (U.S.) (mpg) to meter to the minus two", L"mpg", L"m_m3", "4.251437E+05", 425143.707430272},
    {"pound-mole to mole", L"lbmol", L"mol", "4.535924E+02", 453.59237},
    {"kilocalorie, thermochemical, per mole to joule per mole", L"kcal_mol", L"J_mol", "4.184E+03", 4184},
    {"inch to the fourth power (in⁴) to meter to the fourth power", L"in4", L"m4", "4.162314E-07", 4.162314256e-07},
    {"foot to the fourth power (ft⁴) to meter to the fourth power", L"ft4", L"m4", "8.630975E-03", 0.0086309748412416},
};

// Half a unit in the last place that NIST prints, relative to its factor.
double PrintedTolerance(const std::string& printed) {
    const std::string mantissa = printed.substr(0, printed.find('E'));
    int digits = 0;
    for (const char c : mantissa) digits += c >= '0' && c <= '9';
    return 0.5 * std::pow(10.0, 1 - digits) / std::abs(std::strtod(mantissa.c_str(), nullptr)) * (1 + 1e-9);
}

TEST_F(ShippedCatalogue, AgreesWithNistToTwelveDigits) {
    for (const NistRow& row : kNist) {
        SCOPED_TRACE(row.row);
        const double printed = std::strtod(row.printed, nullptr);
        EXPECT_LE(std::abs(row.exact / printed - 1), PrintedTolerance(row.printed));
        EXPECT_NEAR(Convert(*admin_, row.from, row.to) / row.exact, 1.0, 1e-12);
        EXPECT_NEAR(Convert(*admin_, row.to, row.from) * row.exact, 1.0, 1e-12);
    }
}

struct ExactCase {
    const wchar_t* from;
    const wchar_t* to;
    double value;
    double expected;
};

// Units defined exactly convert exactly, to the last bit.
const ExactCase kExact[] = {
    {L"in", L"m", 1, 0.0254},
    {L"ft", L"m", 1, 0.3048},
    {L"yd", L"m", 1, 0.9144},
    {L"mi", L"m", 1, 1609.344},
    {L"nmi", L"m", 1, 1852},
    {L"km", L"m", 2.5, 2500},
    {L"mm", L"m", 1, 0.001},
    {L"m", L"mm", 1, 1000},
    {L"lb", L"kg", 1, 0.45359237},
    {L"oz", L"kg", 1, 0.028349523125},
    {L"t", L"kg", 1, 1000},
    {L"gn", L"m_s2", 1, 9.80665},
    {L"kgf", L"N", 1, 9.80665},
    {L"lbf", L"N", 1, 4.4482216152605},
    {L"cal", L"J", 1, 4.184},
    {L"kcal", L"J", 1, 4184},
    {L"calIT", L"J", 1, 4.1868},
    {L"BTU", L"J", 1, 1055.05585262},
    {L"kWh", L"J", 1, 3.6e6},
    {L"eV", L"J", 1, 1.602176634e-19},
    {L"mmHg", L"Pa", 1, 133.322387415},
    {L"inHg", L"mmHg", 1, 25.4},
    {L"atm", L"Pa", 1, 101325},
    {L"bar", L"Pa", 1, 100000},
    {L"gal", L"m3", 1, 0.003785411784},
    {L"galUK", L"m3", 1, 0.00454609},
    {L"acre", L"m2", 1, 4046.8564224},
    {L"h", L"s", 1, 3600},
    {L"d", L"s", 1, 86400},
    {L"Ah", L"C", 1, 3600},
    {L"mAh", L"C", 1, 3.6},
    {L"B", L"bit", 1, 8},
    {L"KiB", L"B", 1, 1024},
    {L"GiB", L"B", 1, 1073741824},
    {L"MiB", L"KiB", 1, 1024},
    {L"kB", L"bit", 1, 8000},
    {L"degC", L"K", 100, 373.15},
    {L"degF", L"degC", 212, 100},
    {L"degF", L"degC", 32, 0},
    {L"degF", L"degC", -40, -40},
    {L"degRe", L"degC", 80, 100},
    {L"EUR", L"ATS", 1, 13.7603},
    {L"EUR", L"BEF", 1, 40.3399},
    {L"EUR", L"CYP", 1, 0.585274},
    {L"EUR", L"DEM", 1, 1.95583},
    {L"EUR", L"EEK", 1, 15.6466},
    {L"EUR", L"ESP", 1, 166.386},
    {L"EUR", L"FIM", 1, 5.94573},
    {L"EUR", L"FRF", 1, 6.55957},
    {L"EUR", L"GRD", 1, 340.750},
    {L"EUR", L"HRK", 1, 7.53450},
    {L"EUR", L"IEP", 1, 0.787564},
    {L"EUR", L"LTL", 1, 3.45280},
    {L"EUR", L"LUF", 1, 40.3399},
    {L"EUR", L"LVL", 1, 0.702804},
    {L"EUR", L"MTL", 1, 0.429300},
    {L"EUR", L"NLG", 1, 2.20371},
    {L"EUR", L"PTE", 1, 200.482},
    {L"EUR", L"SKK", 1, 30.1260},
};

// Where a rule is the inverse of the rule that states the definition, the
// reciprocal of a reciprocal may miss the exact value by one unit in the last
// place: 1 / (1 / 1936.27) is not 1936.27 in double precision.
const ExactCase kInverted[] = {
    {L"PS", L"W", 1, 735.49875},
    {L"degC", L"degF", 100, 212},
    {L"EUR", L"ITL", 1, 1936.27},
    {L"EUR", L"SIT", 1, 239.640},
};

TEST_F(ShippedCatalogue, ExactDefinitionsHoldExactly) {
    for (const ExactCase& c : kExact)
        EXPECT_EQ(Convert(*admin_, c.from, c.to, c.value), c.expected)
            << quantor::detail::ToUtf8(c.from) << " -> " << quantor::detail::ToUtf8(c.to);
    for (const ExactCase& c : kInverted) {
        const double result = Convert(*admin_, c.from, c.to, c.value);
        EXPECT_LE(std::abs(result - c.expected), std::abs(std::nextafter(c.expected, 0.0) - c.expected))
            << quantor::detail::ToUtf8(c.from) << " -> " << quantor::detail::ToUtf8(c.to);
    }
}

// The lines "name<TAB>text" of a name file, in order; a line without a TAB
// is kept with an empty text, so that the test sees it.
std::vector<std::pair<std::wstring, std::wstring>> NameFileLines(const std::string& file) {
    std::vector<std::pair<std::wstring, std::wstring>> lines;
    std::ifstream in(kFolder + file);
    EXPECT_TRUE(in) << file;
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#') continue;
        const size_t tab = line.find('\t');
        lines.emplace_back(Wide(line.substr(0, tab)), tab == std::string::npos ? L"" : Wide(line.substr(tab + 1)));
    }
    return lines;
}

class ShippedNameFiles : public testing::Test {
protected:
    // Adds the name of every unit and category of `admin` to `names`.
    static void NamesAdd(const QtrAdminStd& admin, std::set<std::wstring>& names) {
        for (const auto& [unit, category] : Units(admin)) names.insert({unit, category->Name()});
    }
    // Every unit and category of every region mode.
    static std::set<std::wstring> Names() {
        std::set<std::wstring> names;
        for (const char* region : kRegionFiles) NamesAdd(*Load(region), names);
        return names;
    }
};

TEST_F(ShippedNameFiles, EveryUnitAndCategoryHasADisplayNameInEachLanguage) {
    const std::set<std::wstring> names = Names();
    for (const char* language : kLanguages) {
        const std::string file = std::string("UnitAbbrevNames") + language + ".rlg";
        SCOPED_TRACE(file);
        XLMTranslDict dictionary;
        EXPECT_TRUE(dictionary.RLGFileRead(Wide(kFolder + file).c_str(), false));
        std::map<std::wstring, std::wstring> shown;
        for (const auto& [name, text] : NameFileLines(file)) {
            EXPECT_FALSE(text.empty()) << quantor::detail::ToUtf8(name);
            EXPECT_TRUE(shown.emplace(name, text).second) << "twice: " << quantor::detail::ToUtf8(name);
            EXPECT_TRUE(names.count(name)) << "no such unit: " << quantor::detail::ToUtf8(name);
        }
        for (const std::wstring& name : names) EXPECT_TRUE(shown.count(name)) << quantor::detail::ToUtf8(name);
    }
}

// A synonym names one existing unit or category, is no other unit's name, and
// means in every language what it means in English.
TEST_F(ShippedNameFiles, EverySynonymNamesOneUnitOrCategory) {
    const std::set<std::wstring> names = Names();
    std::map<std::wstring, std::wstring> english;
    for (const char* language : kLanguages) {
        const std::string file = std::string("UnitSynonyms") + language + ".rlg";
        SCOPED_TRACE(file);
        XLMTranslDict dictionary;
        EXPECT_TRUE(dictionary.RLGFileRead(Wide(kFolder + file).c_str(), false));
        std::map<std::wstring, std::wstring> meaning;
        for (const auto& [synonym, name] : NameFileLines(file)) {
            const std::string shown = quantor::detail::ToUtf8(synonym);
            EXPECT_TRUE(names.count(name)) << shown << " names nothing: " << quantor::detail::ToUtf8(name);
            EXPECT_FALSE(names.count(synonym)) << shown << " is itself a name";
            EXPECT_TRUE(meaning.emplace(synonym, name).second) << shown << " twice";
            if (english.count(synonym)) {
                EXPECT_EQ(english[synonym], name) << shown;
            }
        }
        if (english.empty()) english = meaning;
    }
}

// A resolver of one region mode with the files of one language, read as the
// default resolver reads them: the language's synonyms, the English ones,
// then the language's display names.
struct LanguageReading {
    LanguageReading(const QtrAdminStd& admin, const std::string& language) : resolver(admin) {
        const LogCapture log;
        EXPECT_TRUE(resolver.SynonymFileRead(Wide(kFolder + "UnitSynonyms" + language + ".rlg").c_str()));
        EXPECT_TRUE(resolver.SynonymFileRead(Wide(kFolder + "UnitSynonyms0409.rlg").c_str()));
        EXPECT_TRUE(resolver.DisplayNameFileRead(Wide(kFolder + "UnitAbbrevNames" + language + ".rlg").c_str()));
        EXPECT_EQ(log.Messages(), std::vector<std::wstring>{});
    }
    // The name of what `typed` resolves to, empty for nothing.
    std::wstring Resolved(const std::wstring& typed, QtrNameMatch& match) const {
        const QtrResolvedName resolved = resolver.Resolve(typed.c_str());
        match = resolved.match;
        return resolved.unit ? resolved.unit->Name() : resolved.category ? resolved.category->Name() : L"";
    }
    QtrNameResolver resolver;
};

// In every region mode and language, the name files load without a message,
// every synonym finds what it names as a synonym, and every display name
// finds its own unit or category: no exact name or synonym hides it, and no
// other unit shares it.
TEST_F(ShippedNameFiles, EveryLanguageLoadsAndEachNameFindsItsUnit) {
    for (const char* region : kRegionFiles) {
        const auto admin = Load(region);
        std::set<std::wstring> names;
        NamesAdd(*admin, names);
        for (const char* language : kLanguages) {
            SCOPED_TRACE(std::string(region) + " " + language);
            const LanguageReading reading(*admin, language);
            QtrNameMatch match = QtrNameMatch::None;
            for (const auto& [synonym, name] : NameFileLines(std::string("UnitSynonyms") + language + ".rlg"))
                if (names.count(name)) {
                    EXPECT_EQ(reading.Resolved(synonym, match), name) << quantor::detail::ToUtf8(synonym);
                    EXPECT_EQ(match, QtrNameMatch::Synonym) << quantor::detail::ToUtf8(synonym);
                }
            for (const auto& [name, shown] : NameFileLines(std::string("UnitAbbrevNames") + language + ".rlg"))
                if (names.count(name)) {
                    EXPECT_EQ(reading.Resolved(shown, match), name) << quantor::detail::ToUtf8(shown);
                }
        }
    }
}

}  // namespace
