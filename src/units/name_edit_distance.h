// How far apart two names are, for "did you mean" suggestions: the number of
// single-character insertions, deletions, substitutions and swaps of two
// neighbouring characters that turn one name into the other (the optimal
// string alignment distance), computed only up to a bound.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace quantor::detail {

class EditDistance {
public:
    // The distance between `a` and `b` when it is at most `bound`, otherwise
    // bound + 1. Keeps its work rows between calls, so one object measures
    // many pairs without allocating each time.
    std::size_t Within(std::wstring_view a, std::wstring_view b, std::size_t bound);

private:
    std::vector<std::size_t> beforeLast_, last_, current_;
};

}  // namespace quantor::detail
