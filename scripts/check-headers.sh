#!/usr/bin/env bash
# Fails when a header that callers see does not compile alone.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

require_packages $packages_build
[ -d build/test/src/include ] || fail "build first: ./test.sh"
say "compiling each header alone"
check_header() {
  printf '#include "%s"\n' "$(basename "$1")" |
    g++ -std=c++20 -fsyntax-only -Wall -Wextra -Wpedantic -Werror \
      -Iinclude -Iplatform/include -Ibuild/test/src/include -x c++ - ||
    { printf 'error: %s does not compile alone\n' "$1" >&2; return 1; }
}
for header in include/*.h platform/include/*.h; do check_header "$header"; done
