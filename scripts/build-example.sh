#!/usr/bin/env bash
# build-example.sh TREE FOLDER: builds in FOLDER the example that is installed in TREE, from the
# library installed there. The libraries that ours is built with are hidden from it: who uses an
# installed one need not have them.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

tree=$(realpath "$1")
example=$(echo "$tree"/share/doc/*/examples/drafting-module)
[ -d "$example" ] || fail "$tree holds no example"
say "building the example from an installed library"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { cmake -S "$example" -B "$2" -G Ninja -DCMAKE_BUILD_TYPE=Release \
         -DCMAKE_PREFIX_PATH="$tree" -DCMAKE_DISABLE_FIND_PACKAGE_LibXml2=ON &&
       cmake --build "$2"; } >"$log" 2>&1; then
  tail -n 60 "$log" >&2
  fail "the example does not build"
fi
