#!/usr/bin/env bash
# Runs a Windows program under Wine, with the automation server and the reference host registered.
#
#   run_in_wine.sh FOLDER PROGRAM [ARGUMENT…]
#
# FOLDER is where the Windows build put its programs. Registration and all else that Wine keeps lies
# beside it, in a folder of its own.
set -euo pipefail
folder=$(cd "$1" && pwd)
shift
export WINEPREFIX=$folder/../wine WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml=

# 32-bit programs run on the system's Wine where it has its 32-bit half, else on the one that
# scripts/wine32.sh unpacked.
wine=wine
unpacked=$folder/../../wine32
if [[ $folder == *windows32* && ! -x /usr/lib/wine/wine ]]; then
  export WINEARCH=win32
  export LD_LIBRARY_PATH=$unpacked/lib/i386-linux-gnu:$unpacked/usr/lib/i386-linux-gnu
  wine=$unpacked/usr/lib/wine/wine
fi

# Programs of several tests start at once: one of them prepares.
exec 9>"$folder/../wine.lock"
flock 9
if [ ! -f "$WINEPREFIX/system.reg" ]; then
  timeout 300 "$wine" wineboot -i >/dev/null 2>&1 || {
    wineserver -k
    rm -rf "$WINEPREFIX"
    echo "Wine could not make $WINEPREFIX" >&2
    exit 1
  }
  wineserver -w
fi
cd "$folder"
for module in TavReferenceHost.dll TavM_CC_PlugIns.dll; do
  # 64-bit Wine alone warns that its 32-bit half is missing; only the exit status tells anything.
  "$wine" regsvr32 /s "$module" >/dev/null 2>&1 || {
    echo "regsvr32 could not register $folder/$module" >&2
    exit 1
  }
done
flock -u 9
# Windows' own programs, such as cscript, are taken in the modules' width: where Wine has both, the
# 32-bit ones stand in a folder of their own.
narrow=$WINEPREFIX/drive_c/windows/syswow64
if [[ $folder == *windows32* && -f $narrow/$1.exe ]]; then
  program="C:\\windows\\syswow64\\$1.exe"
  shift
  set -- "$program" "$@"
fi
chatter="it looks like wine32 is missing|multiarch needs|failed to open"
chatter+="|FreeType|TrueType fonts|or equal to 2\.0\.5|freetype\.org"
"$wine" "$@" 2> >(grep -v -E "$chatter" >&2)
