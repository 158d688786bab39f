# What the project needs of Debian, and how it gets it. Sourced by ./demo and ./test.

# To build every program, the tests included.
build_packages=(
  cmake ninja-build g++ libsqlite3-dev unixodbc-dev nlohmann-json3-dev libcli11-dev libfmt-dev
  libgtest-dev libgmock-dev libbenchmark-dev
)
# To run the checks: those that are no C++, and those of the ODBC connection.
check_packages=(python3 clang-format libsqliteodbc tdsodbc)
# To build the automation server for Windows and run it: compilers, the IDL compiler and its
# headers, Wine, and GoogleTest's sources. SQLite's source comes through npm.
windows_packages=(
  g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools libwine-dev wine wine64
  googletest npm
)
# Only for `./test --lint`.
lint_packages=(clang-tidy)

is_installed() {
  [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# npm may come from elsewhere than Debian.
provides() {
  [ "$1" = npm ] && command -v npm >/dev/null
}

# ensure_packages NAME…: installs those that are missing and says which; silent when none is.
ensure_packages() {
  local package missing=()
  if ! command -v dpkg-query >/dev/null; then
    echo "This is no Debian: make sure that the counterparts of these are installed: $*" >&2
    return 0
  fi
  for package in "$@"; do
    is_installed "$package" || provides "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0

  local as_root=()
  if [ "$(id -u)" != 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "Missing Debian packages; as root, run: apt-get install ${missing[*]}" >&2
      return 1
    fi
    as_root=(sudo)
  fi

  echo "Installing Debian packages: ${missing[*]}"
  local log
  log=$(mktemp)
  if ! { "${as_root[@]}" apt-get update &&
         "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
             apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    tail -n 15 "$log" >&2
    rm -f "$log"
    echo "apt-get could not install: ${missing[*]}" >&2
    return 1
  fi
  rm -f "$log"
}

# Configures the release preset once; later builds configure again by themselves where needed.
configure_release() {
  [ -f build/release/build.ninja ] || cmake --preset release >/dev/null
}

# 32-bit Wine, for the tests of the 32-bit server: the system's own, else unpacked beside the
# system. Says why where it cannot be had.
provide_wine32() {
  [ -x /usr/lib/wine/wine ] || scripts/wine32.sh build/wine32
}

# Builds the automation server, the reference host's module and their tests for Windows, for 64 and
# for 32 bits: what 32-bit Wine would run must not break unseen where there is none.
build_for_windows() {
  local preset
  for preset in windows64 windows32; do
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" -j "$(nproc)"
  done
}
