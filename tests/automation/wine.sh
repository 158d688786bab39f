# Wine for the programs of one Windows build. Sourced.

# use_wine FOLDER: sets `wine`, and the environment that it needs, for what the Windows build put
# into the folder. What Wine keeps lies beside it, in a folder of its own, which is made where there
# is none; the lock is for programs of several tests that start at once.
use_wine() {
  folder=$(cd "$1" && pwd)
  export WINEPREFIX=$folder/../wine WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml=
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
