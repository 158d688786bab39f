# Wine for the programs of one Windows build. Sourced.

# use_wine FOLDER: sets `wine`, and the environment that it needs, for what the Windows build put
# into the folder. What Wine keeps lies beside it, in a folder of its own, which is made where there
# is none; the lock is for programs of several tests that start at once.
use_wine() {
  folder=$(cd "$1" && pwd)
  export WINEPREFIX=$folder/../wine WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml=
  [ -n "${ALL_PROCESSORS:-}" ] || take_one_processor
  # 32-bit programs run on the system's Wine where it has its 32-bit half, else on the one that
  # scripts/wine32.sh unpacked.
  local unpacked=$folder/../../wine32
  wine=wine
  if [[ $folder == *windows32* && ! -x /usr/lib/wine/wine ]]; then
    export WINEARCH=win32
    export LD_LIBRARY_PATH=$unpacked/lib/i386-linux-gnu:$unpacked/usr/lib/i386-linux-gnu
    wine=$unpacked/usr/lib/wine/wine
  fi
  exec 9>"$folder/../wine.lock"
  [ -f "$WINEPREFIX/system.reg" ] || make_prefix
}

# What a program asks of the system, Wine's server answers. On two processors each wakes the other,
# which takes longer than the answer, so a width's programs stay with its server on one: 64 bit on
# the first that there is, 32 bit on the last. Tests of what happens at once set ALL_PROCESSORS.
take_one_processor() {
  local allowed
  allowed=$(LC_ALL=C taskset -cp $$ 2>/dev/null) || return 0
  allowed=${allowed##*: }
  local one=${allowed%%[-,]*}
  [[ $folder != *windows32* ]] || one=${allowed##*[-,]}
  taskset -cp "$one" $$ >/dev/null 2>&1 || true
}

make_prefix() {
  flock 9
  [ ! -f "$WINEPREFIX/system.reg" ] || return 0
  timeout 300 "$wine" wineboot -i >/dev/null 2>&1 || {
    wineserver -k
    rm -rf "$WINEPREFIX"
    echo "Wine could not make $WINEPREFIX" >&2
    exit 1
  }
  wineserver -w
  flock -u 9
}

# Lets Wine's server stay for a while, for tests that start one program upon the other. What Wine
# starts beside a first program stays as long, and keeps that program's streams open: whoever reads
# them to their end would wait for the server. So the first is one that nobody reads. Where it does
# not come to its end, Wine is started again, which `wine.log` beside its folder tells.
keep_wine() {
  flock 9
  # Refused where the server is there already.
  if wineserver -p300 2>/dev/null 9>&-; then
    local try=1
    until timeout -k 5 120 "$wine" cmd /c exit </dev/null >/dev/null 2>&1 9>&-; do
      echo "$(date '+%F %T') Wine did not start within 120 s (try $try)" >>"$folder/../wine.log"
      wineserver -k || true
      [ $((try++)) -lt 3 ] || {
        echo "Wine did not start in $WINEPREFIX, three times" >&2
        exit 1
      }
      wineserver -p300 2>/dev/null 9>&- || true
    done
  fi
  flock -u 9
}
