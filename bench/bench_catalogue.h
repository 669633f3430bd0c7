// What the benchmarks share: the shipped catalogue (loaded as the default
// administration loads it, or into an administration of their own) and a
// fixed mix of unit pairs drawn from it, so that every conversion benchmark
// and its UDUNITS-2 peer do the same work.
#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include "quantor/quantor.h"

namespace quantor::bench {

inline std::wstring ShippedFolder() {
    const std::string narrow = QUANTOR_BENCH_DATA_DIR "/unitsandcurrencies";
    return std::wstring(narrow.begin(), narrow.end());
}

// Points the default administration at the shipped catalogue, whatever the
// environment says, before its first use.
inline void UseShippedCatalogueAsDefault() {
    setenv("QUANTOR_UNITS_DIR", QUANTOR_BENCH_DATA_DIR "/unitsandcurrencies", 1);
    unsetenv("QUANTOR_CURRENCY_MODE");
}

// Reads the files that the default administration reads without a currency
// region: the unit file and the common currency file.
inline bool LoadShippedCatalogue(QtrAdminDscr& admin) {
    const std::wstring folder = ShippedFolder();
    return admin.Import_Parse((folder + L"/unit_dscr.txt").c_str()) &&
           admin.Import_Parse((folder + L"/curr_dscr_edy.txt").c_str());
}

// A conversion to do: the value is in `source` and goes into `target`.
struct UnitPair {
    std::wstring source;
    std::wstring target;
    std::string narrowSource;
    std::string narrowTarget;
};

inline std::string Narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }

// `count` pairs of distinct units of one category, spread over every category
// by a fixed pseudo-random walk, so each run converts the same mix. Only
// pairs that `accept` takes are drawn (a peer may know fewer units).
template <typename Accept>
std::vector<UnitPair> PairMix(const QtrAdminStd& admin, std::size_t count, Accept accept) {
    std::vector<UnitPair> candidates;
    std::vector<const QtrCategoryBase*> categories;
    admin.CategPtrs(categories);
    for (const QtrCategoryBase* category : categories) {
        std::vector<std::wstring> names;
        category->UnitNames(names);
        for (const std::wstring& source : names) {
            for (const std::wstring& target : names) {
                UnitPair pair{source, target, Narrow(source), Narrow(target)};
                if (source != target && accept(pair)) candidates.push_back(std::move(pair));
            }
        }
    }
    std::vector<UnitPair> mix;
    if (candidates.empty()) return mix;
    std::uint64_t state = 0x9e3779b97f4a7c15u;
    for (std::size_t i = 0; i < count; ++i) {
        state = state * 6364136223846793005u + 1442695040888963407u;
        mix.push_back(candidates[(state >> 33) % candidates.size()]);
    }
    return mix;
}

inline std::vector<UnitPair> PairMix(const QtrAdminStd& admin, std::size_t count) {
    return PairMix(admin, count, [](const UnitPair&) { return true; });
}

}  // namespace quantor::bench
