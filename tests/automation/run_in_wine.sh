#!/usr/bin/env bash
# Runs a Windows program under Wine, with the automation server and the reference host registered.
#
#   run_in_wine.sh FOLDER PROGRAM [ARGUMENT…]
#
# With ALL_PROCESSORS in the environment, PROGRAM may run on more than one processor. With
# LARGEST_FILE, it can make no file larger than so many bytes.
#
# FOLDER is where the Windows build put its programs. Registration and all else that Wine keeps lies
# beside it, in a folder of its own.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/wine.sh"
use_wine "$1"
shift

# Programs of several tests start at once: one of them registers.
flock 9
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
if [ -n "${LARGEST_FILE:-}" ]; then
  trap '' XFSZ
  prlimit --fsize="$LARGEST_FILE" --pid $$
fi
"$wine" "$@" 2> >(grep -v -E "$chatter" >&2)
