#!/usr/bin/env bash
# Builds and runs the benchmarks; arguments go to the benchmark program.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

require_packages $packages_bench
build_preset bench
build/bench/bin/hol_bench "$@"
