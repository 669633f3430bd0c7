#!/usr/bin/env bash
# The test command. Installs the build tools it lacks (Debian, apt-get), then:
#   1. release: g++, warnings as errors, benchmarks built, all tests;
#   2. docs:    docs/units.md is what the catalogue generates today;
#   3. asan:    clang++, AddressSanitizer + UndefinedBehaviorSanitizer, Debug,
#               fuzz targets built and their corpus replayed, all tests;
#   4. tsan:    clang++, ThreadSanitizer, the tests whose names hold "Threads";
#   5. package: installs the release build into build/install, runs the
#               installed quantor command from there in a clean environment,
#               and builds and runs tests/find-package against the install
#               with CMake and pkg-config.
# Build trees live under build/. Any failure stops the script non-zero.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/packages.sh
source scripts/packages.sh
readonly ROOT=$PWD
readonly JOBS=${QUANTOR_JOBS:-$(nproc)}
STAGE_TIMES=()
readonly TOOL_PACKAGES=(cmake ninja-build g++ clang bison libgtest-dev libgmock-dev googletest
                        libbenchmark-dev pkg-config locales nlohmann-json3-dev)

# The sanitizer and libFuzzer runtimes ship apart from clang, per version.
ensure_clang_runtime() {
    local major
    major=$(clang -dumpversion | cut -d. -f1)
    ensure_packages "libclang-rt-${major}-dev"
}

# The number-reading tests switch to a German locale to prove that a decimal
# comma never leaks in.
ensure_german_locale() {
    grep -qix 'de_DE\.utf-\?8' <<<"$(locale -a 2>/dev/null)" && return 0
    log "generating the de_DE.UTF-8 locale"
    $SUDO localedef -i de_DE -c -f UTF-8 de_DE.UTF-8
}

# The file-search tests switch to a Turkish locale, whose dotless i must not
# change how letter case is folded.
ensure_turkish_locale() {
    grep -qix 'tr_TR\.utf-\?8' <<<"$(locale -a 2>/dev/null)" && return 0
    log "generating the tr_TR.UTF-8 locale"
    $SUDO localedef -i tr_TR -c -f UTF-8 tr_TR.UTF-8
}

# Runs a named stage and records how long it took.
stage() {
    local name=$1 start=$SECONDS
    shift
    log "stage $name"
    "$@"
    STAGE_TIMES+=("$name: $((SECONDS - start)) s")
}

configure_and_build() {
    local dir=$1
    shift
    cmake -S "$ROOT" -B "$dir" -G Ninja "$@"
    cmake --build "$dir" -j "$JOBS"
}

# A test that hangs fails after five minutes instead of stalling the script.
run_tests() {
    local dir=$1
    shift
    ctest --test-dir "$dir" --output-on-failure --timeout 300 -j "$JOBS" "$@"
}

release_stage() {
    configure_and_build build/release -DCMAKE_CXX_COMPILER=g++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DQUANTOR_WERROR=ON -DQUANTOR_BUILD_BENCH=ON
    run_tests build/release
}

asan_stage() {
    configure_and_build build/asan -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Debug \
        -DQUANTOR_WERROR=ON -DQUANTOR_SANITIZE=ON -DQUANTOR_BUILD_FUZZ=ON
    ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1 UBSAN_OPTIONS=print_stacktrace=1 run_tests build/asan
}

tsan_stage() {
    configure_and_build build/tsan -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DQUANTOR_WERROR=ON -DQUANTOR_TSAN=ON
    TSAN_OPTIONS=halt_on_error=1 run_tests build/tsan -R Threads --no-tests=ignore
}

# docs/units.md must be what the catalogue generates today.
docs_stage() {
    local generated
    generated=$(mktemp)
    scripts/units-doc.sh build/release "$generated"
    diff -u docs/units.md "$generated" || { echo "docs/units.md is stale: run scripts/units-doc.sh" >&2; rm -f "$generated"; return 1; }
    rm -f "$generated"
}

# The installed command must start from its prefix with nothing in the
# environment to help it find its library or its catalogue.
installed_command_check() {
    local prefix=$1 out
    out=$(env -i PATH=/usr/bin:/bin "$prefix/bin/quantor" convert 2.5 km m)
    [[ $out == 2500 ]] || { echo "installed quantor printed '$out'" >&2; return 1; }
    out=$(env -i PATH=/usr/bin:/bin "$prefix/bin/quantor" --lang de convert 1 Fuß ft)
    [[ $out == 1 ]] || { echo "installed quantor did not read German names: '$out'" >&2; return 1; }
    test -f "$prefix/share/man/man1/quantor.1"
    test -f "$prefix/share/bash-completion/completions/quantor"
}

package_stage() {
    local prefix=$ROOT/build/install
    rm -rf "$prefix" build/consumer
    cmake --install build/release --prefix "$prefix"
    test -d "$prefix/share/quantor/unitsandcurrencies"
    if [[ -n $(find "$prefix" \( -name '*quantor_internal*' -o -name '*quantor_objects*' \) -print -quit) ]]; then
        echo "internal libraries were installed" >&2
        return 1
    fi

    installed_command_check "$prefix"

    cmake -S tests/find-package -B build/consumer -G Ninja -DCMAKE_CXX_COMPILER=g++ -DCMAKE_PREFIX_PATH="$prefix"
    cmake --build build/consumer
    build/consumer/quantor_consumer

    local pc_dir
    pc_dir=$(dirname "$(find "$prefix" -name quantor.pc)")
    export PKG_CONFIG_PATH=$pc_dir
    # shellcheck disable=SC2046  # the flags are meant to split into words
    g++ -std=c++20 tests/find-package/main.cpp -o build/consumer/quantor_consumer_pc \
        $(pkg-config --cflags --libs quantor) -Wl,-rpath,"$(pkg-config --variable=libdir quantor)"
    build/consumer/quantor_consumer_pc
}

ensure_packages "${TOOL_PACKAGES[@]}"
ensure_clang_runtime
ensure_german_locale
ensure_turkish_locale

stage release release_stage
stage docs docs_stage
stage asan asan_stage
stage tsan tsan_stage
stage package package_stage

log "all stages passed"
printf '%s\n' "${STAGE_TIMES[@]}"
