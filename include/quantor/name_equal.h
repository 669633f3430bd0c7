// Whether two names of the unit model are the same. The names of units and
// categories are a few characters long, so a plain loop answers sooner than a
// call into the C library. Part of the layout of the model's name tables only;
// hosts never use it.
#pragma once

#include <cstddef>
#include <string_view>

namespace quantor::detail {

inline bool SameName(std::wstring_view a, std::wstring_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i] != b[i]) return false;
    return true;
}

}  // namespace quantor::detail
