// Rule completion of a category: once a description block has declared its
// units and some explicit rules, the category derives identity rules, inverses
// and chains through a third unit until every unit converts into every other.
// Phase 1 gives every unit but the last an identity rule and inverts the
// rules that exist in one direction only; phase 2 chains missing pairs
// through a third unit, pass after pass, at most one pass per unit.
#include <cstddef>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "etc/diag_log.h"
#include "quantor/category.h"
#include "quantor/convinfo.h"
#include "quantor/unit.h"

namespace {

// Hands `rule` to `unit`. The unit owns the rule only when it answers 1;
// otherwise the rule is freed here. A unit of another implementation cannot
// take rules and answers -1.
int RuleAdd(QtrUnitBase* unit, std::unique_ptr<QtrConvInfoStd> rule) {
    auto* target = dynamic_cast<QtrUnitStd*>(unit);
    const int added = target ? target->ConvInfoAdd(rule.get()) : -1;
    if (added == 1) rule.release();
    return added;
}

std::unique_ptr<QtrConvInfoStd> NewIdentity(const QtrUnitBase* unit) {
    auto rule = std::make_unique<QtrConvInfoStd>();
    rule->SetExplicit(true);
    rule->SetFormula(1.0, 0.0);
    rule->SetUnits(unit, unit);
    return rule;
}

// A pair of units that no rule links in either direction, as indices into the
// units: the source and the target of the rule that is missing.
struct UnitPair {
    std::size_t source;
    std::size_t target;
};

// A rule derived through a third unit together with its inverse.
struct DerivedRules {
    std::size_t via;
    std::unique_ptr<QtrConvInfoStd> chain;
    std::unique_ptr<QtrConvInfoStd> inverse;
};

class RuleCompletion {
public:
    explicit RuleCompletion(std::vector<QtrUnitBase*> units) : units_(std::move(units)) {}

    bool Run() {
        if (!AddIdentitiesAndInverses()) return false;
        if (!missing_) return true;
        for (std::size_t pass = 0; pass < units_.size() && missing_; ++pass) ChainPass();
        if (!missing_) return true;
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrCategoryStd::ConvInfoComplete(), missing  %s <- %s\n",
                     units_[missing_->target]->Name(), units_[missing_->source]->Name());
        return false;
    }

private:
    // The rule held by the unit at `source` for the unit at `target`.
    const QtrConvInfoBase* Rule(std::size_t source, std::size_t target) const {
        return units_[source]->ConvInfo(units_[target]);
    }

    // Phase 1; false after a failed add, which ends the completion.
    bool AddIdentitiesAndInverses() {
        for (std::size_t i = 0; i + 1 < units_.size(); ++i) {
            if (!AddSucceeded(RuleAdd(units_[i], NewIdentity(units_[i])))) return false;
            for (std::size_t j = i + 1; j < units_.size(); ++j) {
                if (!AddMissingDirection(i, j)) return false;
            }
        }
        return true;
    }

    // Inverts the rule between two units that exists in one direction only,
    // and remembers the pair when neither exists.
    bool AddMissingDirection(std::size_t i, std::size_t j) {
        const QtrConvInfoBase* toI = Rule(j, i);
        const QtrConvInfoBase* toJ = Rule(i, j);
        if (!toI && !toJ) missing_ = UnitPair{j, i};
        if (toI && !toJ) return AddInverse(toI, i);
        if (toJ && !toI) return AddInverse(toJ, j);
        return true;
    }

    // A rule of factor 0 has no inverse; that counts as a failed add.
    bool AddInverse(const QtrConvInfoBase* rule, std::size_t owner) {
        std::unique_ptr<QtrConvInfoStd> inverse(NewInverseOf(rule));
        return AddSucceeded(inverse ? RuleAdd(units_[owner], std::move(inverse)) : -1);
    }

    static bool AddSucceeded(int added) {
        if (added >= 0) return true;
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrCategoryStd::ConvInfoComplete, ConvInfoAdd err\n");
        return false;
    }

    // Phase 2, one pass: chains every pair that still lacks its rules.
    void ChainPass() {
        missing_.reset();
        for (std::size_t i = 0; i + 1 < units_.size(); ++i) {
            for (std::size_t j = i + 1; j < units_.size(); ++j) {
                if (Rule(j, i)) continue;
                if (std::optional<DerivedRules> derived = FindChain(i, j)) AddChain(i, j, *derived);
            }
        }
    }

    // The first unit k through which j reaches i. Every k that lacks a rule
    // remembers the pair, even when a later k succeeds, so that one more pass
    // follows.
    std::optional<DerivedRules> FindChain(std::size_t i, std::size_t j) {
        for (std::size_t k = 0; k < units_.size(); ++k) {
            if (k == i || k == j) continue;
            const QtrConvInfoBase* kToI = Rule(k, i);
            const QtrConvInfoBase* jToK = Rule(j, k);
            if (!kToI || !jToK) {
                missing_ = UnitPair{j, i};
                continue;
            }
            if (std::optional<DerivedRules> derived = Derive(k, kToI, jToK)) return derived;
        }
        return std::nullopt;
    }

    static std::optional<DerivedRules> Derive(std::size_t via, const QtrConvInfoBase* outer,
                                              const QtrConvInfoBase* inner) {
        std::unique_ptr<QtrConvInfoStd> chain(QtrConvInfoStd::NewChain(outer, inner));
        if (!chain) {
            Error_Report(kSrcUnitsStd, __LINE__, L"QtrCategoryStd::ConvInfoComplete: NewChain err\n");
            return std::nullopt;
        }
        std::unique_ptr<QtrConvInfoStd> inverse(chain->NewInverse());
        if (!inverse) {
            Error_Report(kSrcUnitsStd, __LINE__, L"QtrCategoryStd::ConvInfoComplete: NewInverse err\n");
            return std::nullopt;
        }
        return DerivedRules{via, std::move(chain), std::move(inverse)};
    }

    // Hands the chain to j and its inverse to i; a refusal is reported and
    // the completion goes on.
    void AddChain(std::size_t i, std::size_t j, DerivedRules& derived) {
        const int addNew = RuleAdd(units_[j], std::move(derived.chain));
        const int addInv = RuleAdd(units_[i], std::move(derived.inverse));
        if (addNew >= 1 && addInv >= 1) return;
        Error_Report(kSrcUnitsStd, __LINE__,
                     L"QtrCategoryStd::ConvInfoComplete; %s <- %s <- %s, Addnew %d, Addinv %d\n", units_[i]->Name(),
                     units_[derived.via]->Name(), units_[j]->Name(), addNew, addInv);
    }

    static QtrConvInfoStd* NewInverseOf(const QtrConvInfoBase* rule) {
        auto* own = dynamic_cast<const QtrConvInfoStd*>(rule);
        return own ? own->NewInverse() : nullptr;
    }

    std::vector<QtrUnitBase*> units_;
    std::optional<UnitPair> missing_;
};

}  // namespace

bool QtrCategoryStd::ConvInfoComplete() {
    std::vector<QtrUnitBase*> units;
    for (const auto& unit : units_) units.push_back(unit.get());
    return RuleCompletion(std::move(units)).Run();
}
