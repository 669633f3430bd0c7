#!/usr/bin/env bash
# The run command. Installs the build tools it lacks (Debian, apt-get), builds
# the library and the quantor command, and runs the command on the shipped
# catalogue: its categories, some conversions, a formatted value, a value
# string and a check of the catalogue files.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/packages.sh
source scripts/packages.sh

ensure_packages cmake ninja-build g++ bison
cmake -S . -B build/run -G Ninja -DCMAKE_BUILD_TYPE=Release -DQUANTOR_BUILD_TESTS=OFF
cmake --build build/run -j "$(nproc)" --target quantor_cli

quantor=build/run/tools/quantor
data=data/unitsandcurrencies
run() {
    printf '\n$ quantor %s\n' "$*"
    "$quantor" "$@"
}

run categories
run convert 2.5 km m
run convert 212 degF degC
run convert 1 Length mm
run show 1234.5 m km 4 2
run convert 100 EUR USD
run units Temperature
run value metre 2.5
# shellcheck disable=SC2162  # "read" is the quantor subcommand here
run read "u:metre i:4004000000000000 n:2.5"
run check "$data/unit_dscr.txt" "$data/curr_dscr_edy.txt"
