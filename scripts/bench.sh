#!/usr/bin/env bash
# Builds and runs the benchmarks; arguments go to the benchmark program. Without any, or with --quick
# alone, the upgrade of many standards is timed, too.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

require_packages $packages_bench
build_preset bench
build/release/bin/hol_bench "$@"
case "$*" in
  "" | --quick) scripts/bench-batch.sh "$@" ;;
esac
