// Loading catalogues in-process: the shipped default catalogue into a fresh
// administration beside UDUNITS-2 reading its own database, and a large
// generated catalogue whose reading speed is shown in bytes per second
// (reading includes completing every category's rules).
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench_catalogue.h"
#include "udunits2_peer.h"

namespace quantor::bench {
namespace {

void BM_Load_DefaultCatalogue(benchmark::State& state) {
    for (auto _ : state) {
        QtrAdminDscr admin;
        if (!LoadShippedCatalogue(admin)) state.SkipWithError("the shipped catalogue did not load");
        benchmark::DoNotOptimize(admin.IsValid());
    }
}
BENCHMARK(BM_Load_DefaultCatalogue)->Unit(benchmark::kMicrosecond);

void BM_Load_Udunits2Database(benchmark::State& state) {
    if (SkipWithoutUdunits2(state)) return;
#if QUANTOR_HAVE_UDUNITS2
    ut_set_error_message_handler(ut_ignore);
    for (auto _ : state) {
        ut_system* system = ut_read_xml(QUANTOR_UDUNITS2_XML);
        if (!system) state.SkipWithError("UDUNITS-2 could not read its database");
        ut_free_system(system);
    }
#endif
}
BENCHMARK(BM_Load_Udunits2Database)->Unit(benchmark::kMicrosecond);

// A catalogue of `categories` categories of `units` units each, every unit
// but the first given by one rule into the one before it, with a format
// clause on every other rule: the shape of a real catalogue, only larger.
std::string GeneratedCatalogue(int categories, int units) {
    std::string text = "// A generated catalogue for measuring how fast catalogues are read.\n";
    for (int c = 0; c < categories; ++c) {
        const std::string category = "Quantity" + std::to_string(c);
        text += "\ncategory " + category + "\n{\n\tunit q" + std::to_string(c) + "u0";
        for (int u = 1; u < units; ++u) text += ", q" + std::to_string(c) + "u" + std::to_string(u);
        text += ";\n\tdefaultintern q" + std::to_string(c) + "u0;\n\tdefaultsurface q" + std::to_string(c) + "u0;\n";
        for (int u = 1; u < units; ++u) {
            text += "\tconvert  q" + std::to_string(c) + "u" + std::to_string(u) + "\t<- q" + std::to_string(c) + "u0 * " +
                    std::to_string(u * 3 + 1) + (u % 2 ? "\tformat 1, -1;\n" : ";\n");
        }
        text += "} // " + category + "\n";
    }
    return text;
}

void BM_Read_LargeCatalogue(benchmark::State& state) {
    const std::string text = GeneratedCatalogue(static_cast<int>(state.range(0)), 20);
    const std::filesystem::path path = std::filesystem::temp_directory_path() / "quantor_bench_large_catalogue.txt";
    std::ofstream(path, std::ios::binary) << text;
    const std::wstring widePath = path.wstring();
    for (auto _ : state) {
        QtrAdminDscr admin;
        if (!admin.Import_Parse(widePath.c_str())) state.SkipWithError("the generated catalogue did not load");
        benchmark::DoNotOptimize(admin.IsValid());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    std::filesystem::remove(path);
}
BENCHMARK(BM_Read_LargeCatalogue)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quantor::bench
