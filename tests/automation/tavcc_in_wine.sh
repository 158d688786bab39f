#!/usr/bin/env bash
# tavcc.exe under Wine, for the command line's tests, which know one program and its arguments, and
# send signals to it: this process becomes the program.
#
#   TAVCC_WINDOWS_FOLDER=FOLDER tavcc_in_wine.sh [ARGUMENT…]
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/wine.sh"
use_wine "$TAVCC_WINDOWS_FOLDER"
keep_wine
exec 9>&-
# The unpacked Wine has no FreeType, and says so.
[ "$wine" = wine ] ||
  exec 2> >(exec sed -u '/^Wine cannot find the FreeType/,/^http:..www.freetype.org$/d' >&2)
exec "$wine" "$folder/tavcc.exe" "$@"
