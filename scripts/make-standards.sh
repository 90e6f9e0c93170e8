#!/usr/bin/env bash
# Makes the shipped standards anew from their text standards. Read the difference before you commit
# it: `git diff standards`.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

require_packages $packages_build
build_preset release
make_standard() {
  build/release/bin/holstd convert "standards/legacy/$1.txt" -o "standards/$2.xml" --shipped
}
make_standard ISO ISO
make_standard JIS JIS
make_standard ASME ANSI-ASME
