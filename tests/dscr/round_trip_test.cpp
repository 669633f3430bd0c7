// What the administration prints reads back into the same catalogue. Random
// catalogues (fixed seeds) with awkward names, factors of both signs from
// 1e-12 to 1e12, addends and format shifts are loaded, printed with all
// rules and in the compact form, and loaded again. With all rules every rule
// read from a statement must come back bit for bit and every derived one
// within one unit in the last place; in the compact form every conversion
// must agree within 1e-12 of the magnitudes it passes through. The shipped
// catalogue must read back the same way.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "dscr/parse_test_support.h"
#include "etc/utf8.h"
#include "quantor/category.h"
#include "quantor/convinfo.h"
#include "quantor/unit.h"

namespace {

using quantor::detail::ToUtf8;

// A `convert target <- source * factor + addend` statement, by unit index.
struct RuleSpec {
    size_t target = 0;
    size_t source = 0;
    double factor = 1.0;
    double addend = 0.0;
    int pre = 0;
    int post = 0;
};

struct CategorySpec {
    std::wstring name;
    std::vector<std::wstring> units;
    std::vector<RuleSpec> rules;
    int defaultIntern = -1;
    int defaultSurface = -1;
};

class CatalogueGenerator {
public:
    explicit CatalogueGenerator(unsigned seed) : random_(seed) {}

    std::vector<CategorySpec> Catalogue() {
        std::vector<CategorySpec> categories(Between(1, 4));
        for (CategorySpec& category : categories) Fill(category);
        return categories;
    }

private:
    int Between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
    bool Chance(double probability) { return std::bernoulli_distribution(probability)(random_); }
    double PowerOfTen(double low, double high) {
        return std::pow(10.0, std::uniform_real_distribution<double>(low, high)(random_));
    }
    double Signed(double magnitude) { return Chance(0.5) ? -magnitude : magnitude; }

    // Names unique in the whole catalogue: identifiers, keywords, and texts
    // that only read back in quotes.
    std::wstring Name() {
        static const std::vector<std::wstring> kShapes = {
            L"u",         L"Unit_",   L"category", L"unit",  L"convert", L"format", L"defaultintern",
            L"km/h",      L"a//b",    L"say \"hi\"", L"back\\slash", L"two words", L"2nd", L"\u00b5m",
            L"\u00b0C",   L"m\u00b2", L"\u20ac",   L"x-y",   L"(p)",     L"a;b",    L"{c}"};
        const std::wstring& shape = kShapes[Between(0, static_cast<int>(kShapes.size()) - 1)];
        return shape + std::to_wstring(++counter_);
    }

    RuleSpec Rule(size_t unit, size_t earlier) {
        RuleSpec rule;
        const bool fromEarlier = Chance(0.5);
        rule.target = fromEarlier ? unit : earlier;
        rule.source = fromEarlier ? earlier : unit;
        rule.factor = Signed(PowerOfTen(-12.0, 12.0));
        if (Chance(0.3)) rule.addend = Signed(PowerOfTen(-3.0, 3.0));
        if (Chance(0.3)) {
            rule.pre = Between(1, 5) * (Chance(0.5) ? -1 : 1);
            rule.post = Between(1, 5) * (Chance(0.5) ? -1 : 1);
        }
        return rule;
    }

    void Fill(CategorySpec& category) {
        category.name = Name();
        category.units.resize(Between(1, 6));
        for (std::wstring& unit : category.units) unit = Name();
        // Every unit but the first is linked to an earlier one, but now and
        // then one stays apart and completion cannot reach it.
        for (size_t unit = 1; unit < category.units.size(); ++unit)
            if (!Chance(0.1)) category.rules.push_back(Rule(unit, Between(0, static_cast<int>(unit) - 1)));
        const int last = static_cast<int>(category.units.size()) - 1;
        if (Chance(0.6)) category.defaultIntern = Between(0, last);
        if (Chance(0.6)) category.defaultSurface = Between(0, last);
    }

    std::mt19937 random_;
    int counter_ = 0;
};

// Every name in double quotes, so keywords and identifiers read back too.
std::string Quoted(const std::wstring& name) {
    std::wstring text = L"\"";
    for (wchar_t c : name) {
        if (c == L'"' || c == L'\\' || c == L'/') text += L'\\';
        text += c;
    }
    return ToUtf8(text + L"\"");
}

std::string Number(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

std::string RuleText(const CategorySpec& category, const RuleSpec& rule) {
    std::string text = "\tconvert " + Quoted(category.units[rule.target]) + " <- " +
                       Quoted(category.units[rule.source]) + " * " + Number(rule.factor);
    if (rule.addend != 0.0) text += (rule.addend < 0 ? " - " : " + ") + Number(std::abs(rule.addend));
    if (rule.pre != 0) text += " format " + std::to_string(rule.pre) + ", " + std::to_string(rule.post);
    return text + ";\n";
}

std::string CatalogueText(const std::vector<CategorySpec>& categories) {
    std::string text;
    for (const CategorySpec& category : categories) {
        text += "category " + Quoted(category.name) + "\n{\n\tunit ";
        for (size_t i = 0; i < category.units.size(); ++i) text += (i ? ", " : "") + Quoted(category.units[i]);
        text += ";\n";
        for (const RuleSpec& rule : category.rules) text += RuleText(category, rule);
        if (category.defaultIntern >= 0) text += "\tdefaultintern " + Quoted(category.units[category.defaultIntern]) + ";\n";
        if (category.defaultSurface >= 0) text += "\tdefaultsurface " + Quoted(category.units[category.defaultSurface]) + ";\n";
        text += "}\n";
    }
    return text;
}

std::wstring DefaultName(const QtrUnitBase* unit) { return unit ? unit->Name() : L"(none)"; }

bool SameBits(double a, double b) { return std::bit_cast<uint64_t>(a) == std::bit_cast<uint64_t>(b); }

// Equal, or neighbouring doubles. An addend of -0 that comes back as +0
// counts as equal: no conversion tells them apart.
bool WithinOneUlp(double a, double b) { return a == b || std::nextafter(a, b) == b; }

// The format shifts that a printed rule keeps: a clause is printed only when
// both shifts are non-zero.
std::pair<int, int> PrintedShifts(const QtrConvInfoBase& rule) {
    const bool printed = rule.FmtPreDecpnt() != 0 && rule.FmtPostDecpnt() != 0;
    return printed ? std::pair(rule.FmtPreDecpnt(), rule.FmtPostDecpnt()) : std::pair(0, 0);
}

// A rule read from a statement comes back bit for bit: the statement that
// made it proves that the language can say it. A derived rule may hold a
// factor or addend that no printed number reads back into exactly; it comes
// back within one unit in the last place.
void ExpectSameRuleParameters(const QtrConvInfoBase& original, const QtrConvInfoBase& reread) {
    const std::string factors = "factor " + Number(original.Factor()) + " came back as " + Number(reread.Factor());
    const std::string addends = "addend " + Number(original.Addend()) + " came back as " + Number(reread.Addend());
    if (original.Is_Explicit()) {
        EXPECT_TRUE(SameBits(original.Factor(), reread.Factor())) << factors;
        EXPECT_TRUE(original.Addend() == reread.Addend()) << addends;
    } else {
        EXPECT_TRUE(WithinOneUlp(original.Factor(), reread.Factor())) << factors;
        EXPECT_TRUE(WithinOneUlp(original.Addend(), reread.Addend())) << addends;
    }
    EXPECT_EQ(PrintedShifts(original), std::pair(reread.FmtPreDecpnt(), reread.FmtPostDecpnt()));
}

// The largest magnitude that `value`, given in unit `source`, takes in unit
// `target`'s scale on its way through any unit of the category: rules
// derived along different paths may differ by roundings of that size.
double PathScale(const std::vector<const QtrUnitBase*>& units, size_t source, size_t target, double value) {
    double scale = 0.0;
    for (size_t via = 0; via < units.size(); ++via) {
        const QtrConvInfoBase* in = via == source ? nullptr : units[source]->ConvInfo(units[via]);
        const QtrConvInfoBase* out = via == target ? nullptr : units[via]->ConvInfo(units[target]);
        if ((via != source && !in) || (via != target && !out)) continue;
        const double atVia = in ? in->Convert(value) : value;
        scale = std::max(scale, out ? std::abs(atVia * out->Factor()) + std::abs(out->Addend()) : std::abs(atVia));
    }
    return scale;
}

void ExpectSameConversions(const std::vector<const QtrUnitBase*>& units, size_t source, size_t target,
                           const QtrConvInfoBase& reread) {
    const QtrConvInfoBase* original = units[source]->ConvInfo(units[target]);
    for (double value : {1.0, -37.5, 2.5e6}) {
        EXPECT_NEAR(reread.Convert(value), original->Convert(value), 1e-12 * PathScale(units, source, target, value))
            << "value " << value;
    }
}

void ExpectSameCategory(const QtrCategoryBase& original, const QtrCategoryBase& reread, bool allRules) {
    std::vector<const QtrUnitBase*> units, rereadUnits;
    original.UnitPtrs(units);
    reread.UnitPtrs(rereadUnits);
    ASSERT_EQ(units.size(), rereadUnits.size());
    for (size_t i = 0; i < units.size(); ++i) ASSERT_EQ(units[i]->Name(), rereadUnits[i]->Name());
    EXPECT_EQ(DefaultName(original.DefaultInternUnitGet()), DefaultName(reread.DefaultInternUnitGet()));
    EXPECT_EQ(DefaultName(original.DefaultSurfaceUnitGet()), DefaultName(reread.DefaultSurfaceUnitGet()));
    for (size_t source = 0; source < units.size(); ++source) {
        for (size_t target = 0; target < units.size(); ++target) {
            if (source == target) continue;
            SCOPED_TRACE(units[source]->Name() + L" -> " + units[target]->Name());
            const QtrConvInfoBase* rule = units[source]->ConvInfo(units[target]);
            const QtrConvInfoBase* rereadRule = rereadUnits[source]->ConvInfo(rereadUnits[target]);
            ASSERT_EQ(rule == nullptr, rereadRule == nullptr);
            if (!rule) continue;
            if (allRules)
                ExpectSameRuleParameters(*rule, *rereadRule);
            else
                ExpectSameConversions(units, source, target, *rereadRule);
        }
    }
}

class RoundTrip : public ParseTest {
protected:
    // Prints `original`, reads the print into a new administration and
    // compares the two.
    void ExpectReadsBack(const QtrAdminStd& original, bool allRules) {
        SCOPED_TRACE(allRules ? "all rules" : "compact");
        const std::wstring printed = quantor::detail::FromUtf8((folder_ / "printed.dscr").string());
        {
            QtrTextFile file;
            ASSERT_TRUE(file.Open(printed.c_str()));
            original.PrettyPrint(&file, allRules);
        }
        QtrAdminDscr reread;
        ASSERT_TRUE(reread.Import_Parse(printed.c_str()));
        std::vector<const QtrCategoryBase*> categories, rereadCategories;
        original.CategPtrs(categories);
        reread.CategPtrs(rereadCategories);
        ASSERT_EQ(categories.size(), rereadCategories.size());
        for (size_t i = 0; i < categories.size(); ++i) {
            ASSERT_EQ(categories[i]->Name(), rereadCategories[i]->Name());
            ExpectSameCategory(*categories[i], *rereadCategories[i], allRules);
        }
    }
};

// The rule that a generated statement must give its source unit.
void ExpectStatementRead(const QtrAdminBase& admin, const CategorySpec& category, const RuleSpec& spec) {
    const QtrUnitBase* source = admin.Unit(category.units[spec.source].c_str());
    ASSERT_NE(source, nullptr);
    const QtrConvInfoBase* rule = source->ConvInfo(category.units[spec.target].c_str());
    ASSERT_NE(rule, nullptr);
    EXPECT_TRUE(rule->Is_Explicit());
    EXPECT_TRUE(SameBits(rule->Factor(), 1.0 / spec.factor));
    EXPECT_TRUE(SameBits(rule->Addend(), spec.addend / spec.factor));
    EXPECT_EQ(rule->FmtPreDecpnt(), spec.pre);
    EXPECT_EQ(rule->FmtPostDecpnt(), spec.post);
}

TEST_F(RoundTrip, RandomCataloguesReadBack) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const std::vector<CategorySpec> categories = CatalogueGenerator(seed).Catalogue();
        QtrAdminDscr admin;
        ASSERT_TRUE(Parse(admin, CatalogueText(categories)));
        for (const CategorySpec& category : categories)
            for (const RuleSpec& rule : category.rules) ExpectStatementRead(admin, category, rule);
        ExpectReadsBack(admin, true);
        ExpectReadsBack(admin, false);
    }
    EXPECT_TRUE(ParseErrors().empty());
}

TEST_F(RoundTrip, ShippedCatalogueReadsBack) {
    const std::string folder = QUANTOR_TEST_DATA_DIR "/unitsandcurrencies/";
    QtrAdminDscr admin;
    for (const char* file : {"unit_dscr.txt", "curr_dscr_edy.txt", "curr_dscr_extended_european.txt",
                             "curr_dscr_america.txt", "curr_dscr_asia_pacific.txt"}) {
        SCOPED_TRACE(file);
        ASSERT_TRUE(admin.Import_Parse(quantor::detail::FromUtf8(folder + file).c_str()));
    }
    ExpectReadsBack(admin, true);
    ExpectReadsBack(admin, false);
    EXPECT_TRUE(ParseErrors().empty());
}

}  // namespace
