#!/usr/bin/env bash
# Times the upgrade of many standards at once: with one job and with one a processor. Makes 1,000
# standards of sites, 100 with --quick, of the shipped texts at old versions, each with a
# parameter of its own.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

count=1000
case "${1:-}" in
  "") ;;
  --quick) count=100 ;;
  *) fail "usage: scripts/bench-batch.sh [--quick]" ;;
esac

require_packages $packages_build
build_preset release
holstd=build/release/bin/holstd
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

say "making $count standards"
mkdir "$work/seeds" "$work/sites"
for name in ISO JIS ANSI ASME; do
  for version in 1 60 100 150 210; do
    "$holstd" -q convert "standards/legacy/$name.txt" -o "$work/seeds/$name-$version.xml" \
      --to "$version"
  done
done
seeds=("$work"/seeds/*.xml)
for ((i = 0; i < count; ++i)); do
  # A parameter of its own, before the end of the document.
  sed "\$i <std:node name=\"Site\"><std:intval>$i</std:intval></std:node>" \
    "${seeds[i % ${#seeds[@]}]}" >"$work/sites/site-$(printf %04d "$i").xml"
done

# seconds JOBS: how long all take with so many jobs.
seconds() {
  local start end
  rm -rf "$work/upgraded"
  start=$(date +%s%N)
  "$holstd" -q upgrade "$work/sites" -d "$work/upgraded" --jobs "$1" >/dev/null
  end=$(date +%s%N)
  [ "$(find "$work/upgraded" -name '*.xml' | wc -l)" -eq "$count" ] || fail "not all were upgraded"
  awk "BEGIN { printf \"%.3f\", ($end - $start) / 1e9 }"
}

# Once for the disk's sake, so that neither run finds a colder one.
seconds 1 >/dev/null
jobs=$(nproc)
one=$(seconds 1)
all=$(seconds "$jobs")
awk -v count="$count" -v jobs="$jobs" -v one="$one" -v all="$all" 'BEGIN {
  if (!(one > 0 && all > 0)) exit 1
  printf "%-32s %10s %12s\n", "upgrade of " count " standards", "seconds", "files/s"
  printf "%-32s %10.2f %12.1f\n", "1 job", one, count / one
  printf "%-32s %10.2f %12.1f\n", jobs (jobs == 1 ? " job" : " jobs"), all, count / all
  printf "%-32s %10.2f\n", "speed-up", one / all
}'
