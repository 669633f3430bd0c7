// The hash by which the name tables of the unit model (the administration's
// name index, a unit's rule table) place a name: FNV-1a over the name's code
// units, then a multiply that spreads the bits, cheap for the short names of
// units and categories.
#pragma once

#include <cstdint>
#include <string_view>

namespace quantor::detail {

constexpr std::uint64_t kNameHashSeed = 0xcbf29ce484222325u;

inline std::uint64_t NameHashStep(std::uint64_t hash, wchar_t c) {
    return (hash ^ static_cast<std::uint32_t>(c)) * 0x100000001b3u;
}

inline std::uint64_t NameHashFinish(std::uint64_t hash) { return (hash ^ (hash >> 29)) * 0xbf58476d1ce4e5b9u; }

inline std::uint64_t NameHash(std::wstring_view name) {
    std::uint64_t hash = kNameHashSeed;
    for (wchar_t c : name) hash = NameHashStep(hash, c);
    return NameHashFinish(hash);
}

// A NUL-terminated name with its length and hash, found in one pass over it.
struct HashedName {
    std::wstring_view name;
    std::uint64_t hash;
};

inline HashedName NameHashed(const wchar_t* name) {
    std::uint64_t hash = kNameHashSeed;
    const wchar_t* end = name;
    for (; *end != L'\0'; ++end) hash = NameHashStep(hash, *end);
    return {std::wstring_view(name, static_cast<std::size_t>(end - name)), NameHashFinish(hash)};
}

}  // namespace quantor::detail
