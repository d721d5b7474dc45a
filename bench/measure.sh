#!/usr/bin/env bash
# Times the benchmark's jobs against their yardsticks, in turn, and prints the ratios.
#   ./bench/measure.sh TOOLS_FOLDER [JOB]...
# TOOLS_FOLDER/installations holds pair.py, make_installation.py and yardstick.cpp. Data lies in a memory file
# system (MEASURE_DIR, default /dev/shm), so that the state of a disk does not count.
set -euo pipefail
. "$(dirname "$0")/../scripts/lib.sh"

[ $# -ge 1 ] && [ -f "$1/installations/pair.py" ] || { say "usage: measure.sh TOOLS_FOLDER [JOB]..."; exit 64; }
tools=$(cd "$1/installations" && pwd)
shift
[ $# -gt 0 ] || set -- launcher second open pages blocked copy rewrite import
configure_and_build release bench driver qv_tour quovane-developer qvdeveloper peer_dialog peer_empty
bin=$root/build/release/bin
work=$(mktemp -d "${MEASURE_DIR:-/dev/shm}/measure-XXXXXX")
trap 'rm -rf "$work"' EXIT
export QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=$work/run
mkdir -m 700 "$work/run"

pair() { python3 "$tools/pair.py" -n "${RUNS:-7}" "$@"; }
make_server() { python3 "$tools/make_installation.py" "$@"; }
name_of() { python3 -c 'import json, sys; print(json.load(open(sys.argv[1] + "/manifest.json"))["projects"][0])' "$1"; }

yardstick() {
    [ -x "$work/yardstick" ] || g++ -std=c++20 -O2 "$tools/yardstick.cpp" -o "$work/yardstick" \
        -I/usr/include/libxml2 -lpugixml -lgumbo -ldeflate -lxml2 -lz -pthread
}
tree_server() {
    [ -d "$work/tree" ] || make_server "$work/tree" --projects 1 --books 500 --pages 100 --page-kb 1 \
        --ibd 0 --ibs 0 --plain-names
}
page_server() {
    [ -d "$work/pages" ] || make_server "$work/pages" --projects 1 --books 50 --pages 100 --ibd 0 \
        --ibs 0 --plain-names
}

launcher() {
    make_server "$work/small" --projects 20 --catalogue-only
    echo "== launcher ready against a plain dialog"
    pair "$bin/bench launcher $work/small" "$bin/peer_dialog"
}
second() {
    echo "== second start against an empty program"
    mkdir -p "$work/settings"
    export QUOVANE_SETTINGS=$work/settings QUOVANE_DRIVES=$work/drives
    mkdir -p "$work/drives"
    "$bin/qv_tour" sample >/dev/null
    "$bin/qvdeveloper" &
    local first=$!
    for _ in $(seq 100); do
        [ -n "$(find "$work/run" -type s 2>/dev/null)" ] && break
        sleep 0.1
    done
    sleep 7 # the splash
    RUNS=${RUNS:-51} pair "$bin/quovane-developer" "$bin/peer_empty"
    kill $first
    wait $first 2>/dev/null || true
}
open() {
    tree_server
    echo "== main window on 500 books x 100 pages against a plain dialog"
    pair "$bin/bench open $work/tree $(name_of "$work/tree")" "$bin/peer_dialog"
}
pages() {
    make_server "$work/few" --projects 1 --books 500 --pages 1 --page-kb 1 --ibd 0 --ibs 0 --plain-names
    tree_server
    echo "== main window: 100 pages a book against 1 page a book"
    pair "$bin/bench open $work/tree $(name_of "$work/tree")" "$bin/bench open $work/few $(name_of "$work/few")"
}
blocked() {
    tree_server
    echo "== longest time without events"
    "$bin/bench" blocked "$work/tree" "$(name_of "$work/tree")"
}
copy() {
    tree_server
    local name
    name=$(name_of "$work/tree")
    echo "== copying a project of 50,000 pages against cp -a"
    pair "rm -rf $work/tree/Docs/Twin; $bin/bench copy $work/tree $name Twin" \
        "rm -rf $work/tree/Docs/Plain; cp -a $work/tree/Docs/$name $work/tree/Docs/Plain"
    rm -rf "$work/tree/Docs/Twin" "$work/tree/Docs/Plain"
}
rewrite() {
    yardstick
    page_server
    local name
    name=$(name_of "$work/pages")
    echo "== rewriting the markers of 5,000 pages against the yardstick, 1 and 2 threads of it"
    for _ in $(seq "${RUNS:-7}"); do
        rm -rf "$work/pages/Docs/Twin" "$work/out"
        cp -a "$work/pages/Docs/$name" "$work/pages/Docs/Twin"
        "$bin/bench" rewrite "$work/pages" Twin "$name" Fresh | awk '{print "ours", $2}'
        for threads in 1 2; do
            rm -rf "$work/out"
            "$work/yardstick" rewrite "$work/pages/Docs/$name" "$work/out" "**$name**" '**Fresh**' $threads |
                awk -v t=$threads '/^rewrite / {print "yardstick" t, $2}' | tail -n 1
        done
    done | awk '{a[$1] = a[$1] " " $2} END {for (k in a) print k ":" a[k]}'
}
import() {
    yardstick
    page_server
    local name acronym
    name=$(name_of "$work/pages")
    mkdir -p "$work/source"
    for book in "$work/pages/Docs/$name"/*/; do
        [ "$(find "$work/source" -name '*.*' | wc -l)" -ge 2500 ] && break
        cp -r "$book" "$work/source/$(basename "$book")"
    done
    rm -f "$work"/source/*/Book_*.xml
    make_server "$work/import" --projects 1 --books 1 --pages 0 --ibd 0 --ibs 0 --plain-names
    acronym=$("$bin/driver" --server "$work/import" books "$(name_of "$work/import")" | cut -f2)
    cp -a "$work/import" "$work/import.new"
    echo "== adding $(find "$work/source" -iname '*.htm*' | wc -l) pages against reading, copying and flushing them"
    pair "rm -rf $work/import; cp -a $work/import.new $work/import; $bin/bench import $work/import $(name_of "$work/import") $acronym $work/source" \
        "rm -rf $work/import; cp -a $work/import.new $work/import; rm -rf $work/copied; $work/yardstick read $work/source; $work/yardstick copy $work/source $work/copied; find $work/copied -type f -print0 | xargs -0 sync"
}

for job in "$@"; do
    "$job"
done
