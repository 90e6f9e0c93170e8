#!/usr/bin/env bash
# Fails when the library shows other symbols than cmake/exported-symbols.txt lists, or loads other
# libraries than it may. With --update the list is written anew: docs/abi.md says what may change.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
[ "$#" -eq 0 ] || [ "$*" = --update ] || fail "usage: $0 [--update]"

require_packages $packages_build
build_preset release
library=build/release/lib/libHolStandardInfra.so
kept=cmake/exported-symbols.txt
shown=$(mktemp)
trap 'rm -f "$shown"' EXIT

# dynamic TAG: what the dynamic section says under the tag, one a line.
dynamic() {
  readelf -dW "$library" | sed -n "s/.*($1).*\[\(.*\)\]/\1/p"
}

# symbols OPTION...: what `nm` says of the visible symbols; their version is no symbol of its own.
symbols() {
  nm -D --defined-only --without-symbol-versions "$@" "$library" | awk '$2 != "A"' | cut -d' ' -f3-
}

say "checking what the library shows"
# By their mangled names: all of namespace std, what belongs to its implementation, and libxml2.
if symbols | grep -E '^(_Z(GV|T[ISTV])?Z?(NK?)?(S[a-z]|9__gnu_cxx)|_?xml[A-Z])' | c++filt; then
  fail "the library shows the symbols above, which belong to others"
fi
others=$(dynamic NEEDED | grep -vE '^(libxml2|libstdc\+\+|libgcc_s|libm|libc|ld-linux.*)\.so\.' || true)
[ -z "$others" ] || fail "the library loads" $others

{
  printf '# Symbols of %s, written by scripts/check-symbols.sh --update\n' "$(dynamic SONAME)"
  # A constructor has several symbols, of one name.
  symbols -C | LC_ALL=C sort -u
} >"$shown"

if [ "${1:-}" = --update ]; then
  # What callers of a released library may rely on is gone for them.
  if [ -f "$kept" ] && gone=$(LC_ALL=C comm --nocheck-order -23 "$kept" "$shown") && [ -n "$gone" ]; then
    printf '%s\n' "$gone"
    say "the names above are gone: docs/abi.md says when that asks for a new SONAME"
  fi
  cp "$shown" "$kept"
  chmod 644 "$kept"
elif ! diff -u "$kept" "$shown"; then
  fail "the symbols differ from $kept; docs/abi.md says which change may stay, and then:" \
       "scripts/check-symbols.sh --update"
fi
