// Cost of resolving typed names over the shipped catalogue, with the English
// synonyms and the German display names read: one benchmark per resolution
// stage, the plain index lookup it starts with, and a miss that asks for
// suggestions. Each reports the heap allocations it makes per lookup.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <string>

#include "etc/utf8.h"
#include "quantor/admin.h"
#include "quantor/admin_dscr.h"
#include "quantor/names.h"

namespace {

std::atomic<long> allocations{0};

const std::wstring kFolder = quantor::detail::FromUtf8(QUANTOR_BENCH_DATA_DIR "/unitsandcurrencies/");

const QtrAdminDscr& LoadedAdmin(QtrAdminDscr& admin) {
    admin.Import_Parse((kFolder + L"unit_dscr.txt").c_str());
    admin.Import_Parse((kFolder + L"curr_dscr_edy.txt").c_str());
    return admin;
}

struct ShippedCatalogue {
    QtrAdminDscr admin;
    QtrNameResolver resolver{LoadedAdmin(admin)};
    ShippedCatalogue() {
        resolver.SynonymFileRead((kFolder + L"UnitSynonyms0409.rlg").c_str());
        resolver.DisplayNameFileRead((kFolder + L"UnitAbbrevNames0407.rlg").c_str());
    }
};

const ShippedCatalogue& Shipped() {
    static const ShippedCatalogue catalogue;
    return catalogue;
}

template <class Lookup>
void Measure(benchmark::State& state, Lookup lookup) {
    const long before = allocations.load();
    for (auto _ : state) benchmark::DoNotOptimize(lookup());
    state.counters["allocs/op"] = benchmark::Counter(static_cast<double>(allocations.load() - before),
                                                     benchmark::Counter::kAvgIterations);
}

void BM_IndexLookup(benchmark::State& state, const wchar_t* typed) {
    const QtrAdminStd& admin = Shipped().admin;
    Measure(state, [&] { return admin.Unit(typed); });
}
BENCHMARK_CAPTURE(BM_IndexLookup, hit, L"km");
BENCHMARK_CAPTURE(BM_IndexLookup, miss, L"kilometres");

void BM_Resolve(benchmark::State& state, const wchar_t* typed) {
    const QtrNameResolver& resolver = Shipped().resolver;
    Measure(state, [&] { return resolver.Resolve(typed).unit; });
}
BENCHMARK_CAPTURE(BM_Resolve, exact, L"km");
BENCHMARK_CAPTURE(BM_Resolve, synonym, L"kilometres");
BENCHMARK_CAPTURE(BM_Resolve, display_name, L"Fu\u00DF");
BENCHMARK_CAPTURE(BM_Resolve, case_insensitive, L"KILOMETRES");
BENCHMARK_CAPTURE(BM_Resolve, miss, L"kilomtres");

void BM_ResolveOrSuggest(benchmark::State& state, const wchar_t* typed) {
    const QtrNameResolver& resolver = Shipped().resolver;
    Measure(state, [&] {
        return resolver.Resolve(typed).match == QtrNameMatch::None ? resolver.Suggest(typed).size() : 0;
    });
}
BENCHMARK_CAPTURE(BM_ResolveOrSuggest, miss_with_suggestions, L"kilomtres");

}  // namespace

// Counts every heap allocation of the process, so each benchmark can report
// how many a lookup makes. Kept out of line, so the compiler does not pair
// the malloc and free it sees through them as a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* memory = std::malloc(size ? size : 1)) return memory;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
