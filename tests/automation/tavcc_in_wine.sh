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
exec "$wine" "$folder/tavcc.exe" "$@"
