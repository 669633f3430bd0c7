// Rule completion of a category: once a description block has declared its
// units and some explicit rules, the category derives identity rules, inverses
// and chains through a third unit until every unit converts into every other.
// Phase 1 gives every unit but the last an identity rule and inverts the
// rules that exist in one direction only; phase 2 chains missing pairs
// through a third unit, pass after pass, at most one pass per unit, and
// remembers the last pair it could not chain in each pass.
//
// The walk over all pairs and all third units is never done literally: only
// pairs that a rule links (phase 1) and pairs within one connected part of
// the rule graph (phase 2) can change anything, and which pair a pass
// remembers last is worked out from the parts. A pass that changes no rule
// is followed by identical passes, so they are replayed only where they
// report something. Units of other implementations are expected to answer
// ConvInfo with a rule from themselves to the unit asked about.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <numeric>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "etc/diag_log.h"
#include "quantor/category.h"
#include "quantor/convinfo.h"
#include "quantor/unit.h"
#include "units/bit_matrix.h"

namespace {

using quantor::detail::BitMatrix;

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

// Hands `rule` to `unit`, a unit of this library or null for a unit of
// another implementation, which cannot take rules and answers -1. The unit
// owns the rule only when it answers 1; otherwise the rule is freed here.
int RuleAdd(QtrUnitStd* unit, std::unique_ptr<QtrConvInfoStd> rule) {
    const int added = unit ? unit->ConvInfoAdd(rule.get()) : -1;
    if (added == 1) rule.release();
    return added;
}

std::vector<QtrUnitStd*> OwnUnits(const std::vector<QtrUnitBase*>& units) {
    std::vector<QtrUnitStd*> own(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) own[i] = dynamic_cast<QtrUnitStd*>(units[i]);
    return own;
}

std::unique_ptr<QtrConvInfoStd> NewIdentity(const QtrUnitBase* unit) {
    auto rule = std::make_unique<QtrConvInfoStd>();
    rule->SetExplicit(true);
    rule->SetFormula(1.0, 0.0);
    rule->SetUnits(unit, unit);
    return rule;
}

QtrConvInfoStd* NewInverseOf(const QtrConvInfoBase* rule) {
    auto* own = dynamic_cast<const QtrConvInfoStd*>(rule);
    return own ? own->NewInverse() : nullptr;
}

// A pair of units by index, target before source: the rule from the unit at
// `source` to the unit at `target`, where target < source.
struct UnitPair {
    std::size_t target;
    std::size_t source;
    bool operator<(const UnitPair& other) const {
        return std::pair(target, source) < std::pair(other.target, other.source);
    }
};

std::optional<UnitPair> Later(std::optional<UnitPair> a, std::optional<UnitPair> b) {
    if (!a) return b;
    if (!b) return a;
    return *a < *b ? b : a;
}

// A rule derived through a third unit together with its inverse.
struct DerivedRules {
    QtrConvInfoStd chain;
    QtrConvInfoStd inverse;
};

std::optional<DerivedRules> Derive(const QtrConvInfoBase* outer, const QtrConvInfoBase* inner) {
    std::optional<QtrConvInfoStd> chain = QtrConvInfoStd::Chain(outer, inner);
    if (!chain) {
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrCategoryStd::ConvInfoComplete: NewChain err\n");
        return std::nullopt;
    }
    std::optional<QtrConvInfoStd> inverse = chain->Inverse();
    if (!inverse) {
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrCategoryStd::ConvInfoComplete: NewInverse err\n");
        return std::nullopt;
    }
    return DerivedRules{*chain, *inverse};
}

// Hands a copy of a derived rule to `unit`, as RuleAdd does; the unit stores
// it by value.
int RuleAddCopy(QtrUnitStd* unit, const QtrConvInfoStd& rule) { return unit ? unit->ConvInfoAddCopy(rule) : -1; }

// A connected part of the rule graph with at least two units: its members in
// array order and which rules exist between them, by position among the
// members. `from.Test(a, b)`: member a converts into member b; `into` is its
// transpose.
struct Part {
    std::vector<std::size_t> members;
    BitMatrix from;
    BitMatrix into;
};

// What the chaining of one pair did in a pass.
struct PairOutcome {
    bool remembered = false;  // a third unit could not chain it
    bool tried = false;       // at least one third unit could, so it has effects
    bool changed = false;     // a unit took a new rule
};

class RuleCompletion {
public:
    explicit RuleCompletion(std::vector<QtrUnitBase*> units)
        : units_(std::move(units)), own_(OwnUnits(units_)), n_(units_.size()) {}

    bool Run() {
        if (n_ == 0) return true;
        CollectLinks();
        if (!AddIdentitiesAndInverses()) return false;
        if (LinkedPairCount() == n_ * (n_ - 1) / 2) return true;
        BuildParts();
        const std::optional<UnitPair> missing = ChainPasses();
        return MissingReport(missing ? missing : LastUnlinkedPair());
    }

private:
    const QtrConvInfoBase* Rule(std::size_t source, std::size_t target) const {
        return units_[source]->ConvInfo(units_[target]);
    }

    // The unit a rule leads to, as an index, or kNone for a unit outside.
    // Names are unique within a category, so a target that is one of the
    // units itself (the unit at `expected`, usually) is found by its address;
    // only another unit is looked up by name. Both indexes are made on first
    // use: units without rules need neither.
    std::size_t TargetIndex(const QtrConvInfoBase* rule, std::size_t expected = kNone) {
        const QtrUnitBase* target = rule ? rule->TrgtUnit() : nullptr;
        if (!target) return kNone;
        if (expected != kNone && units_[expected] == target) return expected;
        if (const std::size_t at = IndexByAddress(target); at != kNone) return at;
        if (names_.empty())
            for (std::size_t i = 0; i < n_; ++i) names_.try_emplace(units_[i]->Name(), i);
        const auto found = names_.find(target->Name());
        return found == names_.end() ? kNone : found->second;
    }

    std::size_t IndexByAddress(const QtrUnitBase* unit) {
        if (byAddress_.empty()) {
            byAddress_.reserve(n_);
            for (std::size_t i = 0; i < n_; ++i) byAddress_.emplace_back(units_[i], i);
            std::sort(byAddress_.begin(), byAddress_.end());
        }
        const auto found = std::lower_bound(byAddress_.begin(), byAddress_.end(), std::pair(unit, std::size_t{0}));
        return found != byAddress_.end() && found->first == unit ? found->second : kNone;
    }

    void Link(std::size_t a, std::size_t b) {
        if (a == b || a == kNone || b == kNone) return;
        links_[a].push_back(b);
        links_[b].push_back(a);
    }

    // Every pair that a rule links in either direction. Units of this library
    // list their rules; a unit of another implementation is asked about each
    // unit that phase 1 can reach before it stops at that unit's identity.
    void CollectLinks() {
        links_.assign(n_, {});
        std::size_t firstForeign = n_;
        for (std::size_t i = 0; i + 1 < n_ && firstForeign == n_; ++i)
            if (!own_[i]) firstForeign = i;
        for (std::size_t a = 0; a < n_; ++a) {
            if (const QtrUnitStd* own = own_[a]) {
                for (const QtrConvInfoBase* rule : own->ConvInfosHeld()) Link(a, TargetIndex(rule));
                continue;
            }
            for (std::size_t b = 0; b < std::min(firstForeign, n_); ++b)
                if (b != a && Rule(a, b)) Link(a, b);
        }
        for (auto& linked : links_) {
            std::sort(linked.begin(), linked.end());
            linked.erase(std::unique(linked.begin(), linked.end()), linked.end());
        }
    }

    std::size_t LinkedPairCount() const {
        std::size_t count = 0;
        for (const auto& linked : links_) count += linked.size();
        return count / 2;
    }

    // Phase 1; false after a failed add, which ends the completion. Pairs
    // that no rule links have nothing to invert.
    bool AddIdentitiesAndInverses() {
        for (std::size_t i = 0; i + 1 < n_; ++i) {
            if (!AddSucceeded(RuleAdd(own_[i], NewIdentity(units_[i])))) return false;
            const auto& linked = links_[i];
            for (auto j = std::upper_bound(linked.begin(), linked.end(), i); j != linked.end(); ++j)
                if (!AddMissingDirection(i, *j)) return false;
        }
        return true;
    }

    bool AddMissingDirection(std::size_t i, std::size_t j) {
        const QtrConvInfoBase* toI = Rule(j, i);
        const QtrConvInfoBase* toJ = Rule(i, j);
        if (toI && !toJ) return AddInverse(toI, i);
        if (toJ && !toI) return AddInverse(toJ, j);
        return true;
    }

    // A rule of factor 0 has no inverse; that counts as a failed add.
    bool AddInverse(const QtrConvInfoBase* rule, std::size_t owner) {
        std::unique_ptr<QtrConvInfoStd> inverse(NewInverseOf(rule));
        return AddSucceeded(inverse ? RuleAdd(own_[owner], std::move(inverse)) : -1);
    }

    static bool AddSucceeded(int added) {
        if (added >= 0) return true;
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrCategoryStd::ConvInfoComplete, ConvInfoAdd err\n");
        return false;
    }

    // Groups the units into connected parts and records the rules between
    // the members of each part with two or more units.
    void BuildParts() {
        std::vector<std::size_t> root(n_);
        std::iota(root.begin(), root.end(), std::size_t{0});
        const auto find = [&root](std::size_t a) {
            while (root[a] != a) a = root[a] = root[root[a]];
            return a;
        };
        for (std::size_t a = 0; a < n_; ++a)
            for (std::size_t b : links_[a]) root[find(a)] = find(b);
        partOf_.assign(n_, kNone);
        positionOf_.assign(n_, 0);
        std::vector<std::size_t> partOfRoot(n_, kNone);
        for (std::size_t a = 0; a < n_; ++a) {
            if (links_[a].empty()) continue;
            std::size_t& part = partOfRoot[find(a)];
            if (part == kNone) {
                part = parts_.size();
                parts_.emplace_back();
            }
            partOf_[a] = part;
            positionOf_[a] = parts_[part].members.size();
            parts_[part].members.push_back(a);
        }
        for (Part& part : parts_) {
            part.from = BitMatrix(part.members.size());
            part.into = BitMatrix(part.members.size());
            // Completion links every member to every other member of its part.
            for (std::size_t member : part.members)
                if (own_[member]) own_[member]->ConvInfosReserve(part.members.size());
        }
        for (std::size_t a = 0; a < n_; ++a)
            for (std::size_t b : links_[a])
                if (Rule(a, b)) RuleRecord(a, b);
        lastCrossPair_ = LastCrossPair();
    }

    void RuleRecord(std::size_t source, std::size_t target) {
        if (source == kNone || target == kNone || source == target || partOf_[source] == kNone ||
            partOf_[source] != partOf_[target])
            return;
        Part& part = parts_[partOf_[source]];
        part.from.Set(positionOf_[source], positionOf_[target]);
        part.into.Set(positionOf_[target], positionOf_[source]);
    }

    // The last pair, in the order of the walk, whose units lie in different
    // parts: the last unit with the last unit outside its part, if any.
    std::optional<UnitPair> LastCrossPair() const {
        const std::size_t last = n_ - 1;
        const auto samePartAsLast = [&](std::size_t a) {
            return partOf_[a] != kNone && partOf_[a] == partOf_[last];
        };
        for (std::size_t a = last; a-- > 0;)
            if (!samePartAsLast(a)) return UnitPair{a, last};
        return std::nullopt;
    }

    // Phase 2: the passes, until one remembers no pair or n passes were made.
    // Answers the pair remembered last.
    std::optional<UnitPair> ChainPasses() {
        std::optional<UnitPair> remembered;
        for (std::size_t pass = 0; pass < n_;) {
            std::vector<UnitPair> tried;
            bool changed = false;
            remembered = FullPass(tried, changed);
            ++pass;
            if (!remembered) break;
            if (changed) continue;
            // Nothing changed, so every further pass repeats this one.
            for (; pass < n_; ++pass)
                for (const UnitPair& pair : tried) PairChain(pair.target, pair.source);
        }
        return remembered;
    }

    // One pass over every pair whose source does not yet convert into its
    // target. Pairs in different parts cannot be chained; with a third unit
    // to try they are remembered, and the last of them is known beforehand.
    std::optional<UnitPair> FullPass(std::vector<UnitPair>& tried, bool& changed) {
        std::optional<UnitPair> remembered;
        for (std::size_t i = 0; i + 1 < n_; ++i) {
            if (partOf_[i] == kNone) continue;
            const Part& part = parts_[partOf_[i]];
            const std::size_t row = positionOf_[i];
            for (std::size_t pos = part.into.NextClear(row, row + 1); pos < part.members.size();
                 pos = part.into.NextClear(row, pos + 1)) {
                const std::size_t j = part.members[pos];
                const PairOutcome outcome = PairChain(i, j);
                if (outcome.remembered) remembered = UnitPair{i, j};
                if (outcome.tried) tried.push_back(UnitPair{i, j});
                changed = changed || outcome.changed;
            }
        }
        return n_ >= 3 ? Later(remembered, lastCrossPair_) : remembered;
    }

    // Chains the unit at j to the unit at i through the first third unit k,
    // in array order, by which it works. Only units of their part can link
    // them; every other third unit, and each tried before k, is a miss.
    PairOutcome PairChain(std::size_t i, std::size_t j) {
        Part& part = parts_[partOf_[i]];
        const std::size_t ri = positionOf_[i], rj = positionOf_[j];
        PairOutcome outcome;
        std::size_t failures = 0;
        for (std::size_t pos = part.into.NextCommon(ri, part.from, rj, 0); pos < part.members.size();
             pos = part.into.NextCommon(ri, part.from, rj, pos + 1)) {
            const std::size_t k = part.members[pos];
            outcome.tried = true;
            if (std::optional<DerivedRules> derived = Derive(Rule(k, i), Rule(j, k))) {
                const std::size_t before = k - (i < k) - (j < k);
                outcome.remembered = before > failures;
                outcome.changed = AddChain(i, k, j, *derived);
                return outcome;
            }
            ++failures;
        }
        outcome.remembered = n_ - 2 > failures;
        return outcome;
    }

    // Hands the chain to j and its inverse to i; a refusal is reported and
    // the completion goes on. True when a unit took a rule.
    bool AddChain(std::size_t i, std::size_t k, std::size_t j, const DerivedRules& derived) {
        const std::size_t chainTarget = TargetIndex(&derived.chain, i);
        const std::size_t inverseTarget = TargetIndex(&derived.inverse, j);
        const int addNew = RuleAddCopy(own_[j], derived.chain);
        const int addInv = RuleAddCopy(own_[i], derived.inverse);
        if (addNew == 1) RuleRecord(j, chainTarget);
        if (addInv == 1) RuleRecord(i, inverseTarget);
        if (addNew < 1 || addInv < 1)
            Error_Report(kSrcUnitsStd, __LINE__,
                         L"QtrCategoryStd::ConvInfoComplete; %s <- %s <- %s, Addnew %d, Addinv %d\n",
                         units_[i]->Name(), units_[k]->Name(), units_[j]->Name(), addNew, addInv);
        return addNew == 1 || addInv == 1;
    }

    // The last pair that no rule links in either direction, if any: pairs of
    // different parts, or of one part that no third unit could chain.
    std::optional<UnitPair> LastUnlinkedPair() const {
        std::optional<UnitPair> last = lastCrossPair_;
        for (const Part& part : parts_) {
            for (std::size_t row = 0; row + 1 < part.members.size(); ++row) {
                const std::size_t pos = part.into.LastClearOfBoth(row, part.from, row + 1);
                if (pos < part.members.size()) last = Later(last, UnitPair{part.members[row], part.members[pos]});
            }
        }
        return last;
    }

    bool MissingReport(std::optional<UnitPair> missing) const {
        if (!missing) return true;
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrCategoryStd::ConvInfoComplete(), missing  %s <- %s\n",
                     units_[missing->target]->Name(), units_[missing->source]->Name());
        return false;
    }

    std::vector<QtrUnitBase*> units_;
    std::vector<QtrUnitStd*> own_;  // units_ that are of this library, else null
    std::size_t n_;
    std::vector<std::pair<const QtrUnitBase*, std::size_t>> byAddress_;  // sorted by address
    std::unordered_map<std::wstring_view, std::size_t> names_;
    std::vector<std::vector<std::size_t>> links_;
    std::vector<Part> parts_;
    std::vector<std::size_t> partOf_;
    std::vector<std::size_t> positionOf_;
    std::optional<UnitPair> lastCrossPair_;
};

}  // namespace

bool QtrCategoryStd::ConvInfoComplete() {
    std::vector<QtrUnitBase*> units;
    units.reserve(units_.size());
    for (const auto& unit : units_) units.push_back(unit.get());
    return RuleCompletion(std::move(units)).Run();
}
