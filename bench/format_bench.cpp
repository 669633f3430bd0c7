// Cost of the wide formatter on the two directives that dominate its use:
// "%g" for values in messages and printed rules, and a fixed-point format
// with width and precision as built for a unit's output.
#include "etc/format.h"

#include <benchmark/benchmark.h>

namespace {

void BM_FormatGeneral(benchmark::State& state) {
    double value = 2500.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(QtrFormat(L"%g", value));
        value += 0.25;
    }
}
BENCHMARK(BM_FormatGeneral);

void BM_FormatFixedWidthAndPrecision(benchmark::State& state) {
    double value = 3.14159;
    for (auto _ : state) {
        benchmark::DoNotOptimize(QtrFormat(L"%7.2f", value));
        value += 0.25;
    }
}
BENCHMARK(BM_FormatFixedWidthAndPrecision);

}  // namespace
