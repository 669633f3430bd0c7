// Conversion by name, as hosts call it: the free function UnitConvert on the
// default administration, QtrAdminStd::Convert, and a unit's Convert with the
// target's name, over a fixed mix of 1000 pairs of the shipped catalogue, on
// one, two and all threads; beside it UDUNITS-2 parsing both names and
// converting, and a loop that shares nothing, which shows how far threads
// can scale on this machine. Every benchmark counts the heap allocations per
// conversion. Then a held rule beside a plain multiply-add and beside
// UDUNITS-2's cached converter.
#include <benchmark/benchmark.h>

#include <thread>
#include <vector>

#include "alloc_counter.h"
#include "bench_catalogue.h"
#include "udunits2_peer.h"

namespace quantor::bench {
namespace {

constexpr std::size_t kPairCount = 1000;

const QtrAdminStd& DefaultAdmin() {
    static const QtrAdminStd* const admin = [] {
        UseShippedCatalogueAsDefault();
        return QtrAdminStd::QtrAdminDefault();
    }();
    return *admin;
}

const std::vector<UnitPair>& Mix() {
    static const std::vector<UnitPair> mix = PairMix(DefaultAdmin(), kPairCount);
    return mix;
}

// Runs `convert` over the mix, one pair (and its index) per iteration, and
// reports the
// conversions per second and the heap allocations per conversion.
template <typename Convert>
void ConvertOverMix(benchmark::State& state, const std::vector<UnitPair>& mix, Convert convert) {
    if (mix.empty()) {
        state.SkipWithError("no unit pairs");
        return;
    }
    std::size_t next = static_cast<std::size_t>(state.thread_index()) * 7919 % mix.size();
    const std::uint64_t allocationsBefore = AllocationsOfThisThread();
    for (auto _ : state) {
        benchmark::DoNotOptimize(convert(mix[next], next));
        if (++next == mix.size()) next = 0;
    }
    const double allocations = static_cast<double>(AllocationsOfThisThread() - allocationsBefore);
    state.counters["allocs_per_conversion"] =
        benchmark::Counter(allocations / static_cast<double>(state.iterations()), benchmark::Counter::kAvgThreads);
    state.SetItemsProcessed(state.iterations());
}

void ScaleOverThreads(benchmark::internal::Benchmark* benchmark) {
    benchmark->UseRealTime()->Threads(1)->Threads(2);
    const int all = static_cast<int>(std::thread::hardware_concurrency());
    if (all > 2) benchmark->Threads(all);
}

void BM_ConvertByName_UnitConvert(benchmark::State& state) {
    ConvertOverMix(state, Mix(), [](const UnitPair& pair, std::size_t) {
        double result = 0.0;
        UnitConvert(result, pair.target.c_str(), 2.5, pair.source.c_str());
        return result;
    });
}
BENCHMARK(BM_ConvertByName_UnitConvert)->Apply(ScaleOverThreads);

void BM_ConvertByName_AdminConvert(benchmark::State& state) {
    const QtrAdminStd& admin = DefaultAdmin();
    ConvertOverMix(state, Mix(), [&admin](const UnitPair& pair, std::size_t) {
        double result = 0.0;
        admin.Convert(result, pair.target.c_str(), 2.5, pair.source.c_str());
        return result;
    });
}
BENCHMARK(BM_ConvertByName_AdminConvert)->Apply(ScaleOverThreads);

// A host that holds the source unit and names the target.
void BM_ConvertByName_UnitBaseConvert(benchmark::State& state) {
    const QtrAdminStd& admin = DefaultAdmin();
    std::vector<const QtrUnitBase*> sources;
    for (const UnitPair& pair : Mix()) sources.push_back(admin.Unit(pair.source.c_str()));
    ConvertOverMix(state, Mix(), [&sources](const UnitPair& pair, std::size_t index) {
        double result = 0.0;
        sources[index]->Convert(result, pair.target.c_str(), 2.5);
        return result;
    });
}
BENCHMARK(BM_ConvertByName_UnitBaseConvert)->Apply(ScaleOverThreads);

// Work of the same kind and size that shares nothing between threads: each
// thread walks a table of its own. Its gain from a second thread is what this
// machine gives; conversion by name should gain as much.
void BM_PrivateWork(benchmark::State& state) {
    std::vector<double> factors(kPairCount);
    for (std::size_t i = 0; i < factors.size(); ++i) factors[i] = 1.0 + 1e-9 * static_cast<double>(i);
    std::size_t next = 0;
    double value = 2.5;
    for (auto _ : state) {
        value = value * factors[next] + 1e-12;
        benchmark::DoNotOptimize(value);
        if (++next == factors.size()) next = 0;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_PrivateWork)->Apply(ScaleOverThreads);

#if QUANTOR_HAVE_UDUNITS2
const std::vector<UnitPair>& Udunits2Mix() {
    static const std::vector<UnitPair> mix = PairMix(DefaultAdmin(), kPairCount, [](const UnitPair& pair) {
        return Udunits2Converts(pair.narrowSource, pair.narrowTarget);
    });
    return mix;
}
#endif

// What a UDUNITS-2 host does for a conversion by name: parse both names, get
// a converter, convert, free.
void BM_ConvertByName_Udunits2(benchmark::State& state) {
    if (SkipWithoutUdunits2(state)) return;
#if QUANTOR_HAVE_UDUNITS2
    ut_system* system = Udunits2System();
    ConvertOverMix(state, Udunits2Mix(), [system](const UnitPair& pair, std::size_t) {
        ut_unit* from = ut_parse(system, pair.narrowSource.c_str(), UT_ASCII);
        ut_unit* to = ut_parse(system, pair.narrowTarget.c_str(), UT_ASCII);
        cv_converter* converter = ut_get_converter(from, to);
        const double result = cv_convert_double(converter, 2.5);
        cv_free(converter);
        ut_free(from);
        ut_free(to);
        return result;
    });
#endif
}
// UDUNITS-2's parser keeps global state, so it runs on one thread only.
BENCHMARK(BM_ConvertByName_Udunits2)->UseRealTime();

// A held rule and its inverse, applied in turn so the value stays in range;
// each conversion waits for the one before, as a host's chained arithmetic.
void BM_HeldRule_Quantor(benchmark::State& state) {
    const QtrConvInfoBase* forth = DefaultAdmin().ConvInfo(L"degF", L"degC");
    const QtrConvInfoBase* back = DefaultAdmin().ConvInfo(L"degC", L"degF");
    if (!forth || !back) {
        state.SkipWithError("degC and degF are not in the catalogue");
        return;
    }
    benchmark::DoNotOptimize(forth);
    benchmark::DoNotOptimize(back);
    double value = 21.5;
    for (auto _ : state) {
        value = back->Convert(forth->Convert(value));
        benchmark::DoNotOptimize(value);
    }
    state.SetItemsProcessed(2 * state.iterations());
}
BENCHMARK(BM_HeldRule_Quantor);

// The same two conversions written out as multiply-adds, with factors the
// compiler cannot know.
void BM_HeldRule_MultiplyAdd(benchmark::State& state) {
    double forthFactor = 1.8, forthAddend = 32.0, backFactor = 1.0 / 1.8, backAddend = -32.0 / 1.8;
    benchmark::DoNotOptimize(forthFactor);
    benchmark::DoNotOptimize(forthAddend);
    benchmark::DoNotOptimize(backFactor);
    benchmark::DoNotOptimize(backAddend);
    double value = 21.5;
    for (auto _ : state) {
        value = (value * forthFactor + forthAddend) * backFactor + backAddend;
        benchmark::DoNotOptimize(value);
    }
    state.SetItemsProcessed(2 * state.iterations());
}
BENCHMARK(BM_HeldRule_MultiplyAdd);

void BM_HeldRule_Udunits2(benchmark::State& state) {
    if (SkipWithoutUdunits2(state)) return;
#if QUANTOR_HAVE_UDUNITS2
    ut_unit* celsius = ut_parse(Udunits2System(), "degC", UT_ASCII);
    ut_unit* fahrenheit = ut_parse(Udunits2System(), "degF", UT_ASCII);
    cv_converter* forth = ut_get_converter(celsius, fahrenheit);
    cv_converter* back = ut_get_converter(fahrenheit, celsius);
    double value = 21.5;
    for (auto _ : state) {
        value = cv_convert_double(back, cv_convert_double(forth, value));
        benchmark::DoNotOptimize(value);
    }
    state.SetItemsProcessed(2 * state.iterations());
    cv_free(forth);
    cv_free(back);
    ut_free(celsius);
    ut_free(fahrenheit);
#endif
}
BENCHMARK(BM_HeldRule_Udunits2);

}  // namespace
}  // namespace quantor::bench
