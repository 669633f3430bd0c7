// The printed formula of a rule as the printers chose it before the fast
// search: every precision of every nearby multiplier tried through the wide
// formatter. Kept as the reference that the fast search must match byte for
// byte.
#pragma once

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "etc/format.h"

namespace reference {

struct NumberText {
    std::wstring text;
    double readBack = 0.0;
};

inline double ReadBack(const std::wstring& text) {
    const std::string narrow(text.begin(), text.end());
    double value = 0.0;
    std::from_chars(narrow.data(), narrow.data() + narrow.size(), value);
    return value;
}

inline NumberText TextOf(double value, int precision) {
    NumberText number{QtrFormat(L"%.*g", precision, value), 0.0};
    number.readBack = ReadBack(number.text);
    return number;
}

inline NumberText NumberMatching(double value, const std::function<bool(double)>& reproduces) {
    if (!std::isfinite(value)) return {QtrFormat(L"%g", value), value};
    for (int precision = 6; precision < 17; ++precision) {
        NumberText number = TextOf(value, precision);
        if (reproduces(number.readBack)) return number;
    }
    return TextOf(value, 17);
}

constexpr int kNeighbourSteps = 3;

// `value` and its neighbours up to kNeighbourSteps doubles away, nearest first.
inline std::vector<double> NearbyDoubles(double value) {
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
inline std::vector<FactorClause> FactorClausesOfForm(double factor, bool divides) {
    const auto multiplierOf = [divides](double number) { return divides ? 1.0 / number : number; };
    const auto reproduces = [&](double number) { return 1.0 / multiplierOf(number) == factor; };
    const auto clauseOf = [&](const NumberText& number) {
        return FactorClause{(divides ? L" / " : L" * ") + number.text, multiplierOf(number.readBack)};
    };
    std::vector<FactorClause> clauses;
    for (double candidate : NearbyDoubles(divides ? factor : 1.0 / factor)) {
        if (candidate == 0.0 || !std::isfinite(candidate) || !reproduces(candidate)) continue;
        // The shortest text may read back as another number that reproduces
        // the factor too; the candidate's own text keeps its multiplier.
        const NumberText shortest = NumberMatching(candidate, reproduces);
        clauses.push_back(clauseOf(shortest));
        if (shortest.readBack != candidate) clauses.push_back(clauseOf(NumberMatching(
            candidate, [candidate](double read) { return read == candidate; })));
    }
    std::stable_sort(clauses.begin(), clauses.end(),
                     [](const FactorClause& a, const FactorClause& b) { return a.text.size() < b.text.size(); });
    return clauses;
}

// Every factor clause that reads back into `factor`: first the usual form,
// " / n" when |1/factor| < 1 and " * m" otherwise, then the other form, whose
// multipliers may leave an exact addend where the usual ones do not; nothing
// for a factor of 1. Never empty: without an exact clause, the 17-digit
// multiplier.
inline std::vector<FactorClause> FactorClauses(double factor) {
    const double ideal = 1.0 / factor;
    if (ideal == 1.0) return {{L"", 1.0}};
    const bool divides = std::fabs(ideal) < 1.0;
    std::vector<FactorClause> clauses = FactorClausesOfForm(factor, divides);
    std::vector<FactorClause> otherForm = FactorClausesOfForm(factor, !divides);
    clauses.insert(clauses.end(), otherForm.begin(), otherForm.end());
    if (clauses.empty()) clauses.push_back({L" * " + QtrFormat(L"%.17g", ideal), ideal});
    return clauses;
}

inline std::wstring AddendClauseText(double signedAddend, const std::wstring& magnitude) {
    return (signedAddend < 0.0 ? L" - " : L" + ") + magnitude;
}

// The shortest " + a" / " - a" that the reader turns, with `multiplier`,
// back into exactly `addend`; none when no nearby number does.
inline std::optional<std::wstring> ExactAddendClause(double addend, double multiplier) {
    std::optional<std::wstring> best;
    for (double candidate : NearbyDoubles(addend * multiplier)) {
        if (candidate == 0.0 || !std::isfinite(candidate)) continue;
        const double sign = candidate < 0.0 ? -1.0 : 1.0;
        const auto reproduces = [&](double read) { return sign * read / multiplier == addend; };
        const NumberText number = NumberMatching(sign * candidate, reproduces);
        if (!reproduces(number.readBack)) continue;
        std::wstring clause = AddendClauseText(candidate, number.text);
        if (!best || clause.size() < best->size()) best = std::move(clause);
    }
    return best;
}

inline std::wstring RuleFormulaText(double factor, double addend) {
    const std::vector<FactorClause> clauses = FactorClauses(factor);
    if (addend == 0.0 || std::isnan(addend)) return clauses.front().text;
    for (const FactorClause& clause : clauses) {
        if (auto addendText = ExactAddendClause(addend, clause.multiplier)) return clause.text + *addendText;
    }
    const double nearest = addend * clauses.front().multiplier;
    return clauses.front().text + AddendClauseText(nearest, QtrFormat(L"%.17g", std::fabs(nearest)));
}

}  // namespace reference
