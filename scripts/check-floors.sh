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

# Headers that callers of each floor see, beside those of its own folder.
services="include/StdPath.h include/XPath.h include/VyrDftXMLNodeIterator.h"
conversion="include/VyrDrwParseStandard.h include/VyrDrwParseStandardUpgradeOptions.h"

say "checking the floors"
check_floor platform include/*.h src/*/*.h
# The model asks for the dates of standards and the identifiers of elements, nothing else.
check_floor src/model src/services/*.h src/conversion/*.h $services $conversion
check_floor src/services src/conversion/*.h
check_floor tools src/*/*.h platform/src/*.h
if grep -ln 'libxml' include/*.h platform/include/*.h; then
  printf 'error: the headers above show libxml2 to callers\n' >&2
  status=1
fi
exit $status
