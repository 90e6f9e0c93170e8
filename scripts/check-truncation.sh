#!/usr/bin/env bash
# Cuts a shipped standard off after every byte and expects each piece to be refused; the ordinary
# tests do so after some bytes only.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

require_packages $packages_test
build_preset test
say "cutting standards/ISO.xml after each of its bytes"
tests=build/test/bin/hol_platform_tests
filter='--gtest_filter=*ShippedStandardCutAtAnyByte*'
# A filter that nothing matches passes.
"$tests" "$filter" --gtest_list_tests | grep -q '^  ' || fail "there is no test for $filter"
HOL_TRUNCATE_AT_EVERY_BYTE=1 "$tests" "$filter"
