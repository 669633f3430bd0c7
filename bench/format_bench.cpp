// Cost of the wide formatter on the two directives that dominate its use:
// "%g" for values in messages and printed rules, and a fixed-point format
// with width and precision as built for a unit's output.
#include "etc/format.h"

#include <benchmark/benchmark.h>

namespace {

void BM_Format(benchmark::State& state, const wchar_t* format) {
    double value = 2500.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(QtrFormat(format, value));
        value += 0.25;
    }
}
BENCHMARK_CAPTURE(BM_Format, general, L"%g");
BENCHMARK_CAPTURE(BM_Format, fixed_width_and_precision, L"%7.2f");

}  // namespace
