# Sourced by the scripts of this folder and of the one above: installs what the machine lacks.

# Debian packages by what needs them.
packages_build="g++ cmake ninja-build libxml2-dev libcli11-dev nlohmann-json3-dev"
packages_test="$packages_build libgtest-dev libgmock-dev locales"
packages_bench="$packages_build libbenchmark-dev libpugixml-dev"
packages_package="$packages_build dpkg-dev file"
packages_use="g++ cmake ninja-build pkg-config"
packages_check="$packages_test $packages_bench $packages_package $packages_use clang-format"

say() { printf '== %s\n' "$*"; }
fail() { printf 'error: %s\n' "$*" >&2; exit 1; }

# Prints those of the given packages that are not installed.
missing_packages() {
  local package
  for package in "$@"; do
    dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed ||
      printf '%s ' "$package"
  done
}

# require_packages PACKAGE...: installs the missing ones, or says how to.
require_packages() {
  command -v dpkg-query >/dev/null ||
    fail "this script installs Debian packages and there is no dpkg here; install the likes of: $*"
  local missing as_root log
  missing=$(missing_packages "$@")
  [ -z "$missing" ] && return 0
  if [ "$(id -u)" -eq 0 ]; then
    as_root="env"
  elif command -v sudo >/dev/null && { sudo -n true 2>/dev/null || [ -t 0 ]; }; then
    as_root="sudo env"
  else
    fail "missing packages; install them as root: apt-get install $missing"
  fi
  say "installing $missing"
  log=$(mktemp)
  if ! { $as_root apt-get -qq update &&
         $as_root DEBIAN_FRONTEND=noninteractive apt-get -qq -y --no-install-recommends \
           install $missing; } >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    rm -f "$log"
    fail "apt-get could not install: $missing"
  fi
  rm -f "$log"
}

# build_preset NAME: configures, with HOL_CMAKE_OPTIONS, and builds, quietly unless it fails.
build_preset() {
  local log
  say "building ($1)"
  log=$(mktemp)
  if ! { cmake --preset "$1" ${HOL_CMAKE_OPTIONS:-} && cmake --build --preset "$1"; } \
       >"$log" 2>&1; then
    tail -n 60 "$log" >&2
    rm -f "$log"
    fail "the build failed (preset $1)"
  fi
  rm -f "$log"
}
