#!/usr/bin/env bash
# tavcc.exe under Wine, for the command line's tests, which know one program and its arguments.
#
#   TAVCC_WINDOWS_FOLDER=FOLDER tavcc_in_wine.sh [ARGUMENT…]
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/wine.sh"
use_wine "$TAVCC_WINDOWS_FOLDER"
exec 9>&-
# Tests come one upon the other: what Wine starts for the first of them stays a while.
wineserver -p300 2>/dev/null || true
[ "$wine" != wine ] || exec wine "$folder/tavcc.exe" "$@"
# The unpacked Wine has no FreeType, and says so.
exec 8>&2 2> >(sed -u '/^Wine cannot find the FreeType/,/^http:..www.freetype.org$/d' >&8)
filter=$!
status=0
"$wine" "$folder/tavcc.exe" "$@" || status=$?
exec 2>&8
wait "$filter" || true
exit $status
