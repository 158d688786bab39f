# How ./demo and ./test configure and build. Sourced by both, in the repository's folder.

# What compiling from nothing takes of one processor, in seconds: the figures of docs/building.md.
tavcc_seconds=235
windows_seconds=130

# How many tests run at a time: one more than processors, since those under Wine wait for their
# server.
test_jobs=$(($(nproc) + 1))

# announce WHAT SECONDS: says that something is built, and about how long it takes on this machine's
# processors.
announce() {
  local processors minutes
  processors=$(nproc)
  minutes=$((($2 / processors + 59) / 60))
  echo "Building $1: about $minutes minute$([ "$minutes" = 1 ] || echo s) on $processors" \
       "processor$([ "$processors" = 1 ] || echo s) the first time …"
}

# configure PRESET OPTION…: silent unless it fails.
configure() {
  local output
  output=$(cmake --preset "$@" 2>&1) || {
    printf '%s\n' "$output" >&2
    return 1
  }
}

# build_into LOG PRESET TARGET…: builds with the compiler's output in a log; on a terminal, a line
# shows how far it is. A failure shows the end of the log.
build_into() {
  local log=$1 preset=$2 line
  shift 2
  mkdir -p "$(dirname "$log")"
  if ! cmake --build --preset "$preset" --target "$@" 2>&1 | while IFS= read -r line; do
         printf '%s\n' "$line" >&3
         # "[17/203] Building CXX object …/bind_query.cpp.o"
         if [ -t 2 ] && [[ $line == \[*\]* ]]; then
           printf '\r\033[K%s %s' "${line%%]*}]" "${line##*/}" >&2
         fi
       done 3>"$log"; then
    [ ! -t 2 ] || printf '\r\033[K' >&2
    tail -n 40 "$log" >&2
    echo "The build failed; all of it is in $log" >&2
    return 1
  fi
  [ ! -t 2 ] || printf '\r\033[K' >&2
}

# 32-bit Wine, for the tests of the 32-bit server: the system's own, else unpacked beside the
# system. Says why where it cannot be had.
provide_wine32() {
  [ -x /usr/lib/wine/wine ] || scripts/wine32.sh build/wine32
}
