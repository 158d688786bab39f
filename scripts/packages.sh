# What the project needs of Debian, and how it gets it. Sourced by ./demo and ./test.

# To build tavcc. The driver manager's headers are among it, since tavcc knows SQL Servers too, and
# clang, which compiles the tests in less than half of g++'s time.
build_packages=(
  cmake ninja-build clang libsqlite3-dev unixodbc-dev nlohmann-json3-dev libcli11-dev libfmt-dev
  libedit-dev
)
# To build the tests, and the benchmarks, which a check knows as sources of something.
test_packages=(libgtest-dev libgmock-dev libbenchmark-dev)
# To make Debian packages: what CPack finds out with what a program depends on.
packaging_packages=(dpkg-dev file)
# To run the checks: those that are no C++, those of the packages, and those of the ODBC connection.
check_packages=(python3 clang-format "${packaging_packages[@]}" libsqliteodbc tdsodbc)
# To build the automation server for Windows and run it: the compilers' libraries, the linker, the
# IDL compiler and its headers, Wine, and GoogleTest's sources. SQLite's source comes through npm.
windows_packages=(
  g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools lld llvm libwine-dev wine
  wine64 googletest locales npm
)
# To look at the pages of `--html` in a browser, with a font for what they say: 300 MB, and more
# with what comes with it. Only ./test --all installs it; without it that one test is skipped.
browser_packages=(chromium fonts-noto-cjk)
# Only for `./test --all`: what the Debian packages are judged with, and a clean root for them.
package_test_packages=(lintian debootstrap)
# Only for `./test --lint`.
lint_packages=(clang-tidy)

is_installed() {
  [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# npm may come from elsewhere than Debian.
provides() {
  [ "$1" = npm ] && command -v npm >/dev/null
}

# find_missing NAME…: sets `missing` to those that are not installed.
find_missing() {
  local package
  missing=()
  command -v dpkg-query >/dev/null || return 0
  for package in "$@"; do
    is_installed "$package" || provides "$package" || missing+=("$package")
  done
}

# become_root NAME…: sets `as_root` to what apt-get is led by. Where any of the packages is missing,
# asks for a password now if one is needed, so that installing does not ask later.
become_root() {
  local missing
  as_root=()
  if ! command -v dpkg-query >/dev/null; then
    echo "This is no Debian: make sure that the counterparts of these are installed: $*" >&2
    return 0
  fi
  find_missing "$@"
  [ ${#missing[@]} -gt 0 ] && [ "$(id -u)" != 0 ] || return 0
  if ! command -v sudo >/dev/null; then
    echo "Missing Debian packages; as root, run: apt-get install ${missing[*]}" >&2
    return 1
  fi
  as_root=(sudo)
  sudo -v
}

# ensure_packages NAME…: installs those that are missing and says which; silent when none is. After
# become_root.
ensure_packages() {
  local missing log
  find_missing "$@"
  [ ${#missing[@]} -gt 0 ] || return 0
  echo "Installing Debian packages: ${missing[*]}"
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
