#!/usr/bin/env bash
# Runs the fuzzers, each for a while: fuzz.sh [SECONDS [TARGET...]]. What they find is written to
# build/fuzz/found; keep it in fuzz/corpus/TARGET once it is mended.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

require_packages $packages_build clang-16 libclang-rt-16-dev
build_preset fuzz
seconds=${1:-900}
[ $# -gt 0 ] && shift
[ $# -gt 0 ] || set -- $(cd fuzz && ls *.cpp | sed 's/\.cpp$//' | grep -v replay)

# Names that standards use, so that documents which mean something are tried.
words=build/fuzz/words.dict
cat src/conversion/tables/*.txt | grep -o '[A-Za-z][A-Za-z0-9_]*' | sort -u | sed 's/.*/"&"/' >"$words"
printf '"%s"\n' std: :node :enumdef :typedef :typeval :strval :intval :floatval :enumval :colorval \
  'name=\x22' 'xmlns:std=\x22http://schemas.hol-standard.example/drafting/std\x22' >>"$words"

status=0
for target in "$@"; do
  found=build/fuzz/found/$target
  grown=build/fuzz/grown/$target
  mkdir -p "$found" "$grown"
  say "fuzzing $target for $seconds seconds"
  build/fuzz/bin/fuzz_"$target" -max_total_time="$seconds" -dict="$words" -timeout=20 \
    -rss_limit_mb=4096 -print_final_stats=1 -verbosity=0 -artifact_prefix="$found/" \
    "$grown" fuzz/corpus/"$target" || status=1
done
exit $status
