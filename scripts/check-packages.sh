#!/usr/bin/env bash
# Fails when the Debian packages do not serve: they are installed in a fresh Debian of the release of
# this machine, where the tool runs, the commands of the installed documents print what they say,
# programs are built by find_package and by pkg-config, and nothing is left when they are removed.
#
# A fresh Debian is made by root, by chroot and debootstrap. With --unpack the packages are unpacked
# into a folder instead: what they depend on is then not shown.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
[ "$#" -eq 0 ] || [ "$*" = --unpack ] || fail "usage: $0 [--unpack]"

# require_fresh_debian: says why no Debian of its own can be installed and entered here.
require_fresh_debian() {
  local otherwise="a fresh Debian cannot be made; --unpack shows what can be shown without one"
  [ "$(id -u)" -eq 0 ] || fail "this is not root: $otherwise"
  chroot / true || fail "chroot is not allowed here: $otherwise"
  unshare --mount --propagation private true || fail "nothing can be mounted here: $otherwise"
  (require_packages debootstrap) || fail "there is no debootstrap: $otherwise"
}

# In a mount namespace of its own whatever is mounted ends with the script, however it ends.
if [ "${1:-}" != --unpack ] && [ -z "${HOL_OWN_MOUNTS:-}" ]; then
  require_fresh_debian
  HOL_OWN_MOUNTS=1 exec unshare --mount --propagation private scripts/check-packages.sh
fi

scripts/make-packages.sh
packages=$PWD/build/release/packages
folder=$(mktemp -d)
root=$folder/root
# What is mounted below is no part of what is removed.
trap 'umount -R "$root" 2>/dev/null || true
      rm -rf --one-file-system "$folder"' EXIT
triplet=$(g++ -print-multiarch)

# quietly COMMAND...: shows what the command prints only when it fails.
quietly() {
  if ! "$@" >"$folder/log" 2>&1; then
    tail -n 40 "$folder/log" >&2
    fail "failed: $*"
  fi
}

inside() {
  chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 HOME=/root \
    DEBIAN_FRONTEND=noninteractive ${http_proxy:+http_proxy="$http_proxy"} \
    ${https_proxy:+https_proxy="$https_proxy"} "$@"
}
# install_inside PACKAGE...: by name; or a file of /packages by a pattern.
install_inside() {
  quietly inside sh -c "apt-get -qq -y --no-install-recommends install $*"
}

# The smallest Debian there is, which gets packages from where this machine does.
make_root() {
  local release mirror keyring
  release=$(. /etc/os-release && printf '%s' "$VERSION_CODENAME")
  mirror=$(apt-get indextargets --format '$(CODENAME) $(REPO_URI)' 'Created-By: Packages' |
    awk -v release="$release" '$1 == release { print $2; exit }')
  keyring=/usr/share/keyrings/debian-archive-keyring.gpg
  say "making a fresh $release"
  # In memory, as it does not last and installing waits for the disk all the time.
  mkdir "$root"
  mount -t tmpfs -o mode=755,size=4g fresh "$root"
  quietly debootstrap --variant=minbase --keyring="$keyring" "$release" "$root" \
    ${mirror:+"$mirror"}
  rm -rf "$root/etc/apt"
  cp -a /etc/apt "$root/etc/apt"
  cp -a /usr/share/keyrings/. "$root/usr/share/keyrings/"
  [ ! -f /etc/ssl/certs/ca-certificates.crt ] ||
    install -D /etc/ssl/certs/ca-certificates.crt "$root/etc/ssl/certs/ca-certificates.crt"
  cp -L /etc/resolv.conf /etc/hosts "$root/etc/"
  mount --rbind /dev "$root/dev"
  mount -t proc proc "$root/proc"
  quietly inside apt-get -qq update
}

# files_of_packages: what the packages hold, without the folders.
files_of_packages() {
  local package
  for package in "$packages"/*.deb; do
    dpkg-deb --fsys-tarfile "$package" | tar -t | grep -v '/$' | sed 's/^\.//'
  done
}

check_control() {
  say "checking what the packages say of themselves"
  local package field
  for package in "$packages"/*.deb; do
    for field in Package Version Architecture Maintainer Description Section; do
      [ -n "$(dpkg-deb -f "$package" $field)" ] || fail "$package has no field $field"
    done
    dpkg-deb --fsys-tarfile "$package" |
      tar -t "./usr/share/doc/$(dpkg-deb -f "$package" Package)/copyright" >/dev/null ||
      fail "$package does not say who may use it"
  done
  dpkg-deb -f "$packages"/libholstandardinfra[0-9]*.deb Depends | grep -q 'libxml2 (>=' ||
    fail "the library's package does not depend on what the library loads"
}

# check_tool RUNNER...: runs the installed tool.
check_tool() {
  say "running the installed tool"
  ! readelf -d "$root/usr/bin/holstd" | grep -E 'R(UN)?PATH' ||
    fail "the tool looks for libraries in a folder of its own"
  "$@" /usr/bin/holstd get /usr/share/HolStandardInfra/standards/ISO.xml Dimension.ParentStandard |
    grep -qx ISO || fail "the tool does not read the shipped ISO"
  "$@" /usr/bin/holstd standards >"$folder/standards.txt"
  grep -q ISO "$folder/standards.txt" || fail "the tool does not find the shipped standards"
}

check_files_beside_tool() {
  local file
  for file in man/man1/holstd.1 bash-completion/completions/holstd \
              zsh/vendor-completions/_holstd; do
    [ -f "$root/usr/share/$file" ] || [ -f "$root/usr/share/$file.gz" ] ||
      fail "/usr/share/$file is not installed"
  done
}

check_removal() {
  say "removing the packages"
  local package file names=()
  for package in "$packages"/*.deb; do names+=("$(dpkg-deb -f "$package" Package)"); done
  quietly inside apt-get -qq -y purge "${names[@]}"
  for file in $(files_of_packages); do
    [ ! -e "$root$file" ] || fail "$file is left behind"
  done
  [ ! -e "$root/usr/share/HolStandardInfra" ] || fail "the folder of the standards is left behind"
}

check_in_fresh_debian() {
  make_root
  mkdir "$root/packages" "$root/sources"
  cp "$packages"/*.deb "$root/packages/"
  say "installing the packages"
  install_inside '/packages/holstd_*.deb' '/packages/libholstandardinfra[0-9]*.deb' \
    '/packages/holstandardinfra-standards_*.deb'
  check_tool inside
  check_files_beside_tool
  # Of the sources only what runs the commands.
  cp -r scripts "$root/sources/"
  install_inside jq
  say "running the commands of the installed documents"
  quietly inside sh -c '/sources/scripts/check-docs.sh --bin /usr/bin \
    --standards /usr/share/HolStandardInfra/standards \
    /usr/share/doc/holstd/README.md /usr/share/doc/holstd/docs/*.md'

  install_inside '/packages/libholstandardinfra-dev_*.deb' $packages_use
  cp tests/package/across_boundary.cpp "$root/sources/"
  say "building by find_package"
  quietly inside cmake -B /build -G Ninja \
    -S /usr/share/doc/libholstandardinfra-dev/examples/drafting-module
  quietly inside cmake --build /build
  inside mkdir /work
  inside env WOB_ODT_OUT=/work /build/drafting_module >"$folder/output.txt"
  say "building by pkg-config"
  quietly inside sh -c 'g++ -std=c++20 -Wall -Wextra -Werror /sources/across_boundary.cpp \
    $(pkg-config --cflags --libs HolStandardInfra) -o /build/across_boundary'
  inside env WOB_ODT_OUT=/work /build/across_boundary
  check_removal
}

# here COMMAND...: runs what was unpacked; names below /usr are those of the folder.
here() {
  local program=$1
  shift
  env -u VYR_STANDARD_PATH LD_LIBRARY_PATH="$root/usr/lib/$triplet" "$root$program" \
    "${@/#\/usr/$root\/usr}"
}

check_in_folder() {
  say "unpacking into a folder; what the packages depend on is not shown"
  require_packages $packages_use
  mkdir -p "$root/var/lib/dpkg/"{info,updates,triggers}
  touch "$root/var/lib/dpkg/status" "$root/var/lib/dpkg/available"
  quietly dpkg --root="$root" --force-not-root --force-depends --force-bad-path \
    --log=/dev/null --unpack "$packages"/*.deb
  check_tool here
  check_files_beside_tool
  LD_LIBRARY_PATH="$root/usr/lib/$triplet" scripts/check-docs.sh --bin "$root/usr/bin" \
    --standards "$root/usr/share/HolStandardInfra/standards" "$root/usr/share/doc/holstd/README.md"

  export LD_LIBRARY_PATH="$root/usr/lib/$triplet" WOB_ODT_OUT="$folder/work"
  mkdir "$WOB_ODT_OUT"
  scripts/build-example.sh "$root/usr" "$folder/build"
  env -u VYR_STANDARD_PATH "$folder/build/drafting_module" >"$folder/output.txt"
  say "building by pkg-config"
  quietly env PKG_CONFIG_PATH="$root/usr/lib/$triplet/pkgconfig" sh -c 'g++ -std=c++20 -Wall \
    -Wextra -Werror tests/package/across_boundary.cpp \
    $(pkg-config --cflags --libs HolStandardInfra) -o "$0"' "$folder/build/across_boundary"
  env -u VYR_STANDARD_PATH "$folder/build/across_boundary"
}

check_control
if [ "${1:-}" = --unpack ]; then
  check_in_folder
else
  check_in_fresh_debian
fi
scripts/check-tutorial.sh "$folder/output.txt"
