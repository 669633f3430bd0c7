// The formula part of a `convert` statement, chosen so that the statement
// reads back into exactly the rule it was printed from.
#pragma once

#include <string>

namespace quantor::detail {

// Appends the text that follows the source unit's name in `convert T <- S ...`
// for a rule of this factor and addend to `text`: " * m" or " / n", then
// " + a" or " - a".
// The reader turns `S * m + a` into factor 1/m and addend a/m, so the numbers
// are the shortest whose read-back reproduces both values bit for bit; where
// no printed pair can (not every double is the reciprocal of a double), the
// nearest pair is written with 17 digits.
void AppendRuleFormulaText(std::wstring& text, double factor, double addend);

}  // namespace quantor::detail
