// The hash by which the name tables of the unit model (the administration's
// name index, a unit's rule table) place a name: FNV-1a over the name's code
// units, then a multiply that spreads the bits, cheap for the short names of
// units and categories.
#pragma once

#include <cstdint>
#include <string_view>

namespace quantor::detail {

inline std::uint64_t NameHash(std::wstring_view name) {
    std::uint64_t hash = 0xcbf29ce484222325u;
    for (wchar_t c : name) hash = (hash ^ static_cast<std::uint32_t>(c)) * 0x100000001b3u;
    return (hash ^ (hash >> 29)) * 0xbf58476d1ce4e5b9u;
}

}  // namespace quantor::detail
