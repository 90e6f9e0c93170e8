#!/usr/bin/env bash
# Installs what is missing, builds the tool and does the main job on real input: old standards become
# current ones, are asked for values, edited and checked. Then a drafting module, built from an
# installed library, reads a standard and styles an element.
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

# The four text standards of the old generation become current XML standards.
for name in ISO JIS ANSI ASME; do
  run holstd convert "standards/legacy/$name.txt" -o "$output/$name.xml"
done
run holstd info "$output/ISO.xml"
run holstd get "$output/ISO.xml" Dimension.ParentStandard
run holstd get "$output/ISO.xml" SheetFormat.Formats.Name --all

# A site's own standard of version 60: what the upgrade would do, then the upgrade.
site=tests/data/site-v60.xml
run holstd info "$site"
run holstd upgrade "$site" --dry-run >"$output/changes.txt" || true
run grep '^to ' "$output/changes.txt"
run holstd upgrade "$site" -o "$output/site.xml"
run holstd tree "$output/site.xml" Root.ViewsSet

# And an edit by path commands.
run holstd edit "$output/site.xml" --in-place --no-backup -v \
  -c "change Root.Dimension.DIMLTail:12.5" \
  -c "node Root:Site" \
  -c "value Root.Site:Owner:string:Gearbox design office"
run holstd get "$output/site.xml" Dimension.DIMLTail
run holstd check "$output"/*.xml standards/*.xml
say "the standards are in $output"

# The module of the tutorial. It works on a copy of the installed ISO, in a folder of its own.
rm -rf "$output/installed" "$output/work"
cmake --install build/release --prefix "$output/installed" >/dev/null
scripts/build-example.sh "$output/installed" "$output/example"
mkdir "$output/work"
export WOB_ODT_OUT="$PWD/$output/work"
run "$output/example/drafting_module"
