#!/usr/bin/env bash
# Fails when a source includes a header of a floor above its own, or a header of the contract shows
# a library that callers must not see.
set -euo pipefail
cd "$(dirname "$0")/.."

say() { printf '== %s\n' "$*"; }
status=0

# check_floor FOLDER HEADER...: no file of the folder includes one of the headers.
check_floor() {
  local folder=$1 header found
  shift
  for header in "$@"; do
    found=$(grep -rln "^#include \"$(basename "$header")\"" "$folder" || true)
    [ -z "$found" ] && continue
    printf 'error: %s includes %s, which stands on a floor above\n' $found "$header" >&2
    status=1
  done
}

# all_but ALLOWED HEADER...: the headers whose names do not match the pattern.
all_but() {
  local allowed=$1
  shift
  printf '%s\n' "$@" | grep -vE "/($allowed)\.h\$"
}

say "checking the floors"
check_floor platform include/*.h src/*/*.h
# The model asks for the dates of standards and the identifiers of elements, nothing else.
model='VyrAnnStandard(XML.*|Changes|Script)'
check_floor src/model src/services/*.h src/conversion/*.h \
  $(all_but "$model|VyrDftStdPersistence|VyrDftXMLNodeID" include/*.h)
# The services have files classified by the reader and search the table of the old parameter set.
check_floor src/services $(all_but VyrDrwParseKeywordTable src/conversion/*.h) \
  include/VyrDrwParseStandardUpgradeOptions.h
check_floor tools src/*/*.h platform/src/*.h
if grep -ln 'libxml' include/*.h platform/include/*.h; then
  printf 'error: the headers above show libxml2 to callers\n' >&2
  status=1
fi
exit $status
