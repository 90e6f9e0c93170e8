#!/usr/bin/env bash
# Makes the reference of the installed headers in build/reference/html. Fails when a public name is
# not documented or a comment names what does not exist.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

require_packages doxygen
say "making the reference"
rm -rf build/reference
mkdir -p build/reference
doxygen docs/Doxyfile || fail "the reference has warnings"
say "build/reference/html/index.html"
