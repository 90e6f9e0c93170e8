#!/usr/bin/env bash
# Fails when the tutorial and the example differ. Its pieces of code, put together, are the example's
# files; blank lines between them do not count.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

tutorial=docs/tutorial.md
example=examples/drafting-module

# quoted LANGUAGE: what the tutorial quotes in that language.
quoted() {
  awk -v fence="\`\`\`$1" '$0 == fence { inside = 1; next } /^```/ { inside = 0 } inside' "$tutorial"
}

# check_quote LANGUAGE FILE
check_quote() {
  diff -B <(quoted "$1") "$2" >&2 || fail "$tutorial does not quote $2 as it is"
}

say "comparing the tutorial with the example"
check_quote cpp "$example/main.cpp"
check_quote cmake "$example/CMakeLists.txt"
# check-tutorial.sh FILE: a file with what the example printed is compared, too.
[ $# -eq 0 ] || check_quote text "$1"
