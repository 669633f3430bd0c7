// The category: completing its rules with identities, inverses and chains,
// what stays when a pair cannot be reached, random catalogues whose every
// pair must convert consistently, and the printed `category` block.
#include "quantor/category.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "quantor/admin.h"
#include "quantor/unit.h"
#include "support/rules.h"
#include "support/sink_capture.h"

namespace {

// A category of units named in the given order, in its own administration.
struct Catalogue {
    explicit Catalogue(const std::vector<std::wstring>& names) {
        admin.Categ_Add(category);
        for (const std::wstring& name : names) {
            units.push_back(new QtrUnitStd(category, name.c_str()));
            EXPECT_EQ(category->UnitAdd(units.back()), 1);
        }
    }
    QtrAdminStd admin;
    QtrCategoryStd* category = new QtrCategoryStd(L"length", &admin);
    std::vector<QtrUnitStd*> units;
};

// An explicit rule by which `source` converts into `target`.
void AddRule(QtrUnitStd* source, const QtrUnitStd* target, double factor, double addend = 0.0) {
    ASSERT_EQ(source->ConvInfoAdd(NewRule(target, source, factor, addend)), 1);
}

// m, km and cm with explicit rules from km and from cm to m.
class MetricLength : public ::testing::Test {
protected:
    MetricLength() { AddRule(km_, m_, 1000.0); AddRule(cm_, m_, 0.01); }

    Catalogue length_{{L"m", L"km", L"cm"}};
    QtrCategoryStd& category_ = *length_.category;
    QtrUnitStd *m_ = length_.units[0], *km_ = length_.units[1], *cm_ = length_.units[2];
    LogCapture log_;
};

TEST_F(MetricLength, CompletionLinksEveryPairAndGivesAllButTheLastUnitAnIdentity) {
    ASSERT_TRUE(category_.ConvInfoComplete());
    double result = 0.0;
    EXPECT_TRUE(category_.Convert(result, L"cm", 1.0, L"km"));
    EXPECT_NEAR(result, 100000.0, 1e-9);
    for (const QtrUnitStd* from : length_.units)
        for (const QtrUnitStd* to : length_.units)
            EXPECT_EQ(from->ConvInfo(to) != nullptr, from != to || from != cm_) << from->Name() << "->" << to->Name();
    EXPECT_TRUE(log_.Entries().empty());
}

TEST_F(MetricLength, ExplicitRulesWinOverDerivedOnes) {
    AddRule(m_, km_, 0.002);  // inconsistent, but given
    ASSERT_TRUE(category_.ConvInfoComplete());
    EXPECT_EQ(m_->ConvInfo(km_)->Factor(), 0.002);
    EXPECT_FALSE(cm_->ConvInfo(km_)->Is_Explicit());
}

TEST_F(MetricLength, PrintsEveryRuleOrACompactSetLinkingEveryUnitToTheFirst) {
    ASSERT_TRUE(category_.ConvInfoComplete());
    category_.DefaultInternUnitSet(m_);
    category_.DefaultSurfaceUnitSet(km_);
    const std::wstring head =
        L"\ncategory length\n{\n\tunit m;\n\tunit km;\n\tunit cm;\n\tdefaultintern m;\n\tdefaultsurface km;\n"
        L"\n\tconvert  m\t<- km / 1000;\t// explicit\n\n\tconvert  m\t<- cm * 100;\t// explicit\n";
    TraceCapture trace;
    category_.PrettyPrint(nullptr, true);
    EXPECT_EQ(trace.Text(), head +
                                L"\n\tconvert  km\t<- m * 1000;\n\n\tconvert  km\t<- cm * 100000;\n"
                                L"\n\tconvert  cm\t<- m / 100;\n\n\tconvert  cm\t<- km / 100000;\n"
                                L"\n} // length\n\n");
    trace.Clear();
    category_.PrettyPrint(nullptr, false);
    EXPECT_EQ(trace.Text(), head + L"\n} // length\n\n");
}

// A pair that cannot be reached, and a rule of factor 0 that cannot be inverted.
TEST(Completion, FailuresAreLoggedAndKeepWhatWasAdded) {
    Catalogue abc({L"A", L"B", L"C"}), zero({L"A", L"B"});
    AddRule(abc.units[0], abc.units[1], 2.0);
    AddRule(zero.units[0], zero.units[1], 0.0, 5.0);
    LogCapture log;
    EXPECT_FALSE(abc.category->ConvInfoComplete());
    ASSERT_NE(abc.units[1]->ConvInfo(abc.units[0]), nullptr);
    EXPECT_EQ(abc.units[1]->ConvInfo(abc.units[0])->Factor(), 0.5);
    EXPECT_FALSE(zero.category->ConvInfoComplete());
    EXPECT_EQ(zero.units[1]->ConvInfo(zero.units[0]), nullptr);
    EXPECT_EQ(log.Messages(), (std::vector<std::wstring>{L"QtrCategoryStd::ConvInfoComplete(), missing  B <- C\n",
                                                         L"QtrConvInfoStd::NewInverse(): Factor() == 0, impossible\n",
                                                         L"QtrCategoryStd::ConvInfoComplete, ConvInfoAdd err\n"}));
}

// Equal within 1e-9 relative to the magnitudes involved, and absolute below 1.
void ExpectClose(double actual, double expected, double magnitude) {
    const double bound = 1e-9 * std::max({std::fabs(actual), std::fabs(expected), std::fabs(magnitude), 1.0});
    EXPECT_LE(std::fabs(actual - expected), bound) << actual << " vs " << expected;
}

// Up to 30 units with random scales and offsets of both signs, each linked
// to one linked before it by an explicit rule in a random direction.
TEST(Completion, RandomSpanningTreesCompleteConsistently) {
    for (unsigned variant : {1u, 7u, 42u, 1234u, 2024u, 31337u, 99991u, 4000000007u}) {
        SCOPED_TRACE(variant);
        std::mt19937 random(variant);
        std::uniform_real_distribution<double> exponent(-1.0, 1.0), addend(-50.0, 50.0);
        // Unit i relates to a common reference by reference = x * scale[i] + offset[i].
        std::vector<std::wstring> names;
        std::vector<double> scale, offset;
        for (std::size_t count = 2 + random() % 29; names.size() < count;) {
            names.push_back(L"u" + std::to_wstring(names.size()));
            const double sign = random() % 3 == 0 ? -1.0 : 1.0;
            scale.push_back(sign * std::pow(10.0, exponent(random)));
            offset.push_back(random() % 4 == 0 ? 0.0 : addend(random));
        }
        Catalogue catalogue(names);
        const std::vector<QtrUnitStd*>& units = catalogue.units;
        std::vector<std::size_t> order(units.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::shuffle(order.begin(), order.end(), random);
        for (std::size_t k = 1; k < order.size(); ++k) {
            std::size_t source = order[k], target = order[random() % k];
            if (random() % 2) std::swap(source, target);
            AddRule(units[source], units[target], scale[source] / scale[target],
                    (offset[source] - offset[target]) / scale[target]);
        }
        LogCapture log;
        ASSERT_TRUE(catalogue.category->ConvInfoComplete());
        EXPECT_TRUE(log.Entries().empty());

        const double value = 3.75;
        for (std::size_t a = 0; a < units.size(); ++a)
            for (std::size_t b = 0; b < units.size(); ++b) {
                if (a == b) continue;
                ASSERT_NE(units[a]->ConvInfo(units[b]), nullptr);
                const double inB = units[a]->ConvInfo(units[b])->Convert(value);
                ExpectClose(inB, (value * scale[a] + offset[a] - offset[b]) / scale[b], value);
                for (std::size_t c = 0; c < units.size(); ++c)
                    if (c != a && c != b)
                        ExpectClose(units[b]->ConvInfo(units[c])->Convert(inB),
                                    units[a]->ConvInfo(units[c])->Convert(value), std::max(value, std::fabs(inB)));
            }
    }
}

// Guards against a walk over all pairs and third units: these used to run
// for minutes. Two units without a rule are not complete either.
TEST(Completion, LargeUnlinkedCategoriesEndWithTheLastMissingPair) {
    std::vector<std::wstring> names;
    for (int i = 0; i < 20000; ++i) names.push_back(L"u" + std::to_wstring(i));
    Catalogue many(names), chain(std::vector<std::wstring>(names.begin(), names.begin() + 300)),
        two({L"A", L"B"});
    for (std::size_t i = 1; i < chain.units.size(); i += 2) AddRule(chain.units[i], chain.units[i - 1], 2.0);
    LogCapture log;
    EXPECT_FALSE(many.category->ConvInfoComplete());
    EXPECT_FALSE(chain.category->ConvInfoComplete());
    EXPECT_FALSE(two.category->ConvInfoComplete());
    EXPECT_EQ(log.Messages(), (std::vector<std::wstring>{L"QtrCategoryStd::ConvInfoComplete(), missing  u19998 <- u19999\n",
                                                         L"QtrCategoryStd::ConvInfoComplete(), missing  u297 <- u299\n",
                                                         L"QtrCategoryStd::ConvInfoComplete(), missing  A <- B\n"}));
}

}  // namespace
