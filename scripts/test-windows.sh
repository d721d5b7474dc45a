#!/usr/bin/env bash
# Runs the tests for Windows under Wine: the system calls under the adapters, which need no Qt, and,
# when build-windows.sh has made its libraries, every test that does not need Linux, and whether both
# systems write the same files.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086
install_missing $wine_packages
trap '"$root/scripts/wine.sh" wineboot -e >/dev/null 2>&1 || true' EXIT

cd "$root"
cmake -G Ninja -S tests/windows -B build/windows-adapters \
    -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake" -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build/windows-adapters
"$root/scripts/wine.sh" build/windows-adapters/adapters.exe

if [ ! -e "$(windows_cache)/qt6-base.done" ]; then
    say "The program itself is not tested for Windows here: scripts/build-windows.sh libraries makes what it needs."
    exit
fi
"$root/scripts/build-windows.sh" programs
ctest --preset windows -j "$(nproc)"
configure_and_build dev qvdev
"$root/tests/windows/same-files.sh" "$root/build/dev/bin/qvdev" "$root/build/windows/bin/qvdev.exe"
