// Choosing the numbers of a printed `convert` statement. Several multipliers
// may read back into the same factor, and only some of them leave an addend
// that reads back exactly, so the search tries the multipliers near 1/factor
// in both forms, shortest text first, each with the addends near
// addend * multiplier. A rule read from a statement always finds one: its own
// multiplier is among them.
#include "units/rule_formula_text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <vector>

#include "etc/format.h"
#include "units/statement_text.h"

namespace quantor::detail {
namespace {

// How many neighbouring doubles on each side of an ideal number are tried.
constexpr int kNeighbourSteps = 3;

// `value` and its neighbours up to kNeighbourSteps doubles away, nearest first.
std::vector<double> NearbyDoubles(double value) {
    std::vector<double> values{value};
    double up = value;
    double down = value;
    for (int step = 0; step < kNeighbourSteps; ++step) {
        up = std::nextafter(up, std::numeric_limits<double>::infinity());
        down = std::nextafter(down, -std::numeric_limits<double>::infinity());
        values.push_back(up);
        values.push_back(down);
    }
    return values;
}

// A factor clause and the multiplier that the reader takes from it.
struct FactorClause {
    std::wstring text;
    double multiplier = 1.0;
};

// The factor clauses of one form that read back into `factor`, shortest
// first: " / n" (the reader takes 1/n) or " * m".
std::vector<FactorClause> FactorClausesOfForm(double factor, bool divides) {
    const auto multiplierOf = [divides](double number) { return divides ? 1.0 / number : number; };
    const auto reproduces = [&](double number) { return 1.0 / multiplierOf(number) == factor; };
    const auto clauseOf = [&](const StatementNumberText& number) {
        return FactorClause{(divides ? L" / " : L" * ") + number.text, multiplierOf(number.readBack)};
    };
    std::vector<FactorClause> clauses;
    for (double candidate : NearbyDoubles(divides ? factor : 1.0 / factor)) {
        if (candidate == 0.0 || !std::isfinite(candidate) || !reproduces(candidate)) continue;
        // The shortest text may read back as another number that reproduces
        // the factor too; the candidate's own text keeps its multiplier.
        const StatementNumberText shortest = StatementNumberMatching(candidate, reproduces);
        clauses.push_back(clauseOf(shortest));
        if (shortest.readBack != candidate) clauses.push_back(clauseOf(StatementNumberExact(candidate)));
    }
    std::stable_sort(clauses.begin(), clauses.end(),
                     [](const FactorClause& a, const FactorClause& b) { return a.text.size() < b.text.size(); });
    return clauses;
}

// The factor clauses of the usual form, " / n" when |1/factor| < 1 and
// " * m" otherwise, then those of the other form, whose multipliers may leave
// an exact addend where the usual ones do not; nothing for a factor of 1.
// The other form is made only when asked for, as most rules need only the
// first clause.
class FactorClauses {
public:
    explicit FactorClauses(double factor) : factor_(factor), ideal_(1.0 / factor) {
        if (ideal_ == 1.0) {
            clauses_.push_back({L"", 1.0});
            otherFormAdded_ = true;
        } else {
            clauses_ = FactorClausesOfForm(factor_, Divides());
        }
    }

    // The clause at `index`, or null past the last. Never null at 0: without
    // an exact clause, the 17-digit multiplier.
    const FactorClause* At(std::size_t index) {
        if (index >= clauses_.size() && !otherFormAdded_) AddOtherForm();
        return index < clauses_.size() ? &clauses_[index] : nullptr;
    }

private:
    bool Divides() const { return std::fabs(ideal_) < 1.0; }

    void AddOtherForm() {
        otherFormAdded_ = true;
        std::vector<FactorClause> otherForm = FactorClausesOfForm(factor_, !Divides());
        clauses_.insert(clauses_.end(), otherForm.begin(), otherForm.end());
        if (clauses_.empty()) clauses_.push_back({L" * " + QtrFormat(L"%.17g", ideal_), ideal_});
    }

    double factor_;
    double ideal_;
    std::vector<FactorClause> clauses_;
    bool otherFormAdded_ = false;
};

std::wstring AddendClauseText(double signedAddend, const std::wstring& magnitude) {
    return (signedAddend < 0.0 ? L" - " : L" + ") + magnitude;
}

// The shortest " + a" / " - a" that the reader turns, with `multiplier`,
// back into exactly `addend`; none when no nearby number does.
std::optional<std::wstring> ExactAddendClause(double addend, double multiplier) {
    std::optional<std::wstring> best;
    for (double candidate : NearbyDoubles(addend * multiplier)) {
        if (candidate == 0.0 || !std::isfinite(candidate)) continue;
        const double sign = candidate < 0.0 ? -1.0 : 1.0;
        const auto reproduces = [&](double read) { return sign * read / multiplier == addend; };
        const StatementNumberText number = StatementNumberMatching(sign * candidate, reproduces);
        if (!reproduces(number.readBack)) continue;
        std::wstring clause = AddendClauseText(candidate, number.text);
        if (!best || clause.size() < best->size()) best = std::move(clause);
    }
    return best;
}

}  // namespace

std::wstring RuleFormulaText(double factor, double addend) {
    FactorClauses clauses(factor);
    if (addend == 0.0 || std::isnan(addend)) return clauses.At(0)->text;
    for (std::size_t index = 0; const FactorClause* clause = clauses.At(index); ++index) {
        if (auto addendText = ExactAddendClause(addend, clause->multiplier)) return clause->text + *addendText;
    }
    const double nearest = addend * clauses.At(0)->multiplier;
    return clauses.At(0)->text + AddendClauseText(nearest, QtrFormat(L"%.17g", std::fabs(nearest)));
}

}  // namespace quantor::detail
