#!/usr/bin/env bash
# Makes the packages for Windows out of what is built: a zip to unpack anywhere, and an installer.
# Both come to lie in build/windows/packages.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
build=$root/build/windows
out=$build/packages
version=$(sed -n 's/^project(QVDeveloper VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")
name=quovane-developer-$version-windows-x64

rm -rf "$out"
mkdir -p "$out/$name"
DESTDIR= cmake --install "$build" --strip --prefix "$out/$name" >/dev/null
"$here/gather.sh" "$out/$name"
x86_64-w64-mingw32-strip "$out/$name"/*.dll "$out/$name"/*/*.dll

(cd "$out" && zip -qr "$name.zip" "$name")

# What the uninstaller may delete: these files by name, then the folders that are empty by then.
(
    cd "$out/$name"
    find . -type f -printf 'Delete "$INSTDIR\\%P"\n' | tr / '\\'
    find . -mindepth 1 -depth -type d -printf 'RMDir "$INSTDIR\\%P"\n' | tr / '\\'
) >"$out/$name.uninstall.nsh"

# The picture beside the last page.
rsvg-convert -w 104 "$root/src/resources/icons/app.svg" |
    convert -size 164x314 'gradient:#16446f-#0b2440' - -gravity north -geometry +0+56 -composite \
        "BMP3:$out/picture.bmp"

size=$(du -sk "$out/$name" | cut -f1)
makensis -V2 -NOCD -INPUTCHARSET UTF8 "-DVERSION=$version" "-DPROGRAMS=$out/$name" "-DSIZE=$size" \
    "-DICON=$build/quovane.ico" "-DPICTURE=$out/picture.bmp" \
    "-DOUTPUT=$out/$name-setup.exe" "$here/installer.nsi"
rm -rf "${out:?}/$name" "$out/$name.uninstall.nsh" "$out/picture.bmp"
ls -l "$out" >&2
