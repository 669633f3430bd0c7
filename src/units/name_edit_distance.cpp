// Bounded optimal string alignment distance: the classic dynamic programme
// over three rows (the swap of neighbours looks two rows back), abandoned as
// soon as every entry of a row exceeds the bound.
#include "units/name_edit_distance.h"

#include <algorithm>

namespace quantor::detail {

std::size_t EditDistance::Within(std::wstring_view a, std::wstring_view b, std::size_t bound) {
    const std::size_t beyond = bound + 1;
    if ((a.size() > b.size() ? a.size() - b.size() : b.size() - a.size()) > bound) return beyond;
    const std::size_t width = b.size() + 1;
    beforeLast_.assign(width, 0);
    last_.resize(width);
    current_.resize(width);
    for (std::size_t j = 0; j < width; ++j) last_[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        current_[0] = i;
        std::size_t rowLeast = i;
        for (std::size_t j = 1; j < width; ++j) {
            const std::size_t substitution = last_[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            std::size_t best = std::min({last_[j] + 1, current_[j - 1] + 1, substitution});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                best = std::min(best, beforeLast_[j - 2] + 1);
            current_[j] = best;
            rowLeast = std::min(rowLeast, best);
        }
        if (rowLeast > bound) return beyond;
        beforeLast_.swap(last_);
        last_.swap(current_);
    }
    return std::min(last_[b.size()], beyond);
}

}  // namespace quantor::detail
