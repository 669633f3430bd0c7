// Cost of rule completion on the categories that used to make it hang: many
// units without any rule, and a chain of units with every other link
// missing, as well as a chain that completes into every pair.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "quantor/admin.h"
#include "quantor/category.h"
#include "quantor/convinfo.h"
#include "quantor/sinks.h"
#include "quantor/unit.h"

namespace {

// A category of `count` units u0, u1, ...; with a chain step s, unit i
// converts into unit i-1 whenever i is a multiple of s.
std::unique_ptr<QtrCategoryStd> Chain(int64_t count, int64_t step) {
    auto category = std::make_unique<QtrCategoryStd>(L"bench", nullptr);
    std::vector<QtrUnitStd*> units;
    for (int64_t i = 0; i < count; ++i) {
        units.push_back(new QtrUnitStd(category.get(), (L"u" + std::to_wstring(i)).c_str()));
        category->UnitAdd(units.back());
    }
    for (int64_t i = 1; step > 0 && i < count; ++i) {
        if (i % step != 0) continue;
        auto* rule = new QtrConvInfoStd;
        rule->SetUnits(units[i - 1], units[i]);
        rule->SetFormula(2.0, 1.0);
        rule->SetExplicit(true);
        units[i]->ConvInfoAdd(rule);
    }
    return category;
}

void Complete(benchmark::State& state, int64_t step) {
    const QtrLogSink previous = QtrSetLogSink({});
    for (auto _ : state) {
        state.PauseTiming();
        std::unique_ptr<QtrCategoryStd> category = Chain(state.range(0), step);
        state.ResumeTiming();
        benchmark::DoNotOptimize(category->ConvInfoComplete());
        state.PauseTiming();
        category.reset();
        state.ResumeTiming();
    }
    QtrSetLogSink(previous);
}

void BM_CompleteWithoutRules(benchmark::State& state) { Complete(state, 0); }
void BM_CompleteChainWithGaps(benchmark::State& state) { Complete(state, 2); }
void BM_CompleteFullChain(benchmark::State& state) { Complete(state, 1); }

BENCHMARK(BM_CompleteWithoutRules)->Arg(100)->Arg(200)->Arg(400)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CompleteChainWithGaps)->Arg(300)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CompleteFullChain)->Arg(100)->Arg(300)->Unit(benchmark::kMillisecond);

}  // namespace
