#!/usr/bin/env bash
# Installs what is missing, builds the tool and does the main job on real input: an old text
# standard becomes an XML standard, is asked for values, edited and checked.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/prepare.sh

require_packages $packages_build
build_preset release

output=build/demo
mkdir -p "$output"
PATH="$PWD/build/release/bin:$PATH"

# Shows a command, then what it prints.
run() {
  printf '\n$ %s\n' "$*"
  "$@"
}

run holstd convert standards/legacy/ISO.txt -o "$output/ISO.xml"
run holstd info "$output/ISO.xml"
run holstd get "$output/ISO.xml" Dimension.ParentStandard
run holstd get "$output/ISO.xml" Dimension.DIMLTail
run holstd edit "$output/ISO.xml" -o "$output/site.xml" -v \
  -c "change Root.Dimension.DIMLTail:12.5" \
  -c "node Root:Site" \
  -c "value Root.Site:Owner:string:Gearbox design office"
run holstd tree "$output/site.xml" Root.Site
run holstd get "$output/site.xml" Dimension.DIMLTail
run holstd check "$output/ISO.xml" "$output/site.xml"
say "the standards are in $output"
