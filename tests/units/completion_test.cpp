// Rule completion: identity rules, inverses and chains through a third unit,
// what stays when a pair cannot be reached, rules that cannot be inverted,
// and random catalogues whose every pair must convert consistently.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "quantor/admin.h"
#include "quantor/category.h"
#include "quantor/convinfo.h"
#include "quantor/sinks.h"
#include "quantor/unit.h"

namespace {

// Collects the log messages written while it lives and restores the sink.
class LogCapture {
public:
    LogCapture() : previous_(QtrSetLogSink([this](const QtrLogEntry& entry) { messages_.push_back(entry.message); })) {}
    ~LogCapture() { QtrSetLogSink(std::move(previous_)); }
    const std::vector<std::wstring>& Messages() const { return messages_; }

private:
    std::vector<std::wstring> messages_;
    QtrLogSink previous_;
};

// A category in an administration, built unit by unit and rule by rule.
class CategoryBuilder {
public:
    CategoryBuilder() { admin_.Categ_Add(category_); }

    QtrUnitStd* AddUnit(const std::wstring& name) {
        auto* unit = new QtrUnitStd(category_, name.c_str());
        EXPECT_EQ(category_->UnitAdd(unit), 1);
        units_.push_back(unit);
        return unit;
    }

    // An explicit rule by which `source` converts into `target`.
    static void AddRule(QtrUnitStd* source, const QtrUnitStd* target, double factor, double addend = 0.0) {
        auto* rule = new QtrConvInfoStd;
        rule->SetUnits(target, source);
        rule->SetFormula(factor, addend);
        rule->SetExplicit(true);
        ASSERT_EQ(source->ConvInfoAdd(rule), 1);
    }

    QtrCategoryStd& Category() { return *category_; }
    const std::vector<QtrUnitStd*>& Units() const { return units_; }

private:
    QtrAdminStd admin_;
    QtrCategoryStd* category_ = new QtrCategoryStd(L"length", &admin_);
    std::vector<QtrUnitStd*> units_;
};

TEST(Completion, NoUnitOrOneUnitIsCompleteAtOnce) {
    CategoryBuilder empty;
    EXPECT_TRUE(empty.Category().ConvInfoComplete());
    CategoryBuilder single;
    QtrUnitStd* m = single.AddUnit(L"m");
    EXPECT_TRUE(single.Category().ConvInfoComplete());
    EXPECT_EQ(m->ConvInfo(m), nullptr);
}

TEST(Completion, DerivesInversesAndChainsForMetres) {
    CategoryBuilder length;
    QtrUnitStd* m = length.AddUnit(L"m");
    QtrUnitStd* km = length.AddUnit(L"km");
    QtrUnitStd* cm = length.AddUnit(L"cm");
    CategoryBuilder::AddRule(km, m, 1000.0);
    CategoryBuilder::AddRule(cm, m, 0.01);
    LogCapture log;
    ASSERT_TRUE(length.Category().ConvInfoComplete());
    EXPECT_TRUE(log.Messages().empty());

    const QtrConvInfoBase* kmToCm = km->ConvInfo(cm);
    ASSERT_NE(kmToCm, nullptr);
    EXPECT_NEAR(kmToCm->Factor(), 100000.0, 1e-9);
    EXPECT_FALSE(kmToCm->Is_Explicit());
    EXPECT_NEAR(cm->ConvInfo(km)->Factor(), 1e-5, 1e-18);
    EXPECT_NEAR(m->ConvInfo(km)->Factor(), 0.001, 1e-18);
    EXPECT_NEAR(m->ConvInfo(cm)->Factor(), 100.0, 1e-12);

    // Identity rules: every unit but the last in the array.
    for (const QtrUnitStd* unit : {m, km}) {
        const QtrConvInfoBase* identity = unit->ConvInfo(unit);
        ASSERT_NE(identity, nullptr);
        EXPECT_EQ(identity->Factor(), 1.0);
        EXPECT_EQ(identity->Addend(), 0.0);
        EXPECT_TRUE(identity->Is_Explicit());
    }
    EXPECT_EQ(cm->ConvInfo(cm), nullptr);
}

TEST(Completion, UnreachablePairFailsAndKeepsWhatWasAdded) {
    CategoryBuilder abc;
    QtrUnitStd* a = abc.AddUnit(L"A");
    QtrUnitStd* b = abc.AddUnit(L"B");
    QtrUnitStd* c = abc.AddUnit(L"C");
    CategoryBuilder::AddRule(a, b, 2.0);
    LogCapture log;
    EXPECT_FALSE(abc.Category().ConvInfoComplete());
    EXPECT_EQ(log.Messages(), std::vector<std::wstring>{L"QtrCategoryStd::ConvInfoComplete(), missing  B <- C\n"});
    ASSERT_NE(b->ConvInfo(a), nullptr);
    EXPECT_EQ(b->ConvInfo(a)->Factor(), 0.5);
    EXPECT_NE(b->ConvInfo(b), nullptr);
    EXPECT_EQ(c->ConvInfo(a), nullptr);
    EXPECT_EQ(c->ConvInfo(b), nullptr);
    EXPECT_EQ(a->ConvInfo(c), nullptr);
}

TEST(Completion, ExplicitRulesWinOverDerivedOnes) {
    CategoryBuilder length;
    QtrUnitStd* m = length.AddUnit(L"m");
    QtrUnitStd* km = length.AddUnit(L"km");
    QtrUnitStd* cm = length.AddUnit(L"cm");
    // Both directions given, even inconsistently, and an identity that is
    // not one: completion keeps all three.
    CategoryBuilder::AddRule(km, m, 1000.0);
    CategoryBuilder::AddRule(m, km, 0.002);
    CategoryBuilder::AddRule(m, m, 3.0);
    CategoryBuilder::AddRule(cm, m, 0.01);
    ASSERT_TRUE(length.Category().ConvInfoComplete());
    EXPECT_EQ(m->ConvInfo(km)->Factor(), 0.002);
    EXPECT_EQ(m->ConvInfo(m)->Factor(), 3.0);
    EXPECT_NEAR(cm->ConvInfo(km)->Factor(), 2e-5, 1e-18);

    // An explicit rule given later replaces the derived one.
    CategoryBuilder::AddRule(cm, km, 1e-5);
    EXPECT_TRUE(cm->ConvInfo(km)->Is_Explicit());
    EXPECT_EQ(cm->ConvInfo(km)->Factor(), 1e-5);
}

TEST(Completion, RuleOfFactorZeroCannotBeInvertedInPhaseOne) {
    CategoryBuilder pair;
    QtrUnitStd* a = pair.AddUnit(L"A");
    QtrUnitStd* b = pair.AddUnit(L"B");
    CategoryBuilder::AddRule(a, b, 0.0, 5.0);
    LogCapture log;
    EXPECT_FALSE(pair.Category().ConvInfoComplete());
    EXPECT_EQ(log.Messages(), (std::vector<std::wstring>{
                                  L"QtrConvInfoStd::NewInverse(): Factor() == 0, impossible\n",
                                  L"QtrCategoryStd::ConvInfoComplete, ConvInfoAdd err\n",
                              }));
    EXPECT_EQ(b->ConvInfo(a), nullptr);
}

TEST(Completion, ChainOfFactorZeroIsSkippedInPhaseTwo) {
    CategoryBuilder abc;
    QtrUnitStd* a = abc.AddUnit(L"A");
    QtrUnitStd* b = abc.AddUnit(L"B");
    QtrUnitStd* c = abc.AddUnit(L"C");
    CategoryBuilder::AddRule(a, b, 2.0);
    CategoryBuilder::AddRule(b, a, 0.0);
    CategoryBuilder::AddRule(c, b, 3.0);
    LogCapture log;
    // The chain C -> B -> A has no inverse; the pair is not counted missing
    // because both of its links exist.
    EXPECT_TRUE(abc.Category().ConvInfoComplete());
    EXPECT_EQ(log.Messages(), (std::vector<std::wstring>{
                                  L"QtrConvInfoStd::NewInverse(): Factor() == 0, impossible\n",
                                  L"QtrCategoryStd::ConvInfoComplete: NewInverse err\n",
                              }));
    EXPECT_EQ(c->ConvInfo(a), nullptr);
    EXPECT_EQ(a->ConvInfo(c), nullptr);
    EXPECT_NEAR(b->ConvInfo(c)->Factor(), 1.0 / 3.0, 1e-15);
}

// How a random unit relates to a common reference: reference = x * scale + offset.
struct Scale {
    double scale;
    double offset;
};

double ToUnit(const Scale& unit, double reference) { return (reference - unit.offset) / unit.scale; }

// Near-equality relative to the larger magnitude, and absolute below 1.
void ExpectClose(double actual, double expected, double magnitude) {
    const double bound = 1e-9 * std::max({std::fabs(actual), std::fabs(expected), std::fabs(magnitude), 1.0});
    EXPECT_LE(std::fabs(actual - expected), bound) << actual << " vs " << expected;
}

// A category of random units linked by a random spanning tree of explicit
// rules, each in a random direction, with negative scales and offsets.
class RandomCategory {
public:
    explicit RandomCategory(unsigned seed) : random_(seed) {
        const std::size_t count = 2 + random_() % 29;
        for (std::size_t i = 0; i < count; ++i) {
            builder_.AddUnit(L"u" + std::to_wstring(i));
            scales_.push_back(RandomScale());
        }
        LinkBySpanningTree();
    }

    QtrCategoryStd& Category() { return builder_.Category(); }
    const std::vector<QtrUnitStd*>& Units() const { return builder_.Units(); }
    std::size_t Size() const { return scales_.size(); }
    double Expected(std::size_t source, std::size_t target, double value) const {
        return ToUnit(scales_[target], value * scales_[source].scale + scales_[source].offset);
    }

private:
    Scale RandomScale() {
        std::uniform_real_distribution<double> exponent(-1.0, 1.0);
        std::uniform_real_distribution<double> offset(-50.0, 50.0);
        const double sign = random_() % 3 == 0 ? -1.0 : 1.0;
        return Scale{sign * std::pow(10.0, exponent(random_)), random_() % 4 == 0 ? 0.0 : offset(random_)};
    }

    // Each unit, in a random order, is linked to one linked before it.
    void LinkBySpanningTree() {
        std::vector<std::size_t> order(Size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::shuffle(order.begin(), order.end(), random_);
        for (std::size_t k = 1; k < order.size(); ++k) {
            std::size_t source = order[k];
            std::size_t target = order[random_() % k];
            if (random_() % 2) std::swap(source, target);
            const Scale& s = scales_[source];
            const Scale& t = scales_[target];
            CategoryBuilder::AddRule(Units()[source], Units()[target], s.scale / t.scale,
                                     (s.offset - t.offset) / t.scale);
        }
    }

    std::mt19937 random_;
    CategoryBuilder builder_;
    std::vector<Scale> scales_;
};

TEST(Completion, RandomSpanningTreesCompleteConsistently) {
    for (unsigned seed : {1u, 7u, 42u, 1234u, 2024u, 31337u, 99991u, 4000000007u}) {
        SCOPED_TRACE(seed);
        RandomCategory random(seed);
        LogCapture log;
        ASSERT_TRUE(random.Category().ConvInfoComplete());
        EXPECT_TRUE(log.Messages().empty());
        const auto& units = random.Units();
        const double value = 3.75;
        for (std::size_t a = 0; a < units.size(); ++a) {
            for (std::size_t b = 0; b < units.size(); ++b) {
                if (a == b) continue;
                const QtrConvInfoBase* ab = units[a]->ConvInfo(units[b]);
                ASSERT_NE(ab, nullptr);
                const double inB = ab->Convert(value);
                ExpectClose(inB, random.Expected(a, b, value), value);
                for (std::size_t c = 0; c < units.size(); ++c) {
                    if (c == a || c == b) continue;
                    const double direct = units[a]->ConvInfo(units[c])->Convert(value);
                    const double viaB = units[b]->ConvInfo(units[c])->Convert(inB);
                    ExpectClose(viaB, direct, std::max(std::fabs(value), std::fabs(inB)));
                }
            }
            EXPECT_EQ(units[a]->ConvInfo(units[a]) != nullptr, a + 1 < units.size());
        }
    }
}

}  // namespace
