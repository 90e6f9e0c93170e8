#!/usr/bin/env bash
# Makes the Debian packages in build/release/packages from the release build.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

require_packages $packages_package
build_preset release
say "making packages"
# The same sources give the same packages: their files are as old as the last change of the sources.
if [ -z "${SOURCE_DATE_EPOCH:-}" ] && changed=$(git log -1 --format=%ct 2>/dev/null); then
  export SOURCE_DATE_EPOCH=$changed
fi
rm -rf build/release/packages
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! cpack --preset release >"$log" 2>&1; then
  tail -n 40 "$log" >&2
  fail "the packages could not be made"
fi
rm -rf build/release/packages/_CPack_Packages
ls build/release/packages/*.deb
