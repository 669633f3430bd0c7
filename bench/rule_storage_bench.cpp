// Rule completion and what a stored rule costs: ConvInfoComplete on a star
// (every unit given by one rule into the first), a chain (every unit given by
// one rule into the one before it) and on units without any rule, each
// reporting the rules it stores and the heap bytes per stored rule (counted
// at the allocator, rules, their keys and the units' tables together).
// Benchmarks whose names hold "Large" take long with a slow completion, so
// scripts/bench.sh runs them apart, under a time limit.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "alloc_counter.h"
#include "quantor/quantor.h"

namespace quantor::bench {
namespace {

enum class Shape { Star, Chain, NoRules };

// The rule by which `source` converts into `target` (one target is `factor`
// sources), added to `source`.
void AddRule(QtrUnitStd& source, const QtrUnitStd& target, double factor) {
    auto rule = std::make_unique<QtrConvInfoStd>();
    rule->SetUnits(&target, &source);
    rule->SetFormula(1.0 / factor, 0.0);
    rule->SetExplicit(true);
    if (source.ConvInfoAdd(rule.get()) == 1) rule.release();
}

// A category of `count` units named u0, u1, ...; the units come back too so
// that rules can be added to them.
std::unique_ptr<QtrCategoryStd> UnitsOnly(std::size_t count, std::vector<QtrUnitStd*>& units) {
    auto category = std::make_unique<QtrCategoryStd>(L"Measured", nullptr);
    for (std::size_t i = 0; i < count; ++i) {
        auto* unit = new QtrUnitStd(category.get(), (L"u" + std::to_wstring(i)).c_str());
        category->UnitAdd(unit);
        units.push_back(unit);
    }
    return category;
}

void AddShapeRules(Shape shape, const std::vector<QtrUnitStd*>& units) {
    for (std::size_t i = 1; i < units.size(); ++i) {
        if (shape == Shape::Star) AddRule(*units[i], *units[0], 1.0 + static_cast<double>(i));
        if (shape == Shape::Chain) AddRule(*units[i], *units[i - 1], 1.0 + 1.0 / static_cast<double>(i));
    }
}

std::size_t StoredRules(const std::vector<QtrUnitStd*>& units) {
    std::size_t rules = 0;
    std::vector<const QtrConvInfoBase*> held;
    for (const QtrUnitStd* unit : units) rules += static_cast<std::size_t>(unit->ConvInfosGet(held));
    return rules;
}

// Times ConvInfoComplete alone; building the category and freeing it are
// left out of the time.
void BM_Complete(benchmark::State& state, Shape shape) {
    const auto count = static_cast<std::size_t>(state.range(0));
    std::size_t rules = 0;
    double bytesPerRule = 0.0;
    const QtrLogSink previousSink = QtrSetLogSink({});
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<QtrUnitStd*> units;
        std::unique_ptr<QtrCategoryStd> category = UnitsOnly(count, units);
        const std::int64_t bytesWithoutRules = LiveHeapBytes();
        AddShapeRules(shape, units);
        state.ResumeTiming();
        benchmark::DoNotOptimize(category->ConvInfoComplete());
        state.PauseTiming();
        rules = StoredRules(units);
        bytesPerRule = rules ? static_cast<double>(LiveHeapBytes() - bytesWithoutRules) / static_cast<double>(rules) : 0;
        category.reset();
        state.ResumeTiming();
    }
    QtrSetLogSink(previousSink);
    state.counters["rules"] = static_cast<double>(rules);
    state.counters["bytes_per_rule"] = bytesPerRule;
}

BENCHMARK_CAPTURE(BM_Complete, Star, Shape::Star)->Arg(10)->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Complete, Chain, Shape::Chain)->Arg(10)->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Complete, LargeStar, Shape::Star)->Arg(1000)->Arg(2000)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(BM_Complete, LargeChain, Shape::Chain)->Arg(1000)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(BM_Complete, LargeNoRules, Shape::NoRules)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
}  // namespace quantor::bench
