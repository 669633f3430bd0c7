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
#include <sstream>
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

// Every region mode loads without a message or finding, and a name found
// through the administration is the unit of the category that declares it:
// no unit hides behind another of the same name or a category.
TEST(ShippedCatalogueFiles, EveryRegionModeLoadsCleanlyAndEveryNameMeansOneUnit) {
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
        for (const std::wstring& name : categories) {
            const QtrCategoryBase* category = admin->Category(name.c_str());
            EXPECT_NE(category->DefaultInternUnitGet(), nullptr) << name;
            EXPECT_NE(category->DefaultSurfaceUnitGet(), nullptr) << name;
        }
        const auto units = Units(*admin);
        EXPECT_GE(units.size(), 600u + 25u);  // units besides the common currencies
        for (const auto& [name, category] : units) {
            const QtrUnitBase* unit = admin->Unit(name.c_str());
            ASSERT_NE(unit, nullptr) << quantor::detail::ToUtf8(name);
            EXPECT_EQ(unit->Category(), category) << quantor::detail::ToUtf8(name);
            EXPECT_EQ(admin->Category(name.c_str()), nullptr) << quantor::detail::ToUtf8(name);
        }
    }
}

// A row of NIST SP 811, appendix B.8, from tests/data/nist_sp811_b8.tsv.
struct NistRow {
    std::string row;
    std::wstring from;
    std::wstring to;
    std::string printed;  // NIST's factor as printed (bold: exact)
    double exact;         // the factor from the unit's exact definition
};

std::vector<NistRow> NistRowsRead() {
    std::vector<NistRow> rows;
    std::ifstream in(QUANTOR_TEST_DATA_DIR "/../tests/data/nist_sp811_b8.tsv");
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        std::string row, from, to, printed, exact;
        std::getline(fields, row, '\t');
        std::getline(fields, from, '\t');
        std::getline(fields, to, '\t');
        std::getline(fields, printed, '\t');
        std::getline(fields, exact);
        rows.push_back({row, quantor::detail::FromUtf8(from), quantor::detail::FromUtf8(to), printed,
                        std::strtod(exact.c_str(), nullptr)});
    }
    return rows;
}

// Half a unit in the last place that NIST prints, relative to its factor.
double PrintedTolerance(const std::string& printed) {
    const std::string mantissa = printed.substr(0, printed.find('E'));
    int digits = 0;
    for (const char c : mantissa) digits += c >= '0' && c <= '9';
    return 0.5 * std::pow(10.0, 1 - digits) / std::abs(std::strtod(mantissa.c_str(), nullptr)) * (1 + 1e-9);
}

TEST_F(ShippedCatalogue, AgreesWithNistToTwelveDigits) {
    const std::vector<NistRow> rows = NistRowsRead();
    EXPECT_GE(rows.size(), 200u);
    for (const NistRow& row : rows) {
        SCOPED_TRACE(row.row);
        const double printed = std::strtod(row.printed.c_str(), nullptr);
        EXPECT_LE(std::abs(row.exact / printed - 1), PrintedTolerance(row.printed));
        EXPECT_NEAR(Convert(*admin_, row.from.c_str(), row.to.c_str()) / row.exact, 1.0, 1e-12);
        EXPECT_NEAR(Convert(*admin_, row.to.c_str(), row.from.c_str()) * row.exact, 1.0, 1e-12);
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
    {L"in", L"m", 1, 0.0254}, {L"ft", L"m", 1, 0.3048}, {L"yd", L"m", 1, 0.9144}, {L"mi", L"m", 1, 1609.344},
    {L"nmi", L"m", 1, 1852}, {L"km", L"m", 2.5, 2500}, {L"mm", L"m", 1, 0.001}, {L"m", L"mm", 1, 1000},
    {L"lb", L"kg", 1, 0.45359237}, {L"oz", L"kg", 1, 0.028349523125}, {L"t", L"kg", 1, 1000},
    {L"gn", L"m_s2", 1, 9.80665}, {L"kgf", L"N", 1, 9.80665}, {L"lbf", L"N", 1, 4.4482216152605},
    {L"cal", L"J", 1, 4.184}, {L"kcal", L"J", 1, 4184}, {L"calIT", L"J", 1, 4.1868}, {L"BTU", L"J", 1, 1055.05585262},
    {L"kWh", L"J", 1, 3.6e6}, {L"eV", L"J", 1, 1.602176634e-19}, {L"mmHg", L"Pa", 1, 133.322387415},
    {L"inHg", L"mmHg", 1, 25.4}, {L"atm", L"Pa", 1, 101325}, {L"bar", L"Pa", 1, 100000},
    {L"gal", L"m3", 1, 0.003785411784}, {L"galUK", L"m3", 1, 0.00454609}, {L"acre", L"m2", 1, 4046.8564224},
    {L"h", L"s", 1, 3600}, {L"d", L"s", 1, 86400}, {L"Ah", L"C", 1, 3600}, {L"mAh", L"C", 1, 3.6},
    {L"B", L"bit", 1, 8}, {L"KiB", L"B", 1, 1024}, {L"GiB", L"B", 1, 1073741824}, {L"MiB", L"KiB", 1, 1024},
    {L"kB", L"bit", 1, 8000}, {L"degC", L"K", 100, 373.15}, {L"degF", L"degC", 212, 100}, {L"degF", L"degC", 32, 0},
    {L"degF", L"degC", -40, -40}, {L"degRe", L"degC", 80, 100}, {L"EUR", L"ATS", 1, 13.7603},
    {L"EUR", L"BEF", 1, 40.3399}, {L"EUR", L"CYP", 1, 0.585274}, {L"EUR", L"DEM", 1, 1.95583},
    {L"EUR", L"EEK", 1, 15.6466}, {L"EUR", L"ESP", 1, 166.386}, {L"EUR", L"FIM", 1, 5.94573},
    {L"EUR", L"FRF", 1, 6.55957}, {L"EUR", L"GRD", 1, 340.750}, {L"EUR", L"HRK", 1, 7.53450},
    {L"EUR", L"IEP", 1, 0.787564}, {L"EUR", L"LTL", 1, 3.45280}, {L"EUR", L"LUF", 1, 40.3399},
    {L"EUR", L"LVL", 1, 0.702804}, {L"EUR", L"MTL", 1, 0.429300}, {L"EUR", L"NLG", 1, 2.20371},
    {L"EUR", L"PTE", 1, 200.482}, {L"EUR", L"SKK", 1, 30.1260},
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

// Each language's display names cover every unit and category once; a
// synonym names one existing unit or category, is no other unit's name, and
// means in every language what it means in English.
TEST_F(ShippedNameFiles, DisplayNamesCoverEveryUnitAndSynonymsNameOneUnitOrCategory) {
    const std::set<std::wstring> names = Names();
    std::map<std::wstring, std::wstring> english;
    for (const char* language : kLanguages) {
        SCOPED_TRACE(language);
        for (const char* kind : {"UnitAbbrevNames", "UnitSynonyms"}) {
            XLMTranslDict dictionary;
            EXPECT_TRUE(dictionary.RLGFileRead(Wide(kFolder + kind + language + ".rlg").c_str(), false)) << kind;
        }
        std::map<std::wstring, std::wstring> shown;
        for (const auto& [name, text] : NameFileLines(std::string("UnitAbbrevNames") + language + ".rlg")) {
            EXPECT_FALSE(text.empty()) << quantor::detail::ToUtf8(name);
            EXPECT_TRUE(shown.emplace(name, text).second) << "twice: " << quantor::detail::ToUtf8(name);
            EXPECT_TRUE(names.count(name)) << "no such unit: " << quantor::detail::ToUtf8(name);
        }
        for (const std::wstring& name : names) EXPECT_TRUE(shown.count(name)) << quantor::detail::ToUtf8(name);
        std::map<std::wstring, std::wstring> meaning;
        for (const auto& [synonym, name] : NameFileLines(std::string("UnitSynonyms") + language + ".rlg")) {
            const std::string typed = quantor::detail::ToUtf8(synonym);
            EXPECT_TRUE(names.count(name)) << typed << " names nothing: " << quantor::detail::ToUtf8(name);
            EXPECT_FALSE(names.count(synonym)) << typed << " is itself a name";
            EXPECT_TRUE(meaning.emplace(synonym, name).second) << typed << " twice";
            if (english.count(synonym)) {
                EXPECT_EQ(english[synonym], name) << typed;
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
