#!/usr/bin/env bash
# Fails when a header that callers see does not compile alone, with none but the installed headers
# at hand, or is not installed.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

require_packages $packages_build
[ -f build/test/src/include/HolStandardInfraExport.h ] || fail "build first: ./test.sh"
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
cmake --install build/test --prefix "$tree" >/dev/null
headers=$tree/include/HolStandardInfra

say "compiling each installed header alone"
for header in include/*.h platform/include/*.h; do
  [ -f "$headers/$(basename "$header")" ] || fail "$header is not installed"
done
check_header() {
  printf '#include "%s"\n' "$(basename "$1")" |
    g++ -std=c++20 -fsyntax-only -Wall -Wextra -Wpedantic -Werror -I"$headers" -x c++ - ||
    { printf 'error: %s does not compile alone\n' "$1" >&2; return 1; }
}
for header in "$headers"/*.h; do check_header "$header"; done
