// Cost of reading a megabyte of hostile description text: each file repeats
// one statement built to be expensive (deep nesting, copies of empty
// operands, a large balanced sum, signs that never settle, a long sum of
// scaled names) until it holds 1 MB. The simplifier's work allowance is
// meant to keep each at about a second; a plain catalogue is the baseline.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#include "dscr/parser_driver.h"
#include "etc/utf8.h"
#include "quantor/admin_dscr.h"
#include "quantor/sinks.h"

namespace {

std::string Repeated(const std::string& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) result += text;
    return result;
}

std::string BalancedSum(int levels) {
    if (levels == 0) return "m";
    const std::string half = BalancedSum(levels - 1);
    std::string sum;
    sum.reserve(2 * half.size() + 3);
    sum.append("(").append(half).append("+").append(half).append(")");
    return sum;
}

std::string ScaledSum(int terms) {
    std::string sum = "m/1";
    for (int i = 2; i <= terms; ++i) sum += "+m/" + std::to_string(i);
    return sum;
}

void BM_ReadMegabyte(benchmark::State& state, const std::string& formula) {
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("quantor-bench-" + std::to_string(getpid()) + ".dscr");
    {
        std::ofstream file(path);
        file << "category A { unit m, k;\n";
        for (size_t written = 0; written < 1'000'000; written += formula.size() + 15)
            file << "convert k <- " << formula << ";\n";
        file << "}\n";
    }
    const QtrLogSink previous = QtrSetLogSink({});
    for (auto _ : state) {
        QtrAdminDscr admin;
        benchmark::DoNotOptimize(Parse_UnitdescrFile(&admin, quantor::detail::FromUtf8(path.string())));
    }
    QtrSetLogSink(previous);
    std::filesystem::remove(path);
}

BENCHMARK_CAPTURE(BM_ReadMegabyte, plain, std::string("m * 1.8 + 32"))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReadMegabyte, deep, Repeated("m*(", 199) + "m" + Repeated(")", 199))
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReadMegabyte, copies, std::string("m").append(Repeated(" * *", 12)))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReadMegabyte, balanced, BalancedSum(12))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReadMegabyte, signs, std::string("m format ").append(Repeated("-", 10)).append("3, 0"))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReadMegabyte, scaledSum, ScaledSum(150))->Unit(benchmark::kMillisecond);

}  // namespace
