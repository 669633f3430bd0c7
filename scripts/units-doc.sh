#!/usr/bin/env bash
# Regenerates docs/units.md, the reference of the shipped catalogue, with the
# catalogue_doc program of a build tree:
#   scripts/units-doc.sh [BUILD_DIR [OUTPUT]]
# BUILD_DIR defaults to build/release, OUTPUT to docs/units.md. The program is
# built first if the build tree lacks it.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
readonly BUILD_DIR=${1:-build/release}
readonly OUTPUT=${2:-docs/units.md}

cmake --build "$BUILD_DIR" --target catalogue_doc >/dev/null
"$BUILD_DIR/tools/catalogue_doc" data/unitsandcurrencies >"$OUTPUT"
