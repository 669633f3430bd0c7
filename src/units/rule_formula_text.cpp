// Choosing the numbers of a printed `convert` statement. Several multipliers
// may read back into the same factor, and only some of them leave an addend
// that reads back exactly, so the search tries the multipliers near 1/factor
// in both forms, shortest text first, each with the addends near
// addend * multiplier. A rule read from a statement always finds one: its own
// multiplier is among them.
//
// What a number must read back as is always a monotonic function of it
// (1/x, 1/(1/x), ±x/m) taking one value, and rounding keeps functions
// monotonic, so the doubles that qualify form one run. Walking that short run
// tells how many digits its shortest text has; precisions below that are
// skipped, and a run of ugly doubles goes straight to its 17-digit text.
#include "units/rule_formula_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>
#include <string_view>

#include "etc/format.h"
#include "units/number_text.h"

namespace quantor::detail {
namespace {

// How many neighbouring doubles on each side of an ideal number are tried.
constexpr int kNeighbourSteps = 3;
constexpr std::size_t kNearbyCount = 1 + 2 * kNeighbourSteps;
using NearbyDoubles = std::array<double, kNearbyCount>;

// The next double above or below `x`: for a finite, non-zero `x` the
// neighbouring bit pattern, one step away from zero or towards it.
double NextDouble(double x, bool up) {
    if (x == 0.0 || !std::isfinite(x)) {
        return std::nextafter(x, up ? std::numeric_limits<double>::infinity() : -std::numeric_limits<double>::infinity());
    }
    const auto bits = std::bit_cast<std::uint64_t>(x);
    return std::bit_cast<double>(up == (x > 0.0) ? bits + 1 : bits - 1);
}

// `value` and its neighbours up to kNeighbourSteps doubles away, nearest first.
NearbyDoubles NearbyDoublesOf(double value) {
    NearbyDoubles values{value};
    double up = value;
    double down = value;
    for (std::size_t step = 0; step < kNeighbourSteps; ++step) {
        up = NextDouble(up, true);
        down = NextDouble(down, false);
        values[1 + 2 * step] = up;
        values[2 + 2 * step] = down;
    }
    return values;
}

// How many doubles a walk along a run may visit before it gives up.
constexpr int kRunWalkLimit = 8;
// No digit bound: every precision from 6 on is tried.
constexpr int kNoDigitBound = 1;
// The run is empty: no text can qualify, only the 17-digit one is written.
constexpr int kNoTextQualifies = kExactPrecision;

// What a text's read-back x must satisfy: f(x) == target, f monotonic
// (non-decreasing when `increasing`) on doubles of one sign.
template <class F>
struct ReadBackCondition {
    F f;
    double target;
    bool increasing;

    bool operator()(double read) const { return f(read) == target; }
};

template <class F>
ReadBackCondition<F> MakeCondition(F f, double target, bool increasing) {
    return {f, target, increasing};
}

// Steps from `start` towards the run where the condition holds: the first
// double of the run, or nothing when the walk passes over an empty run
// (nullopt with `empty` set) or cannot tell (a NaN, zero, infinity, or too
// long a walk).
template <class F>
std::optional<double> WalkIntoRun(const ReadBackCondition<F>& condition, double start, bool& empty) {
    double x = start;
    double fx = condition.f(x);
    if (std::isnan(fx)) return std::nullopt;
    const bool below = fx < condition.target;
    const bool up = below == condition.increasing;
    for (int step = 0; fx != condition.target; ++step) {
        x = NextDouble(x, up);
        if (step == kRunWalkLimit || x == 0.0 || !std::isfinite(x)) return std::nullopt;
        fx = condition.f(x);
        if (std::isnan(fx)) return std::nullopt;
        if (fx != condition.target && (fx < condition.target) != below) {
            empty = true;
            return std::nullopt;
        }
    }
    return x;
}

// The fewest digits among the run's doubles from `inside` on in one
// direction, or nothing when the walk cannot tell.
template <class F>
std::optional<int> FewestDigitsAlongRun(const ReadBackCondition<F>& condition, double inside, bool up) {
    int fewest = kNoTextQualifies + 1;
    double x = inside;
    for (int step = 0; step <= kRunWalkLimit; ++step) {
        x = NextDouble(x, up);
        if (x == 0.0 || !std::isfinite(x)) return std::nullopt;
        if (!condition(x)) return fewest;
        fewest = std::min(fewest, FewestDigitsReadingAs(x));
    }
    return std::nullopt;
}

// No text of fewer significant digits than this reads back as a double that
// satisfies the condition; the run is found by walking from `start`.
template <class F>
int FewestQualifyingDigits(const ReadBackCondition<F>& condition, double start) {
    bool empty = false;
    const std::optional<double> inside = WalkIntoRun(condition, start, empty);
    if (!inside) return empty ? kNoTextQualifies : kNoDigitBound;
    const std::optional<int> above = FewestDigitsAlongRun(condition, *inside, true);
    const std::optional<int> below = FewestDigitsAlongRun(condition, *inside, false);
    if (!above || !below) return kNoDigitBound;
    return std::min({FewestDigitsReadingAs(*inside), *above, *below});
}

// A factor clause (" * m", " / n" or nothing) and the multiplier that the
// reader takes from it.
struct FactorClause {
    std::wstring_view prefix;
    NumberText number;
    double multiplier = 1.0;

    std::size_t Size() const { return prefix.size() + number.size; }
    void AppendTo(std::wstring& text) const {
        text.append(prefix);
        AppendAscii(text, number.View());
    }
};

// Up to two clauses per nearby multiplier (its shortest text and its own),
// for both forms, and the 17-digit fallback.
constexpr std::size_t kMaxClauses = 4 * kNearbyCount + 1;

class FactorClauseList {
public:
    void Add(const FactorClause& clause) { clauses_[size_++] = clause; }
    std::size_t Size() const { return size_; }
    const FactorClause& operator[](std::size_t index) const { return clauses_[index]; }

    // Orders the clauses from `first` on by length, keeping the order of
    // equally long ones (an insertion sort: a handful of clauses, and no
    // buffer to allocate).
    void SortFrom(std::size_t first) {
        for (std::size_t i = first + 1; i < size_; ++i) {
            for (std::size_t j = i; j > first && clauses_[j].Size() < clauses_[j - 1].Size(); --j) {
                std::swap(clauses_[j], clauses_[j - 1]);
            }
        }
    }

private:
    std::array<FactorClause, kMaxClauses> clauses_{};
    std::size_t size_ = 0;
};

// Appends the factor clauses of one form that read back into `factor`,
// shortest first: " / n" (the reader takes 1/n) or " * m".
void AddFactorClausesOfForm(double factor, bool divides, FactorClauseList& clauses) {
    const auto multiplierOf = [divides](double number) { return divides ? 1.0 / number : number; };
    const auto reproduces = MakeCondition([multiplierOf](double number) { return 1.0 / multiplierOf(number); },
                                          factor, divides);
    const std::wstring_view prefix = divides ? L" / " : L" * ";
    const auto add = [&](const NumberText& number) {
        clauses.Add({prefix, number, multiplierOf(number.readBack)});
    };
    const std::size_t first = clauses.Size();
    std::optional<int> fewestDigits;
    for (double candidate : NearbyDoublesOf(divides ? factor : 1.0 / factor)) {
        if (candidate == 0.0 || !std::isfinite(candidate) || !reproduces(candidate)) continue;
        if (!fewestDigits) fewestDigits = FewestQualifyingDigits(reproduces, candidate);
        // The shortest text may read back as another number that reproduces
        // the factor too; the candidate's own text keeps its multiplier.
        const NumberTexts texts(candidate);
        const NumberText shortest = NumberTextMatching(texts, reproduces, *fewestDigits);
        add(shortest);
        if (shortest.readBack != candidate) add(NumberTextShortest(texts));
    }
    clauses.SortFrom(first);
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
            clauses_.Add({});
            otherFormAdded_ = true;
        } else {
            AddFactorClausesOfForm(factor_, Divides(), clauses_);
        }
    }

    // The clause at `index`, or null past the last. Never null at 0: without
    // an exact clause, the 17-digit multiplier.
    const FactorClause* At(std::size_t index) {
        if (index >= clauses_.Size() && !otherFormAdded_) AddOtherForm();
        return index < clauses_.Size() ? &clauses_[index] : nullptr;
    }

private:
    bool Divides() const { return std::fabs(ideal_) < 1.0; }

    void AddOtherForm() {
        otherFormAdded_ = true;
        AddFactorClausesOfForm(factor_, !Divides(), clauses_);
        if (clauses_.Size() == 0) clauses_.Add({L" * ", NumberTextExact(ideal_), ideal_});
    }

    double factor_;
    double ideal_;
    FactorClauseList clauses_;
    bool otherFormAdded_ = false;
};

std::wstring_view AddendSign(double signedAddend) { return signedAddend < 0.0 ? L" - " : L" + "; }

// An addend clause: its sign and the text of its magnitude.
struct AddendClause {
    double signedAddend = 0.0;
    NumberText magnitude;
};

// The shortest " + a" / " - a" that the reader turns, with `multiplier`,
// back into exactly `addend`; none when no nearby number does.
std::optional<AddendClause> ExactAddendClause(double addend, double multiplier) {
    std::optional<AddendClause> best;
    std::optional<int> fewestDigits[2];  // for negative and for positive candidates
    for (double candidate : NearbyDoublesOf(addend * multiplier)) {
        if (candidate == 0.0 || !std::isfinite(candidate)) continue;
        const double sign = candidate < 0.0 ? -1.0 : 1.0;
        const auto reproduces =
            MakeCondition([sign, multiplier](double read) { return sign * read / multiplier; }, addend,
                          (sign > 0.0) == (multiplier > 0.0));
        std::optional<int>& fewest = fewestDigits[sign > 0.0 ? 1 : 0];
        if (!fewest) fewest = FewestQualifyingDigits(reproduces, sign * candidate);
        const NumberText number = NumberTextMatching(NumberTexts(sign * candidate), reproduces, *fewest);
        if (!reproduces(number.readBack)) continue;
        if (!best || number.size < best->magnitude.size) best = AddendClause{candidate, number};
    }
    return best;
}

// The multipliers whose addends were already searched in vain: clauses of
// other texts may share them, and the search would fail again.
class FailedMultipliers {
public:
    bool Contains(double multiplier) const {
        return std::find(multipliers_.begin(), multipliers_.begin() + static_cast<std::ptrdiff_t>(size_), multiplier) !=
               multipliers_.begin() + static_cast<std::ptrdiff_t>(size_);
    }
    void Add(double multiplier) { multipliers_[size_++] = multiplier; }

private:
    std::array<double, kMaxClauses> multipliers_{};
    std::size_t size_ = 0;
};

}  // namespace

void AppendRuleFormulaText(std::wstring& text, double factor, double addend) {
    FactorClauses clauses(factor);
    if (addend == 0.0 || std::isnan(addend)) {
        clauses.At(0)->AppendTo(text);
        return;
    }
    FailedMultipliers failed;
    for (std::size_t index = 0; const FactorClause* clause = clauses.At(index); ++index) {
        if (failed.Contains(clause->multiplier)) continue;
        if (const std::optional<AddendClause> addendClause = ExactAddendClause(addend, clause->multiplier)) {
            clause->AppendTo(text);
            text.append(AddendSign(addendClause->signedAddend));
            AppendAscii(text, addendClause->magnitude.View());
            return;
        }
        failed.Add(clause->multiplier);
    }
    const FactorClause& first = *clauses.At(0);
    const double nearest = addend * first.multiplier;
    first.AppendTo(text);
    text.append(AddendSign(nearest));
    text.append(QtrFormat(L"%.17g", std::fabs(nearest)));
}

}  // namespace quantor::detail
