#!/usr/bin/env bash
# Runs a program for Windows under Wine, in a prefix of this checkout's own, without a display.
#   wine.sh PROGRAM.exe ARGUMENT...
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export WINEPREFIX=${QUOVANE_WINE_PREFIX:-$root/build/wine} WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml="
[ -n "${QUOVANE_WINE_DISPLAY:-}" ] || unset DISPLAY WAYLAND_DISPLAY

set_up() {
    wineboot -i
    # Without a display windows can be made and found all the same.
    wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f
    local font
    for font in Verdana Tahoma "MS Shell Dlg 2" "Segoe UI"; do
        wine reg add 'HKCU\Software\Wine\Fonts\Replacements' /v "$font" /d "DejaVu Sans" /f
    done
    wineserver -w
    touch "$WINEPREFIX/quovane-ready"
}

if [ ! -e "$WINEPREFIX/quovane-ready" ]; then
    mkdir -p "$WINEPREFIX"
    exec 9>"$WINEPREFIX.lock"
    flock 9
    [ -e "$WINEPREFIX/quovane-ready" ] || set_up </dev/null >"$WINEPREFIX.log" 2>&1 9>&-
    exec 9>&-
fi

# What Wine's services inherit they keep open: a pipe would wait for them.
said=$(mktemp)
told=$(mktemp)
status=0
options=()
[[ $(basename "$1") != tst_* ]] || options=(-o "Z:$told,txt") # Qt Test tells Windows' debugger else
wine "$@" "${options[@]}" </dev/null >"$said" 2>&1 || status=$?
cat "$said" "$told"
rm -f "$said" "$told"
exit "$status"
