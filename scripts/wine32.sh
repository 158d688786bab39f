#!/usr/bin/env bash
# Unpacks 32-bit Wine beside the system, so that the 32-bit server runs its tests where only the
# 64-bit Wine is installed. Nothing is installed and no setting of the system changes: Debian's
# packages are downloaded with lists of their own, unpacked, and Wine is told where its loader is.
#
#   wine32.sh FOLDER
#
# Afterwards FOLDER/usr/lib/wine/wine runs, with FOLDER's two library folders in LD_LIBRARY_PATH
# (see tests/automation/run_in_wine.sh). Exit status 1, with one line that says why, where the
# packages cannot be had; harmless to call again.
set -euo pipefail
mkdir -p "$1"
folder=$(cd "$1" && pwd)
wine=$folder/usr/lib/wine/wine

give_up() {
  echo "$*" >&2
  exit 1
}

version=$(dpkg-query -W -f='${Version}' libwine 2>/dev/null) || give_up "Wine is no Debian package here"
# The folder's own path is written into the loader.
made="$version in $folder"
[ "$(cat "$folder/made" 2>/dev/null)" != "$made" ] || exit 0
rm -rf "${folder:?}"/*

# Package lists of its own, for i386 alone and with nothing installed.
apt=$folder/apt
mkdir -p "$apt/lists/partial" "$apt/archives/partial"
: >"$apt/status"
cat >"$apt/apt.conf" <<END
APT::Architecture "i386";
APT::Architectures { "i386"; };
Dir::State "$apt";
Dir::State::status "$apt/status";
Dir::Cache "$apt";
END
# A list that cannot be had (of another vendor, or one that changes just now) need not be the one
# that is wanted: what counts is whether the packages come.
apt-get -c "$apt/apt.conf" update >"$apt/log" 2>&1 || true
cd "$apt/archives"
# The libraries are those without which Wine does not start. Not FreeType, although Wine asks for
# it: without fonts to go with it, its desktop does not come up and is started again and again.
apt-get -c "$apt/apt.conf" download "wine32=$version" "libwine=$version" libc6 libgcc-s1 \
  libstdc++6 libunwind8 liblzma5 patchelf >>"$apt/log" 2>&1 ||
  give_up "32-bit Wine $version cannot be downloaded: $(tail -n 1 "$apt/log")"
for package in *.deb; do dpkg -x "$package" "$folder"; done

# The loader's own path stands in programs; here it is another.
loader=$folder/lib/ld-linux.so.2
libraries=$folder/lib/i386-linux-gnu:$folder/usr/lib/i386-linux-gnu
"$loader" --library-path "$libraries" "$folder/usr/bin/patchelf" --set-interpreter "$loader" \
  "$wine" 2>>"$apt/log" || give_up "this machine does not run 32-bit programs"
# Wine's postinst makes this of libz-mingw-w64; the 64-bit package has done it already, for both.
cp /usr/lib/x86_64-linux-gnu/wine/i386-windows/zlib1.dll \
  "$folder/usr/lib/i386-linux-gnu/wine/i386-windows/"
rm -rf "$apt" "${folder:?}/usr/share/doc"
LD_LIBRARY_PATH=$libraries "$wine" --version >/dev/null || give_up "32-bit Wine does not start"
echo "$made" >"$folder/made"
