#!/usr/bin/env bash
# The benchmark command: builds the benchmarks in Release (build/bench), runs
# every bench program (each benchmark several times, interleaved with the
# others) and the command-line comparisons, and prints one table from that run
# in which each Quantor figure stands beside the same work done by a peer: UDUNITS-2 (libudunits2-dev) for the library, GNU units for the
# command. Installs what it lacks (Debian, apt-get). The raw results stay in
# build/bench/results: one Google Benchmark JSON file per program, one
# hyperfine JSON file per command-line row.
#   QUANTOR_BENCH_LIMIT  seconds a long ("Large") benchmark may take (default 300)
#   QUANTOR_BENCH_REPETITIONS  runs of each other benchmark, interleaved (default 10)
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/packages.sh
source scripts/packages.sh
readonly ROOT=$PWD
readonly BUILD=$ROOT/build/bench
readonly RESULTS=$BUILD/results
readonly JOBS=${QUANTOR_JOBS:-$(nproc)}
readonly LIMIT=${QUANTOR_BENCH_LIMIT:-300}
readonly REPETITIONS=${QUANTOR_BENCH_REPETITIONS:-10}
readonly ROUNDS=5
readonly LINES=100000

ensure_packages cmake ninja-build g++ bison libbenchmark-dev pkg-config libudunits2-dev units hyperfine
command -v python3 >/dev/null || ensure_packages python3

log "building the benchmarks (Release)"
cmake -S "$ROOT" -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=Release -DQUANTOR_BUILD_BENCH=ON \
    -DQUANTOR_BUILD_TESTS=OFF >/dev/null
cmake --build "$BUILD" -j "$JOBS"

rm -rf "$RESULTS"
mkdir -p "$RESULTS/cli"
export QUANTOR_UNITS_DIR=$ROOT/data/unitsandcurrencies
unset QUANTOR_CURRENCY_MODE QUANTOR_LANGUAGE_ID

# Runs one bench program into its JSON file; its "Large" benchmarks run one
# by one under the time limit, and those that exceed it are listed as such.
run_bench() {
    local program=$1 name large
    name=$(basename "$program")
    log "running $name"
    "$program" --benchmark_filter=-Large --benchmark_repetitions="$REPETITIONS" \
        --benchmark_enable_random_interleaving=true --benchmark_format=json \
        --benchmark_out="$RESULTS/$name.json" --benchmark_out_format=json >/dev/null
    while read -r large; do
        [[ -n $large ]] || continue
        if ! timeout "$LIMIT" "$program" --benchmark_filter="^${large}\$" --benchmark_format=json \
                --benchmark_out="$RESULTS/$name.${large//\//_}.json" --benchmark_out_format=json >/dev/null; then
            echo "$large" >>"$RESULTS/timed_out.txt"
        fi
    done < <("$program" --benchmark_filter=Large --benchmark_list_tests 2>/dev/null || true)
}

for program in "$BUILD"/bench/*_bench; do
    [[ -x $program ]] && run_bench "$program"
done

readonly QUANTOR=$BUILD/tools/quantor
hyperfine_json() {
    local name=$1
    shift
    hyperfine --style none --warmup 3 --export-json "$RESULTS/cli/$name.json" "$@" >/dev/null
}

# Times a process row and its peer (when the peer can run) in alternating
# rounds of 10 runs each, so that a slow spell of a shared machine falls on
# both alike; the report pools the rounds of each.
hyperfine_rounds() {
    local name=$1 command=$2 peer=$3 peer_command=$4 peer_runs=$5 round
    for ((round = 1; round <= ROUNDS; ++round)); do
        hyperfine_json "$name.$round" -N --runs 10 "$command"
        if [[ $peer_runs == yes ]]; then hyperfine_json "$peer.$round" -N --runs 10 "$peer_command"; fi
    done
}

log "timing fresh processes"
udunits2_runs=no
[[ -x $BUILD/bench/udunits2_load_once ]] && udunits2_runs=yes
hyperfine_rounds load_quantor "$BUILD/bench/quantor_load_once" load_udunits2 "$BUILD/bench/udunits2_load_once" \
    "$udunits2_runs"
units_runs=no
command -v units >/dev/null && units_runs=yes
hyperfine_rounds one_quantor "$QUANTOR convert 2.5 km m" one_units "units -t '2.5 km' m" "$units_runs"

# The batch rows: the same conversions for both commands, each pair checked
# with both first, written as "VALUE FROM TO" for quantor and as alternating
# "VALUE FROM" and "TO" lines for GNU units.
readonly PAIRS=("km m" "m ft" "mi km" "ft in" "yd m" "nmi km" "cm mm" "m2 ft2" "ha acre" "l gal"
                "m3 l" "kg g" "g mg" "h min" "d h" "s ms" "kW W" "J kJ" "Pa kPa" "bar Pa")
if printf '2.5 km m\n' | "$QUANTOR" convert - 2>/dev/null | grep -qx 2500; then
    log "timing $LINES conversions from standard input"
    usable=()
    for pair in "${PAIRS[@]}"; do
        read -r from to <<<"$pair"
        "$QUANTOR" convert 1 "$from" "$to" >/dev/null 2>&1 || continue
        if command -v units >/dev/null; then units -t "1 $from" "$to" >/dev/null 2>&1 || continue; fi
        usable+=("$pair")
    done
    printf '%s\n' "${usable[@]}" | awk -v lines="$LINES" -v quantor="$RESULTS/cli/quantor_lines.txt" \
        -v units="$RESULTS/cli/units_lines.txt" '
        { from[NR - 1] = $1; to[NR - 1] = $2 }
        END {
            for (i = 0; i < lines; ++i) {
                k = i % NR; value = (i % 997) ".25"
                print value, from[k], to[k] > quantor
                print value " " from[k] > units; print to[k] > units
            }
        }'
    echo "$LINES" >"$RESULTS/cli/lines.txt"
    hyperfine_json batch_quantor --runs 5 "$QUANTOR convert - < $RESULTS/cli/quantor_lines.txt > /dev/null"
    if command -v units >/dev/null; then
        hyperfine_json batch_units --runs 3 "units -t < $RESULTS/cli/units_lines.txt > /dev/null"
    fi
else
    log "quantor convert - is not available: the batch rows say n/a"
fi

log "results of this run ($(nproc) cores, $(uname -srm))"
python3 "$ROOT/bench/report.py" "$RESULTS" | tee "$RESULTS/table.md"
