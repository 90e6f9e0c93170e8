#!/usr/bin/env bash
# check-docs.sh [--bin FOLDER] [--standards FOLDER] [--print] [DOC...]: fails when a command in a
# document prints other than the document says. Without DOC all documents are checked.
#
# The commands of a document's "console" blocks run one after the other in a new folder, which holds
# a copy of standards/ and the files that the document itself shows ("```xml site.xml"). A line "..."
# stands for any number of lines; blank lines at the end of an output do not count.
#
# Commands stand in no other blocks, but for "```sh by-hand": what root does, or what needs the
# sources, an installation or a module of the reader's. Those are listed, and other checks run them.
#
#   --bin FOLDER        takes the tool from FOLDER and builds nothing
#   --standards FOLDER  takes that copy of standards/, as a package brings it
#   --print             prints the document with what its commands print now, for whoever writes it
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

bin=
standards=$PWD/standards
is_printing=
while [ $# -gt 0 ]; do
  case $1 in
    --bin) bin=$(realpath "$2"); shift 2 ;;
    --standards) standards=$(realpath "$2"); shift 2 ;;
    --print) is_printing=1; shift ;;
    -*) fail "$1 is no option; there are --bin FOLDER, --standards FOLDER and --print" ;;
    *) break ;;
  esac
done
[ $# -gt 0 ] || set -- README.md docs/*.md

# The examples filter JSON with jq, as their readers do.
require_packages jq >&2
if [ -z "$bin" ]; then
  require_packages $packages_build >&2
  build_preset release >&2
  bin=$PWD/build/release/bin
fi

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# run_steps STEPS FOLDER: runs N.command and writes N.output, in one shell.
run_steps() (
  steps=$1
  cd "$2"
  export PATH="$bin:$PATH" HOME="$2/.home" LC_ALL=C.UTF-8 TERM=dumb WOB_ODT_OUT="$2"
  unset VYR_STANDARD_PATH VyrTemp NO_COLOR XDG_CACHE_HOME XDG_DATA_HOME XDG_STATE_HOME
  set +euo pipefail
  status=0
  for ((step = 1; ; ++step)); do
    [ -e "$steps/$step.command" ] || break
    command=$(<"$steps/$step.command")
    (exit "$status")
    eval "$command" >"$steps/$step.output" 2>&1 </dev/null
    status=$?
  done
)

# is_as_expected EXPECTED OUTPUT
is_as_expected() {
  awk '
    function is_run(e, n, g,  i) {
      if (g + n - 1 > got) return 0
      for (i = 0; i < n; i++) if (E[e + i] != G[g + i]) return 0
      return 1
    }
    # Lines between two "..." are looked for from where the ones before them end.
    function is_match(  e, g, n, is_fixed) {
      e = g = is_fixed = 1
      while (e <= expected) {
        if (E[e] == "...") { is_fixed = 0; e++; continue }
        for (n = 0; e + n <= expected && E[e + n] != "..."; ) n++
        if (!is_fixed && e + n > expected && got - n + 1 > g) g = got - n + 1
        while (!is_run(e, n, g)) if (is_fixed || g++ + n > got) return 0
        e += n; g += n; is_fixed = 1
      }
      return !is_fixed || g == got + 1
    }
    FILENAME == ARGV[1] { E[++expected] = $0; next }
    { G[++got] = $0 }
    END {
      while (expected > 0 && E[expected] == "") expected--
      while (got > 0 && G[got] == "") got--
      exit !is_match()
    }' "$1" "$2"
}

# check_document DOC: runs it and marks what differs; false when something does.
check_document() {
  local document=$1 steps=$scratch/steps folder=$scratch/run step line status=0
  rm -rf "$steps" "$folder"
  mkdir "$steps" "$folder"
  cp -r "$standards" "$folder/standards"
  awk -v mode=split -v steps="$steps" -f scripts/check-docs.awk "$document" >&2 || status=1
  run_steps "$steps" "$folder"
  for ((step = 1; ; ++step)); do
    [ -e "$steps/$step.command" ] || break
    is_as_expected "$steps/$step.expected" "$steps/$step.output" && continue
    status=1
    : >"$steps/$step.differs"
    [ -z "$is_printing" ] || continue
    line=$(<"$steps/$step.line")
    printf '%s:%d: %s\n' "$document" "$line" "$(head -n 1 "$steps/$step.command")" >&2
    diff -u --label "what the document says" "$steps/$step.expected" \
            --label "what is printed" "$steps/$step.output" >&2 || true
  done
  [ -z "$is_printing" ] || awk -v mode=print -v steps="$steps" -f scripts/check-docs.awk "$document"
  return $status
}

differing=0
for document in "$@"; do
  [ -n "$is_printing" ] || say "running the commands of $document"
  check_document "$document" || differing=$((differing + 1))
done
[ -n "$is_printing" ] || [ "$differing" -eq 0 ] || fail "$differing documents differ from the tool"
