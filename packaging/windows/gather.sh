#!/usr/bin/env bash
# Puts what the programs need to start beside those in a folder: Qt, its plugins, the compiler's
# libraries. QUOVANE_WINDOWS_PREFIX names the folder that Qt was installed into.
#   gather.sh FOLDER
set -euo pipefail

target=$1
prefix=${QUOVANE_WINDOWS_PREFIX:?names the folder with Qt for Windows}
compiler=$(dirname "$(x86_64-w64-mingw32-g++-posix -print-file-name=libstdc++-6.dll)")
threads=/usr/x86_64-w64-mingw32/lib/libwinpthread-1.dll

# Libraries that the programs and the libraries themselves name, as far as they are Qt's.
needed() {
    x86_64-w64-mingw32-objdump -p "$@" | sed -n 's/.*DLL Name: \(Qt6.*\)/\1/p' | sort -u
}

cp -u "$compiler/libstdc++-6.dll" "$compiler/libgcc_s_seh-1.dll" "$threads" "$target/"
for _ in 1 2 3; do
    for library in $(needed "$target"/*.exe "$target"/Qt6*.dll 2>/dev/null); do
        cp -u "$prefix/bin/$library" "$target/"
    done
done
for plugins in platforms styles imageformats; do
    [ -d "$prefix/plugins/$plugins" ] || continue
    mkdir -p "$target/$plugins"
    cp -u "$prefix/plugins/$plugins"/*.dll "$target/$plugins/"
done
