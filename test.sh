#!/usr/bin/env bash
# Installs what is missing, builds and runs all tests.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/prepare.sh

require_packages $packages_test
build_preset test
say "testing"
ctest --preset test "$@"
