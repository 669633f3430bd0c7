// UDUNITS-2, the peer that the benchmarks measure Quantor against: its unit
// system read from its own database, and the names it can convert. Without
// the library the peer's benchmarks skip with "n/a".
#pragma once

#include <benchmark/benchmark.h>

#include <string>

#if QUANTOR_HAVE_UDUNITS2
#include <udunits2.h>
#endif

namespace quantor::bench {

#if QUANTOR_HAVE_UDUNITS2

constexpr bool kHaveUdunits2 = true;

// UDUNITS-2's database read once and kept for the process; it reports
// nothing to stderr.
inline ut_system* Udunits2System() {
    static ut_system* const system = [] {
        ut_set_error_message_handler(ut_ignore);
        return ut_read_xml(QUANTOR_UDUNITS2_XML);
    }();
    return system;
}

// Whether UDUNITS-2 parses both names and can convert between them.
inline bool Udunits2Converts(const std::string& source, const std::string& target) {
    ut_unit* from = ut_parse(Udunits2System(), source.c_str(), UT_ASCII);
    ut_unit* to = ut_parse(Udunits2System(), target.c_str(), UT_ASCII);
    const bool converts = from && to && ut_are_convertible(from, to);
    ut_free(from);
    ut_free(to);
    return converts;
}

#else

constexpr bool kHaveUdunits2 = false;

#endif

// Ends a peer benchmark that cannot run; the report shows it as "n/a".
inline bool SkipWithoutUdunits2(benchmark::State& state) {
    if (!kHaveUdunits2) state.SkipWithError("n/a: UDUNITS-2 not installed");
    return !kHaveUdunits2;
}

}  // namespace quantor::bench
