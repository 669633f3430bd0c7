#!/usr/bin/env bash
# The fuzz campaign: builds the fuzz targets (clang, libFuzzer with
# AddressSanitizer and UndefinedBehaviorSanitizer, in build/fuzz) and runs
# every target for SECONDS seconds, two at a time. Each target starts from a
# scratch copy of its corpus fuzz/corpus/<name>/ (new inputs stay in the
# scratch folder, build/fuzz/runs/<name>/corpus) and writes its findings
# (crash-*, timeout-*, oom-*, leak-*) to build/fuzz/runs/<name>/. An input
# that takes over 2 seconds or 2 GB is a finding too. At the end it prints
# per target the executions and the findings, and fails if there are any.
#
# Usage: scripts/fuzz.sh SECONDS
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/packages.sh
source scripts/packages.sh
readonly SECONDS_PER_TARGET=${1:?usage: scripts/fuzz.sh SECONDS}
readonly BUILD=build/fuzz
readonly RUNS=$BUILD/runs
readonly PARALLEL=2

ensure_packages cmake ninja-build clang bison
ensure_packages "libclang-rt-$(clang -dumpversion | cut -d. -f1)-dev"
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DQUANTOR_BUILD_FUZZ=ON -DQUANTOR_SANITIZE=ON -DQUANTOR_BUILD_TESTS=OFF
mapfile -t TARGETS < <(for source in fuzz/*_fuzz.cpp; do basename "$source" .cpp; done)
cmake --build "$BUILD" -j "$PARALLEL" --target "${TARGETS[@]}"

# Runs one target in its own folder; its log is that folder's fuzz.log.
fuzz_target() {
    local name=$1 dir=$RUNS/$1
    rm -rf "$dir"
    mkdir -p "$dir/corpus"
    if [[ -d fuzz/corpus/$name ]]; then cp -r "fuzz/corpus/$name/." "$dir/corpus/"; fi
    (cd "$dir" && ASAN_OPTIONS=detect_leaks=1 "$OLDPWD/$BUILD/fuzz/$name" -max_total_time="$SECONDS_PER_TARGET" \
        -timeout=2 -rss_limit_mb=2048 -print_final_stats=1 corpus >fuzz.log 2>&1) || true
}

running=0
for name in "${TARGETS[@]}"; do
    log "fuzzing $name for $SECONDS_PER_TARGET s"
    fuzz_target "$name" &
    running=$((running + 1))
    if ((running == PARALLEL)); then
        wait -n
        running=$((running - 1))
    fi
done
wait

total=0
printf '%-22s %12s  %s\n' target executions findings
for name in "${TARGETS[@]}"; do
    dir=$RUNS/$name
    executions=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$dir/fuzz.log" | grep -o '[0-9]*$' || echo '?')
    mapfile -t findings < <(find "$dir" -maxdepth 1 \( -name 'crash-*' -o -name 'timeout-*' -o -name 'oom-*' \
        -o -name 'leak-*' -o -name 'slow-unit-*' \) -printf '%f\n')
    total=$((total + ${#findings[@]}))
    printf '%-22s %12s  %s\n' "$name" "$executions" "${findings[*]:-none}"
done
((total == 0))
