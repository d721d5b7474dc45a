#!/usr/bin/env bash
# Builds QV Developer for Windows with Debian's mingw-w64: a portable zip and an installer in
# build/windows/packages. Qt and the other libraries are built once, from Debian's own source
# packages, into a cache: 15 minutes on two cores, after that nothing.
#   ./scripts/build-windows.sh              everything
#   ./scripts/build-windows.sh libraries    the cache only
#   ./scripts/build-windows.sh programs     programs and tests, no packages
# QUOVANE_WINDOWS_CACHE names the cache; otherwise it is quovane-windows in the user's cache folder.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

cache=$(windows_cache)
prefix=$cache/prefix
sources=$cache/sources
export QUOVANE_WINDOWS_PREFIX=$prefix

# fetch PACKAGE: unpacks its sources into $sources/PACKAGE; apt keeps its lists in the cache, so that
# neither the system's sources nor an administrator are needed.
fetch() {
    [ -d "$sources/$1" ] && return 0
    local apt=$cache/apt suite
    suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
    mkdir -p "$apt/lists/partial" "$apt/archives/partial" "$sources"
    echo "deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] http://deb.debian.org/debian $suite main" \
        >"$apt/sources.list"
    local get=(apt-get -q -o "Dir::Etc::SourceList=$apt/sources.list" -o Dir::Etc::SourceParts=/dev/null
        -o "Dir::State::Lists=$apt/lists" -o "Dir::Cache=$apt" -o APT::Sandbox::User= )
    [ -n "$(ls "$apt/lists"/*Sources* 2>/dev/null)" ] || "${get[@]}" update >"$cache/apt.log" 2>&1
    local work=$cache/fetch
    rm -rf "$work"
    mkdir "$work"
    say "Fetching the sources of $1"
    (
        cd "$work"
        # Debian's own changes are wanted, but not needed: some mirrors have the original alone.
        "${get[@]}" source "$1" >>"$cache/apt.log" 2>&1 || {
            rm -rf ./*/
            "${get[@]}" source --download-only --tar-only "$1" >>"$cache/apt.log" 2>&1
            tar xf ./*.orig.tar.*
        }
        mv ./*/ "$sources/$1"
    ) || {
        tail -n 5 "$cache/apt.log" >&2
        say "The sources of $1 could not be fetched."
        return 1
    }
    rm -rf "$work"
}

# once NAME COMMAND...: runs it unless it was done for this cache; what it says goes to NAME.log.
once() {
    local name=$1
    shift
    [ -e "$cache/$name.done" ] && return 0
    say "Building $name for Windows; $cache/$name.log tells how it goes"
    "$@" >"$cache/$name.log" 2>&1 || {
        tail -n 20 "$cache/$name.log" >&2
        return 1
    }
    touch "$cache/$name.done"
}

with_cmake() {
    local name=$1
    shift
    local work=$cache/build/$name
    cmake -G Ninja -S "$sources/$name" -B "$work" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake" \
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" \
        -DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache "$@"
    cmake --build "$work"
    cmake --install "$work" --strip
    rm -rf "$work"
}

libdeflate() {
    cd "$sources/libdeflate"
    make CC=x86_64-w64-mingw32-gcc-posix AR=x86_64-w64-mingw32-ar libdeflatestatic.lib
    mkdir -p "$prefix/include" "$prefix/lib"
    cp libdeflate.h "$prefix/include/"
    cp libdeflatestatic.lib "$prefix/lib/libdeflate.a"
}

# Its compiler of stemmers runs here, what it makes is compiled for Windows.
libstemmer() {
    cd "$sources/snowball"
    make -j"$(nproc)" snowball
    make -j"$(nproc)" -o snowball CC=x86_64-w64-mingw32-gcc-posix AR=x86_64-w64-mingw32-ar libstemmer.a
    mkdir -p "$prefix/include" "$prefix/lib"
    cp include/libstemmer.h "$prefix/include/"
    cp libstemmer.a "$prefix/lib/"
}

# Debian leaves out of the sources what accessibility, tablets and SQL need. Compiled regular
# expressions are off: with mingw-w64, freeing their stack crashes where a thread ends.
qt_options=(
    -DCMAKE_C_FLAGS=-DPCRE2_DISABLE_JIT
    -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR=/usr/lib/x86_64-linux-gnu/cmake
    -DQT_QMAKE_TARGET_MKSPEC=win32-g++ -DBUILD_SHARED_LIBS=ON
    -DQT_BUILD_TESTS=OFF -DQT_BUILD_EXAMPLES=OFF
    -DFEATURE_sql=OFF -DFEATURE_dbus=OFF -DFEATURE_concurrent=OFF
    -DFEATURE_network=ON -DFEATURE_printsupport=ON
    -DINPUT_opengl=no -DFEATURE_vulkan=OFF
    -DFEATURE_accessibility=OFF -DFEATURE_tabletevent=OFF -DFEATURE_system_zlib=OFF
)

libraries() {
    mkdir -p "$cache"
    local package
    for package in pugixml md4c libzip libdeflate snowball qt6-base; do
        fetch "$package"
    done
    once pugixml with_cmake pugixml -DBUILD_SHARED_LIBS=OFF
    once md4c with_cmake md4c -DBUILD_SHARED_LIBS=OFF
    once libdeflate libdeflate
    once libstemmer libstemmer
    once libzip with_cmake libzip -DBUILD_SHARED_LIBS=OFF -DBUILD_TOOLS=OFF -DBUILD_REGRESS=OFF \
        -DBUILD_EXAMPLES=OFF -DBUILD_DOC=OFF -DENABLE_BZIP2=OFF -DENABLE_LZMA=OFF -DENABLE_ZSTD=OFF \
        -DENABLE_OPENSSL=OFF -DENABLE_GNUTLS=OFF -DENABLE_MBEDTLS=OFF -DENABLE_COMMONCRYPTO=OFF \
        -DENABLE_WINDOWS_CRYPTO=OFF
    once qt6-base with_cmake qt6-base "${qt_options[@]}"
}

programs() {
    configure_and_build windows
    # What the programs need beside them to start, tests included.
    "$root/packaging/windows/gather.sh" "$root/build/windows/bin"
    "$root/packaging/windows/gather.sh" "$root/build/windows/tests"
}

packages() {
    "$root/packaging/windows/package.sh"
    say "The converter qv_dbtoxml is not in them: its library cannot be built for Windows here."
}

# shellcheck disable=SC2086
install_missing $build_packages $windows_packages
libraries
[ "${1:-}" = libraries ] && exit
programs
[ "${1:-}" = programs ] && exit
packages
