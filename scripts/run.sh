#!/usr/bin/env bash
# The run command. Installs the build tools it lacks (Debian, apt-get), builds
# the library and the quantor command, and runs the command on the shipped
# catalogue: its categories, conversions (with names in several forms, a
# batch from standard input and the lookup errors), a unit's details, German
# names, a currency region, JSON, a value string and checks of a good and a
# broken description file.
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
    "$quantor" "$@" || printf '(exit status %d)\n' "$?"
}

run categories
run convert 2.5 km m
run convert 98.6 degF
run convert --digits 4,2 1234.5 m km
run convert 1 metter ft
run convert 1 m kg
run convert 60 mph km/h
run convert 70 fahrenheit celsius
run --lang de convert 3 Fuß m
run --lang de convert 5 Pfund kg
printf '\n$ printf ... | quantor convert -\n'
printf '2.5 km m\n26.2 mi km\nabc m ft\n12 inch cm\n' | "$quantor" convert - || printf '(exit status %d)\n' "$?"
run info degF
run --lang de units Length
run --region america convert 100 BRL EUR
run --json convert 2.5 km m
run value degC 21.5
# shellcheck disable=SC2162  # "read" is the quantor subcommand here
run read "u:degC i:4035800000000000 n:21.5"
run check "$data/unit_dscr.txt" "$data/curr_dscr_edy.txt"
broken=$(mktemp)
trap 'rm -f "$broken"' EXIT
printf 'category Broken\n{\n\tunit aa;\n\tdefaultintern zz;\n}\n' >"$broken"
run check "$broken"
