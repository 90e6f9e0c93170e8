#!/usr/bin/env bash
# build-example.sh TREE FOLDER: builds the example in FOLDER from the library installed in TREE. The
# libraries that ours is built with are hidden from it: who uses an installed one need not have them.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

say "building the example from an installed library"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { cmake -S examples/drafting-module -B "$2" -G Ninja -DCMAKE_BUILD_TYPE=Release \
         -DCMAKE_PREFIX_PATH="$(realpath "$1")" -DCMAKE_DISABLE_FIND_PACKAGE_LibXml2=ON &&
       cmake --build "$2"; } >"$log" 2>&1; then
  tail -n 60 "$log" >&2
  fail "the example does not build"
fi
