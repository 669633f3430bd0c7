// Rule completion against a plain reference: the walk over every pair and
// every third unit, pass after pass, written out literally. Thousands of
// small random categories (disconnected parts, rules of factor 0, rules held
// already, rules whose source is a look-alike unit, units of another
// implementation) are completed by both, which must agree on the answer,
// every message in order and every rule bit for bit.
#include <gtest/gtest.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "etc/diag_log.h"
#include "quantor/category.h"
#include "quantor/convinfo.h"
#include "quantor/unit.h"
#include "support/rules.h"
#include "support/sink_capture.h"

namespace {

// --- The reference: the algorithm as described, with no shortcut. ---

int ReferenceRuleAdd(QtrUnitBase* unit, QtrConvInfoStd* rule) {
    auto* target = dynamic_cast<QtrUnitStd*>(unit);
    const int added = target ? target->ConvInfoAdd(rule) : -1;
    if (added != 1) delete rule;
    return added;
}

class ReferenceCompletion {
public:
    explicit ReferenceCompletion(std::vector<QtrUnitBase*> units) : u_(std::move(units)), n_(u_.size()) {}

    bool Run() {
        if (n_ == 0) return true;
        for (std::size_t i = 0; i + 1 < n_; ++i) {
            auto* identity = NewRule(u_[i], u_[i], 1.0, 0.0, true);
            if (!Succeeded(ReferenceRuleAdd(u_[i], identity))) return false;
            for (std::size_t j = i + 1; j < n_; ++j) {
                const QtrConvInfoBase* a = Rule(j, i);
                const QtrConvInfoBase* b = Rule(i, j);
                if (!a && !b) missing_ = {i, j};
                if (a && !b && !Succeeded(AddInverse(a, i))) return false;
                if (b && !a && !Succeeded(AddInverse(b, j))) return false;
            }
        }
        if (!missing_) return true;
        for (std::size_t pass = 0; pass < n_ && missing_; ++pass) Pass();
        if (!missing_) missing_ = LastUnlinked();
        if (!missing_) return true;
        Report(L"QtrCategoryStd::ConvInfoComplete(), missing  %s <- %s\n", u_[missing_->first]->Name(),
               u_[missing_->second]->Name());
        return false;
    }

private:
    using Pair = std::pair<std::size_t, std::size_t>;  // target i, source j

    template <class... Args>
    static void Report(const wchar_t* format, const Args&... args) {
        Error_Report(kSrcUnitsStd, 0, format, args...);
    }

    const QtrConvInfoBase* Rule(std::size_t source, std::size_t target) const {
        return u_[source]->ConvInfo(u_[target]);
    }

    int AddInverse(const QtrConvInfoBase* rule, std::size_t owner) {
        auto* own = dynamic_cast<const QtrConvInfoStd*>(rule);
        QtrConvInfoStd* inverse = own ? own->NewInverse() : nullptr;
        return inverse ? ReferenceRuleAdd(u_[owner], inverse) : -1;
    }

    static bool Succeeded(int added) {
        if (added >= 0) return true;
        Report(L"QtrCategoryStd::ConvInfoComplete, ConvInfoAdd err\n");
        return false;
    }

    void Pass() {
        missing_.reset();
        for (std::size_t i = 0; i + 1 < n_; ++i)
            for (std::size_t j = i + 1; j < n_; ++j)
                if (!Rule(j, i)) Chain(i, j);
    }

    void Chain(std::size_t i, std::size_t j) {
        for (std::size_t k = 0; k < n_; ++k) {
            if (k == i || k == j) continue;
            const QtrConvInfoBase* c = Rule(k, i);
            const QtrConvInfoBase* d = Rule(j, k);
            if (!c || !d) {
                missing_ = {i, j};
                continue;
            }
            QtrConvInfoStd* chain = QtrConvInfoStd::NewChain(c, d);
            if (!chain) {
                Report(L"QtrCategoryStd::ConvInfoComplete: NewChain err\n");
                continue;
            }
            QtrConvInfoStd* inverse = chain->NewInverse();
            if (!inverse) {
                Report(L"QtrCategoryStd::ConvInfoComplete: NewInverse err\n");
                delete chain;
                continue;
            }
            const int addNew = ReferenceRuleAdd(u_[j], chain);
            const int addInv = ReferenceRuleAdd(u_[i], inverse);
            if (addNew < 1 || addInv < 1)
                Report(L"QtrCategoryStd::ConvInfoComplete; %s <- %s <- %s, Addnew %d, Addinv %d\n", u_[i]->Name(),
                       u_[k]->Name(), u_[j]->Name(), addNew, addInv);
            return;
        }
    }

    // A pair linked by no rule at all still fails the completion.
    std::optional<Pair> LastUnlinked() const {
        std::optional<Pair> last;
        for (std::size_t i = 0; i + 1 < n_; ++i)
            for (std::size_t j = i + 1; j < n_; ++j)
                if (!Rule(j, i) && !Rule(i, j)) last = Pair{i, j};
        return last;
    }

    std::vector<QtrUnitBase*> u_;
    std::size_t n_;
    std::optional<Pair> missing_;
};

// --- Random categories, built twice from one draw number. ---

// A unit of another implementation: it answers from rules it was given and
// takes none from the category.
class ForeignUnit : public QtrUnitBase {
public:
    ForeignUnit(const QtrCategoryBase* category, std::wstring name) : category_(category), name_(std::move(name)) {}
    ~ForeignUnit() override {
        for (auto& [target, rule] : rules_) delete rule;
    }
    void Give(QtrConvInfoStd* rule) { rules_.emplace(rule->TrgtUnit()->Name(), rule); }

    const QtrCategoryBase* Category() const override { return category_; }
    const std::wstring& Name() const override { return name_; }
    bool Convert(double&, const QtrUnitBase*, double) const override { return false; }
    bool Convert(double&, const wchar_t*, double) const override { return false; }
    std::wstring ConvertOutputGen(const QtrUnitBase*, double, int, int) const override { return {}; }
    std::wstring ConvertOutputGen(const wchar_t*, double, int, int) const override { return {}; }
    const QtrConvInfoBase* ConvInfo(const QtrUnitBase* unit) const override {
        return unit ? ConvInfo(unit->Name().c_str()) : nullptr;
    }
    const QtrConvInfoBase* ConvInfo(const wchar_t* unitName) const override {
        const auto found = rules_.find(unitName);
        return found == rules_.end() ? nullptr : found->second;
    }
    bool FmtPreDecpnt(int&, const QtrUnitBase*) const override { return false; }
    bool FmtPostDecpnt(int&, const QtrUnitBase*) const override { return false; }
    std::wstring FormatStringGen(const QtrUnitBase*, int, int) const override { return {}; }
    std::wstring FormatStringGen(const wchar_t*, int, int) const override { return {}; }

private:
    const QtrCategoryBase* category_;
    std::wstring name_;
    std::map<std::wstring, QtrConvInfoStd*> rules_;
};

struct RandomCategory {
    explicit RandomCategory(uint32_t draw) {
        std::mt19937 random(draw);
        const std::size_t n = random() % 13;
        const std::size_t foreign = random() % 4 == 0 ? (random() % 3 == 0 ? random() % 13 : n - 1) : n;
        const std::size_t parts = 1 + random() % 3;
        const unsigned density = 1 + random() % 6;
        for (std::size_t i = 0; i < n; ++i) {
            const std::wstring name = L"u" + std::to_wstring(i);
            QtrUnitBase* unit = i == foreign ? static_cast<QtrUnitBase*>(new ForeignUnit(&category, name))
                                             : new QtrUnitStd(&category, name.c_str());
            units.push_back(unit);
            EXPECT_EQ(category.UnitAdd(unit), 1);
            lookAlikes.push_back(std::make_unique<QtrUnitStd>(&category, name.c_str()));
            part.push_back(random() % parts);
        }
        for (std::size_t a = 0; a < n; ++a)
            for (std::size_t b = 0; b < n; ++b)
                if (part[a] == part[b] && random() % 10 < (a == b ? 1 : density)) Give(random, a, b);
    }

    // A rule from unit a into unit b, now and then of factor 0, derived, or
    // from a look-alike of a that no chain can pass through.
    void Give(std::mt19937& random, std::size_t a, std::size_t b) {
        static constexpr double kFactors[] = {0.0, 2.0, 0.5, -4.0, 1000.0, 1.0 / 3.0, 7.25};
        const double factor = random() % 8 == 0 ? 0.0 : kFactors[1 + random() % 6];
        const double addend = random() % 3 == 0 ? static_cast<double>(random() % 100) - 50.0 : 0.0;
        const QtrUnitBase* source = random() % 12 == 0 ? lookAlikes[a].get() : units[a];
        auto* rule = NewRule(units[b], source, factor, addend, random() % 5 != 0, random() % 5 - 2, random() % 5 - 2);
        if (auto* foreign = dynamic_cast<ForeignUnit*>(units[a]))
            foreign->Give(rule);
        else if (dynamic_cast<QtrUnitStd*>(units[a])->ConvInfoAdd(rule) != 1)
            delete rule;
    }

    // Every rule of every unit, as text that shows each value bit for bit.
    std::vector<std::wstring> Rules() const {
        std::vector<std::wstring> all;
        for (const QtrUnitBase* unit : units) {
            const auto* own = dynamic_cast<const QtrUnitStd*>(unit);
            std::vector<const QtrConvInfoBase*> rules;
            if (own) own->ConvInfosGet(rules);
            for (const QtrConvInfoBase* rule : rules)
                all.push_back(unit->Name() + L"->" + rule->TrgtUnit()->Name() + L" " +
                              std::to_wstring(std::bit_cast<uint64_t>(rule->Factor())) + L" " +
                              std::to_wstring(std::bit_cast<uint64_t>(rule->Addend())) + L" " +
                              std::to_wstring(rule->FmtPreDecpnt()) + L" " + std::to_wstring(rule->FmtPostDecpnt()) +
                              (rule->Is_Explicit() ? L" explicit" : L"") +
                              (rule->SrcUnit() == unit ? L"" : L" look-alike"));
        }
        return all;
    }

    std::vector<std::unique_ptr<QtrUnitStd>> lookAlikes;  // outlive the rules that name them
    QtrCategoryStd category{L"random", nullptr};
    std::vector<QtrUnitBase*> units;
    std::vector<std::size_t> part;
};

struct Outcome {
    bool complete;
    std::vector<std::wstring> messages;
    std::vector<std::wstring> rules;
};

template <class Complete>
Outcome CompleteWith(uint32_t draw, Complete complete) {
    RandomCategory random(draw);
    LogCapture log;
    const bool complete_ = complete(random);
    return {complete_, log.Messages(), random.Rules()};
}

TEST(CompletionReference, RandomCategoriesCompleteExactlyAsTheReference) {
    std::size_t failures = 0, messages = 0;
    for (uint32_t draw = 1; draw <= 1500; ++draw) {
        const Outcome expected = CompleteWith(draw, [](RandomCategory& random) {
            return ReferenceCompletion(random.units).Run();
        });
        const Outcome actual = CompleteWith(draw, [](RandomCategory& random) {
            return random.category.ConvInfoComplete();
        });
        ASSERT_EQ(actual.complete, expected.complete) << "draw " << draw;
        ASSERT_EQ(actual.messages, expected.messages) << "draw " << draw;
        ASSERT_EQ(actual.rules, expected.rules) << "draw " << draw;
        failures += !expected.complete;
        messages += expected.messages.size();
    }
    // The draws reach the failures, not only clean completions.
    EXPECT_GT(failures, 400u) << failures;
    EXPECT_GT(messages, 1500u) << messages;
}

}  // namespace
