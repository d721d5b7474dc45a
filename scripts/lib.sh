# Shared by the scripts of this folder; source it, do not run it.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1

say() { printf '%s\n' "$*" >&2; }

build_packages="g++ cmake ninja-build ccache qt6-base-dev qt6-base-dev-tools qt6-svg-dev
    libgl-dev libdeflate-dev libgumbo-dev libpugixml-dev libmd4c-dev libmd4c-html0-dev libstemmer-dev libzip-dev mdbtools-dev pkgconf fonts-dejavu-core fonts-wqy-microhei"

# For Windows: the compilers and what runs its programs here; then what the whole program needs.
wine_packages="g++-mingw-w64-x86-64-posix wine64 wine"
windows_packages="$wine_packages dpkg-dev imagemagick librsvg2-bin libz-mingw-w64-dev nsis zip"

# The folder with Qt and the other libraries for Windows, made by build-windows.sh.
windows_cache() { echo "${QUOVANE_WINDOWS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/quovane-windows}"; }

# install_missing PACKAGE...: installs what is not there and says what.
install_missing() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    if ! command -v apt-get >/dev/null; then
        say "These packages are missing, and there is no apt-get to install them: ${missing[*]}"
        return 1
    fi
    local sudo=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            say "Install these packages first (this script may not): ${missing[*]}"
            return 1
        }
        sudo=(sudo)
    fi
    say "Installing: ${missing[*]}"
    local log
    log=$(mktemp)
    if ! { "${sudo[@]}" apt-get -qq update && "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -qq install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
        tail -n 20 "$log" >&2
        say "apt-get could not install them; its last lines stand above."
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}

# configure_and_build PRESET TARGET...: builds incrementally; no targets means everything.
configure_and_build() {
    local preset=$1
    shift
    cd "$root"
    cmake --preset "$preset" >/dev/null || cmake --preset "$preset"
    cmake --build --preset "$preset" ${1+--target "$@"} || return
}
