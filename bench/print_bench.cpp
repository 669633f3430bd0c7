// Printing the catalogue with every rule, as `quantor print --all` does, in
// rules per second: the shipped catalogue written to /dev/null.
#include <benchmark/benchmark.h>

#include <vector>

#include "bench_catalogue.h"

namespace quantor::bench {
namespace {

// The rules (or gaps) that printing with all rules writes: one per ordered
// pair of distinct units of a category.
std::int64_t PrintedRules(const QtrAdminStd& admin) {
    std::vector<const QtrCategoryBase*> categories;
    admin.CategPtrs(categories);
    std::int64_t rules = 0;
    for (const QtrCategoryBase* category : categories) {
        std::vector<const QtrUnitBase*> units;
        category->UnitPtrs(units);
        const auto count = static_cast<std::int64_t>(units.size());
        rules += count * (count - 1);
    }
    return rules;
}

void BM_PrintAllRules(benchmark::State& state) {
    QtrAdminDscr admin;
    if (!LoadShippedCatalogue(admin)) {
        state.SkipWithError("the shipped catalogue did not load");
        return;
    }
    QtrTextFile sink;
    sink.Open(L"/dev/null");
    for (auto _ : state) admin.PrettyPrint(&sink, true);
    state.SetItemsProcessed(state.iterations() * PrintedRules(admin));
}
BENCHMARK(BM_PrintAllRules)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quantor::bench
