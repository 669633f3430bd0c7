// One conversion between two resolved units, ready to apply to many values:
// the rule is looked up once, so converting a value is one call. Shared by
// the single conversion and the batch mode.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "lookup.h"

namespace quantor_cli {

// Digits before and after the decimal point for --digits P,Q.
struct Digits {
    int pre = 0;
    int post = 0;
};

// Reads "P,Q" (two integers from -99 to 99).
bool DigitsRead(std::string_view text, Digits& digits);

class Conversion {
public:
    // Resolves FROM and TO (empty: the display unit of FROM's category).
    bool Prepare(const NameLookup& names, const std::string& from, const std::string& to, std::string& error);

    double Apply(double value) const { return rule_ ? rule_->Convert(value) : value; }
    // The result as printed: the shortest exact text, or the target's number
    // format for `digits`.
    void ResultAppend(std::string& out, double value, const std::optional<Digits>& digits) const;

    const QtrUnitBase& Source() const { return *pair_.source; }
    const QtrUnitBase& Target() const { return *pair_.target; }

private:
    ConversionPair pair_;
    const QtrConvInfoBase* rule_ = nullptr;  // null when source and target are one unit
};

}  // namespace quantor_cli
