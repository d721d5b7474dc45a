#!/usr/bin/env bash
# Installs what is missing, builds, makes a sample installation if none is set, starts the program.
#   ./scripts/run.sh               starts QV Developer (without a display: plays the tour)
#   ./scripts/run.sh --tour [DIR]  plays a guided tour offscreen; pictures and files go to DIR
#   ./scripts/run.sh --help-pictures  plays it and makes the pictures of the help from it
set -euo pipefail
. "$(dirname "$0")/lib.sh"

tour() {
    local out=${1:-$root/build/tour} docs=$root/build/docs
    [ -n "${1:-}" ] || rm -rf "$out" # what an earlier tour wrote there
    configure_and_build release qv_tour
    mkdir -p "$out"
    if ! "$root/scripts/fetch-docs.sh" "$docs"; then
        say "Not all real documentation could be fetched; the tour uses its own pages where needed."
    fi
    QT_QPA_PLATFORM=offscreen "$root/build/release/bin/qv_tour" play "$out" "$docs" \
        "$root/scripts/tour/pages"
    say "The pictures and files of the tour are in $out"
}

# shellcheck disable=SC2086
install_missing $build_packages

if [ "${1:-}" = --tour ]; then
    tour "${2:-}"
elif [ "${1:-}" = --help-pictures ]; then
    tour ""
    "$root/scripts/help-pictures.sh" "$root/build/tour"
elif [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    say "There is no display, so here is the guided tour instead."
    tour
else
    configure_and_build release qvdeveloper quovane-developer qv_tour StartApp QV_IBLIndexMgr qvdev
    "$root/build/release/bin/qv_tour" sample
    exec "$root/build/release/bin/quovane-developer" "$@"
fi
