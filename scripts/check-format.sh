#!/usr/bin/env bash
# Fails when a source is not formatted as .clang-format says.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

require_packages clang-format
say "checking the format"
find include platform src tools tests bench fuzz examples -name '*.cpp' -o -name '*.h' |
  xargs clang-format --dry-run --Werror
