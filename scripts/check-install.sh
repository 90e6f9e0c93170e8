#!/usr/bin/env bash
# Fails when an installed tree does not serve once it has been moved: the example is built from it
# alone and must print what the tutorial says, a program is built by what pkg-config says, the tool
# must run with the library beside it.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

grep -qxF "apt install $packages_build" README.md ||
  fail "README.md does not name the packages that the build needs: apt install $packages_build"
require_packages $packages_build $packages_use
build_preset release
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
first=$folder/first
tree=$folder/moved/elsewhere

say "installing and moving the installed tree"
cmake --install build/release --prefix "$first" >/dev/null
mkdir "$folder/moved"
mv "$first" "$tree"

# Nothing in it may lead back to where it was built or installed.
if grep -rl -e "$first" "$tree" || grep -rlI -e "$PWD" "$tree"; then
  fail "the files above name folders of this machine"
fi
for binary in "$tree"/bin/* $(find "$tree" -name '*.so'); do
  if readelf -d "$binary" | grep -E 'R(UN)?PATH' | grep -v '\[\$ORIGIN/'; then
    fail "$binary looks for libraries in a folder of its own"
  fi
done

say "running the moved tool"
ldd "$tree/bin/holstd" | grep "libHolStandardInfra.*$tree/" >/dev/null ||
  fail "the tool does not load the library beside it"
"$tree/bin/holstd" check "$tree"/share/HolStandardInfra/standards/*.xml

scripts/build-example.sh "$tree" "$folder/example"
mkdir "$folder/work"
# Only the moved tree may serve the standards, whatever the environment of this run says.
unset VYR_STANDARD_PATH
export WOB_ODT_OUT="$folder/work"
"$folder/example/drafting_module" >"$folder/output.txt"
cmp "$folder/work/ISO.xml" "$tree/share/HolStandardInfra/standards/ISO.xml"
scripts/check-tutorial.sh "$folder/output.txt"

say "building a program by pkg-config, by the line of the README"
libraries=$(dirname "$(find "$tree" -name libHolStandardInfra.so)")
export PKG_CONFIG_PATH="$libraries/pkgconfig"
line=$(grep '^c++ .* module\.cpp ' README.md || true)
[ -n "$line" ] || fail "README.md does not say how a module is built without CMake"
cp tests/package/across_boundary.cpp "$folder/module.cpp"
(cd "$folder" && eval "$line" && ./module)
[ -f "$(pkg-config --variable=standardsdir HolStandardInfra)/ISO.xml" ] ||
  fail "pkg-config does not lead to the standards"
