// What the administration prints, with all rules or in the compact form, reads
// back into the same catalogue: the shipped one, and random ones with awkward
// names, factors of both signs from 1e-12 to 1e12, addends and format shifts.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>

#include "dscr/parse_test_support.h"
#include "quantor/category.h"
#include "quantor/convinfo.h"
#include "quantor/unit.h"

namespace {

std::string Number(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

// One to four categories of one to six units, each unit but the first with a
// rule to or from an earlier one. The names, unique and quoted, are keywords,
// identifiers and texts that read back only in quotes.
std::string RandomCatalogue(unsigned variant) {
    std::mt19937 rng(variant);
    const auto below = [&](size_t limit) { return std::uniform_int_distribution<size_t>(0, limit - 1)(rng); };
    // Every random draw is a statement of its own, so that the catalogues are
    // the same whatever order a compiler evaluates operands in.
    const auto shift = [&] { const int n = static_cast<int>(below(10)); return std::to_string(n < 5 ? n - 5 : n - 4); };
    const auto power = [&](double limit) { return std::pow(10.0, std::uniform_real_distribution(-limit, limit)(rng)); };
    const std::string shapes[] = {"u", "Unit_", "category", "format", "km\\/h", "a\\/\\/b", "say \\\"hi\\\"", "2nd",
                                  "two words", "\u00b5m", "back\\\\slash", "m\u00b2", "(p);{c}"};
    int count = 0;
    const auto name = [&] { return "\"" + shapes[below(std::size(shapes))] + std::to_string(++count) + "\""; };
    std::string text;
    for (size_t category = 1 + below(4); category > 0; --category) {
        std::vector<std::string> units(1 + below(6));
        text += "category " + name() + "\n{\n\tunit ";
        for (size_t i = 0; i < units.size(); ++i) text += (i ? ", " : "") + (units[i] = name());
        text += ";\n";
        for (size_t unit = 1; unit < units.size(); ++unit) {
            std::string target = units[unit], source = units[below(unit)];
            if (below(2)) std::swap(target, source);
            const double sign = below(2) ? -1.0 : 1.0;
            text += "\tconvert " + target + " <- " + source + " * " + Number(sign * power(12));
            if (below(3) == 0) {
                const char* addOrSubtract = below(2) ? " - " : " + ";
                text += addOrSubtract + Number(power(3));
            }
            if (below(3) == 0) {
                const std::string pre = shift();
                text += " format " + pre + ", " + shift();
            }
            text += ";\n";
        }
        for (const std::string statement : {"defaultintern ", "defaultsurface "})
            if (below(2)) text += "\t" + statement + units[below(units.size())] + ";\n";
        text += "}\n";
    }
    return text;
}

bool WithinUlps(double a, double b, int ulps) { return a == b || (ulps > 0 && std::nextafter(a, b) == b); }

// Compares the rule from `source` to `target` with the one read back.
void ExpectSameRule(const std::vector<const QtrUnitBase*>& units, const QtrUnitBase* source,
                    const QtrUnitBase* target, const QtrConvInfoBase* back, bool allRules) {
    const QtrConvInfoBase* rule = source->ConvInfo(target);
    ASSERT_EQ(rule == nullptr, back == nullptr);
    if (!rule) return;
    if (!allRules) {
        for (double value : {1.0, -37.5, 2.5e6}) {
            // Rules derived along different paths may differ by roundings of
            // the largest magnitude a value takes on its way through one unit.
            double scale = std::abs(value * rule->Factor()) + std::abs(rule->Addend());
            for (const QtrUnitBase* via : units) {
                const QtrConvInfoBase *in = source->ConvInfo(via), *out = via->ConvInfo(target);
                if (in && out)
                    scale = std::max(scale, std::abs(in->Convert(value) * out->Factor()) + std::abs(out->Addend()));
            }
            EXPECT_NEAR(back->Convert(value), rule->Convert(value), 1e-12 * scale);
        }
        return;
    }
    // A rule read from a statement comes back bit for bit, as the statement
    // proves the language can say it; a derived one within one unit in the last place.
    const int ulps = rule->Is_Explicit() ? 0 : 1;
    EXPECT_PRED3(WithinUlps, rule->Factor(), back->Factor(), ulps);
    EXPECT_PRED3(WithinUlps, rule->Addend(), back->Addend(), ulps);
}

class RoundTrip : public ParseTest {
protected:
    // Prints `original`, reads the print into a new administration and
    // compares the two, category by category and rule by rule.
    void ExpectReadsBack(const QtrAdminStd& original, bool allRules) {
        SCOPED_TRACE(allRules ? "all rules" : "compact");
        const std::wstring printed = WriteFile("printed.dscr", "");
        QtrTextFile file;
        ASSERT_TRUE(file.Open(printed.c_str()));
        original.PrettyPrint(&file, allRules);
        file.Close();
        QtrAdminDscr reread;
        ASSERT_TRUE(reread.Import_Parse(printed.c_str()));
        std::vector<const QtrCategoryBase*> categories, again;
        original.CategPtrs(categories);
        reread.CategPtrs(again);
        ASSERT_EQ(categories.size(), again.size());
        for (size_t c = 0; c < categories.size(); ++c) {
            ASSERT_EQ(categories[c]->Name(), again[c]->Name());
            std::vector<const QtrUnitBase*> units, back;
            categories[c]->UnitPtrs(units);
            again[c]->UnitPtrs(back);
            ASSERT_EQ(units.size(), back.size());
            for (size_t s = 0; s < units.size(); ++s) {
                ASSERT_EQ(units[s]->Name(), back[s]->Name());
                for (size_t t = 0; t < units.size(); ++t) {
                    SCOPED_TRACE(units[s]->Name() + L" -> " + units[t]->Name());
                    if (s != t) ExpectSameRule(units, units[s], units[t], back[s]->ConvInfo(back[t]), allRules);
                }
            }
        }
    }
};

TEST_F(RoundTrip, RandomCataloguesReadBack) {
    for (unsigned variant = 1; variant <= 40; ++variant) {
        SCOPED_TRACE("variant " + std::to_string(variant));
        QtrAdminDscr admin;
        ASSERT_TRUE(Parse(admin, RandomCatalogue(variant)));
        for (const bool allRules : {true, false}) ExpectReadsBack(admin, allRules);
    }
}

TEST_F(RoundTrip, ShippedCatalogueReadsBack) {
    const std::string folder = QUANTOR_TEST_DATA_DIR "/unitsandcurrencies/";
    QtrAdminDscr admin;
    for (const char* file : {"unit_dscr.txt", "curr_dscr_edy.txt", "curr_dscr_extended_european.txt",
                             "curr_dscr_america.txt", "curr_dscr_asia_pacific.txt"})
        ASSERT_TRUE(admin.Import_Parse(quantor::detail::FromUtf8(folder + file).c_str())) << file;
    for (const bool allRules : {true, false}) ExpectReadsBack(admin, allRules);
}

}  // namespace
