// Cost of reading large description files into an administration: many
// empty categories, and one category whose single statement declares a very
// large number of units. Each measurement includes freeing the catalogue.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "quantor/admin_dscr.h"
#include "quantor/sinks.h"

namespace {

std::filesystem::path WriteDescription(const std::string& name, const std::string& text) {
    const std::filesystem::path path = std::filesystem::temp_directory_path() / name;
    std::ofstream(path) << text;
    return path;
}

std::string EmptyCategories(int64_t count) {
    std::string text;
    for (int64_t i = 0; i < count; ++i) text += "category c" + std::to_string(i) + " { }\n";
    return text;
}

std::string OneUnitStatement(int64_t count) {
    std::string text = "category many\n{\n\tunit u0";
    for (int64_t i = 1; i < count; ++i) text += ", u" + std::to_string(i);
    return text + ";\n}\n";
}

void Load(benchmark::State& state, const std::filesystem::path& path) {
    const QtrLogSink previous = QtrSetLogSink({});
    for (auto _ : state) {
        QtrAdminDscr admin;
        benchmark::DoNotOptimize(admin.Import_Parse(path.wstring().c_str()));
    }
    QtrSetLogSink(previous);
    std::filesystem::remove(path);
}

void BM_LoadEmptyCategories(benchmark::State& state) {
    Load(state, WriteDescription("quantor_bench_categories.txt", EmptyCategories(state.range(0))));
}

void BM_LoadOneUnitStatement(benchmark::State& state) {
    Load(state, WriteDescription("quantor_bench_units.txt", OneUnitStatement(state.range(0))));
}

BENCHMARK(BM_LoadEmptyCategories)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_LoadOneUnitStatement)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
