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
[ $# -gt 0 ] || set -- launcher second open pages blocked copy rewrite import links rows tables catalogue delete index finding scanning packing words linkcheck checking building viewing indexmanager typing renaming migrating
configure_and_build release bench qv_tour quovane-developer qvdeveloper peer_dialog peer_empty
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
    acronym=$(iconv -f utf-16 -t utf-8 "$work/import/Docs/$(name_of "$work/import")/QV_Toc.xml" |
        sed -n 's/.*<Book_Acro>\(.*\)<.*/\1/p')
    cp -a "$work/import" "$work/import.new"
    echo "== adding $(find "$work/source" -iname '*.htm*' | wc -l) pages against reading, copying and flushing them"
    pair "rm -rf $work/import; cp -a $work/import.new $work/import; $bin/bench import $work/import $(name_of "$work/import") $acronym $work/source" \
        "rm -rf $work/import; cp -a $work/import.new $work/import; rm -rf $work/copied; $work/yardstick read $work/source; $work/yardstick copy $work/source $work/copied; find $work/copied -type f -print0 | xargs -0 sync"
}

# The pages to look through: PAGES (a folder of real pages), else made ones.
page_folder() {
    if [ -n "${PAGES:-}" ]; then
        echo "$PAGES"
    else
        page_server >&2
        echo "$work/pages/Docs/$(name_of "$work/pages")"
    fi
}
index() {
    echo "== the index of all pages against reading them once"
    "$bin/bench" index "$(page_folder)"
}
finding() {
    local pages text
    pages=$(page_folder)
    for text in "the" "qqq not there" $'K\u00e4fer'; do
        echo "== finding \"$text\" in all pages against reading them once"
        "$bin/bench" find "$pages" "$text"
    done
    echo "== a regular expression"
    "$bin/bench" find "$pages" '<h[1-3][^>]*>' pattern
}
packing() {
    local dir=$work/packing name pack
    make_server "$dir" --projects 1 --books 1 --pages 0 --ibd 0 --ibs 0 --plain-names
    name=$(name_of "$dir")
    pack=$dir/Docs/$name/QV${name}_Server.Zip
    (cd "$(page_folder)" && find . -type f -print0 | tar c --null -T -) | tar x -C "$dir/Docs/$name"
    if command -v zip >/dev/null; then
        echo "== packing $(find "$dir/Docs/$name" -type f | wc -l) files against zip"
        pair "rm -f '$pack'; $bin/bench pack $dir '$name'" \
            "rm -f $work/peer.zip; cd $dir/Docs && zip -q -r -6 $work/peer.zip '$name' -x '$name/QV*.Zip'"
        stat -c '%s bytes %n' "$pack" "$work/peer.zip"
        unzip -tq "$pack"
    else
        echo "zip is not installed: nothing to compare with"
    fi
    "$bin/bench" pack "$dir" "$name" >/dev/null
    cp "$pack" "$work/last.zip"
    find "$dir/Docs/$name" -type f ! -name '*.Zip' | sort | awk 'NR % 100 == 0' |
        while read -r file; do echo "<!-- changed -->" >>"$file"; done
    echo "== packing again after 1 % of the files changed against packing anew"
    pair "cp $work/last.zip '$pack'; $bin/bench pack $dir '$name'" \
        "cp $work/last.zip '$pack'; rm '$pack'; $bin/bench pack $dir '$name'"
}
# Against two indexers of web pages; PAGEFIND is the program when it is not in the path.
scanning() {
    yardstick
    local pages
    pages=$(page_folder)
    echo "== cutting pages into tags, and taking all from them, in CPU seconds, against a parser that makes a tree"
    "$bin/bench" tokens "$pages"
    "$work/yardstick" html "$pages" libxml2
}
words() {
    local dir=$work/words some=$work/some peer=${PAGEFIND:-pagefind} threads
    mkdir "$dir"
    (cd "$(page_folder)" && find . \( -name '*.html' -o -name '*.htm' \) -type f -print0 | tar c --null -T -) | tar x -C "$dir"
    local anew="rm -rf $dir/QV_*.bin $dir/Search_Words"
    if command -v "$peer" >/dev/null; then
        echo "== search words of $(find "$dir" -type f | wc -l) pages with 2 threads against pagefind"
        RUNS=${RUNS:-3} pair "$anew; $bin/bench words $dir 2" \
            "RAYON_NUM_THREADS=2 '$peer' --site $dir --output-path $work/pagefind"
    else
        echo "pagefind is not installed: nothing to compare with"
    fi
    if command -v swish-e >/dev/null; then
        printf 'IndexDir %s\nIndexOnly .html .htm\nDefaultContents HTML*\n' "$dir" >"$work/swish.conf"
        echo "== with 1 thread against swish-e"
        RUNS=${RUNS:-3} pair "$anew; $bin/bench words $dir 1" "swish-e -v 0 -c $work/swish.conf -f $work/swish.index"
    else
        echo "swish-e is not installed: nothing to compare with"
    fi
    find "$dir" -name '*.htm*' | sort | awk 'NR % 100 == 0' >"$some"
    for threads in 1 2; do
        echo "== again after 1 % of the pages changed against anew, $threads thread(s)"
        pair "while read -r page; do echo '<!-- changed -->' >>\"\$page\"; done <$some; $bin/bench words $dir $threads" \
            "$anew; $bin/bench words $dir $threads"
    done
}
linkcheck() {
    local pages peer=${CHECK_HTML_LINKS:-check-html-links}
    pages=$(page_folder)
    "$bin/bench" links "$pages"
    if command -v linklint >/dev/null; then
        echo "== links and anchors of all pages, 1 thread, against linklint"
        RUNS=${RUNS:-3} pair "$bin/bench links $pages 1" \
            "linklint -root $pages -error -warn -limit 100000 -no_query_string /@"
    else
        echo "linklint is not installed: nothing to compare with"
    fi
    if command -v "$peer" >/dev/null; then
        echo "== the same with 2 threads against check-html-links"
        RUNS=${RUNS:-3} pair "$bin/bench links $pages 2" "'$peer' $pages"
    else
        echo "check-html-links is not installed: nothing to compare with"
    fi
}
checking() {
    local pages
    pages=$(page_folder)
    "$bin/bench" check "$pages"
    if command -v tidy >/dev/null; then
        echo "== all quality checks, from reading the pages to the report, 1 thread, against tidy over the pages"
        RUNS=${RUNS:-3} pair "$bin/bench check $pages 1" \
            "find $pages -name '*.html' -print0 | xargs -0 tidy -e -q"
    else
        echo "tidy is not installed: nothing to compare with"
    fi
}
building() {
    yardstick
    local dir=$work/building some=$work/some tool alone="" anew
    mkdir "$dir"
    cp -r "$(page_folder)/." "$dir"
    anew="rm -rf $dir/QV_* $dir/Search_Words $dir/DocToDoc $dir/DynamicHelp $dir/QuickNav"
    echo "== a whole build, 1 thread, in CPU against reading the pages and listing their words"
    pair "$anew; $bin/bench build $dir 1 all" "$work/yardstick html $dir words"
    for tool in words links checks; do
        alone+="$anew; $bin/bench build $dir 1 $tool; "
    done
    echo "== against words, links and checks each alone"
    pair "$anew; $bin/bench build $dir 1 all" "$alone"
    find "$dir" -name '*.htm*' | sort | awk 'NR % 100 == 0' >"$some"
    echo "== again after 1 % of the pages changed against the first build, 2 threads"
    pair "while read -r page; do echo '<!-- changed -->' >>\"\$page\"; done <$some; $bin/bench build $dir 2 all" \
        "$anew; $bin/bench build $dir 2 all"
}
viewing() {
    make_server "$work/V2600" --projects 1 --books 26 --pages 100 --ibd 0 --ibs 0 --plain-names
    make_server "$work/V50" --projects 50 --books 2 --pages 10 --ibd 10 --ibs 10
    local name
    name=$(name_of "$work/V2600")
    echo "== the viewer on 50 book sets against a plain dialog"
    pair "$bin/bench viewer $work/V50" "$bin/peer_dialog"
    "$bin/bench" words "$work/V2600/Docs/$name" 2
    echo "== each key stroke of a search in a built set"
    "$bin/bench" viewing "$work/V2600" "$name" "vobe common guide 26"
}
indexmanager() {
    yardstick
    make_server "$work/I500" --projects 500 --books 2 --pages 10 --ibd 1000 --ibs 1000
    echo "== the index manager open on 500 sets with 1,000,000 entries, in CPU against parsing their link files"
    pair "$bin/bench indexmanager $work/I500" "$work/yardstick parse $work/I500/Docs/*/QV_LinkID.xml"
    "$bin/bench" indexmanager "$work/I500"
    echo "== each key stroke in its filter"
    "$bin/bench" identifiers "$work/I500" "page 9 boil"
}
typing() {
    local length
    for length in 80 10000; do
        echo "== CPU per key in a page of 1 MB, lines of $length characters: a plain editor, ours, ours with the find bar"
        "$bin/bench" typing plain $length 100
        "$bin/bench" typing ours $length 100
        "$bin/bench" typing finding $length 100
    done
    echo "== in a page that is one line of 5 MB"
    "$bin/bench" typing plain 5000000 3 5000000
    "$bin/bench" typing ours 5000000 3 5000000
}

# On a disk: what is renamed must be flushed, and there the flushing costs what it costs authors.
renaming() {
    local disk
    disk=$(mktemp -d "${MEASURE_DISK:-/var/tmp}/measure-XXXXXX")
    mkdir "$disk/Docs"
    sync
    echo "== renaming a page that 500 of 2,561 link to against rewriting the 500 files once"
    "$bin/bench" renaming "$disk"
    rm -rf "$disk"
}

link_servers() {
    [ -d "$work/L50" ] || make_server "$work/L50" --projects 50 --books 2 --pages 10 --ibd 200 --ibs 200
    [ -d "$work/L500" ] || make_server "$work/L500" --projects 500 --books 2 --pages 10 --ibd 2000 --ibs 2000
}
links() {
    yardstick
    link_servers
    local kind threads
    for kind in targets references; do
        for threads in 1 2; do
            echo "== $kind of 500 projects against the yardstick, $threads thread(s)"
            pair "$bin/bench $kind $work/L500 $threads" "$work/yardstick links $work/L500 $threads"
        done
        echo "== $kind: 500 projects against 50 with a tenth of the links each (100 x the links)"
        pair "$bin/bench $kind $work/L500 1" "$bin/bench $kind $work/L50 1"
        "$bin/bench" "$kind" "$work/L500" | tr -s ' '
        python3 -c 'import json, sys; print("wanted", json.load(open(sys.argv[1] + "/manifest.json"))["expected"])' "$work/L500"
    done
}
rows() {
    link_servers
    make_server "$work/L1" --projects 1 --books 1 --pages 1 --ibd 10 --ibs 10 --no-link-file-every 0
    echo "== showing the targets of 500 projects, and of one with ten"
    "$bin/bench" show "$work/L500"
    "$bin/bench" show "$work/L1"
}
tables() {
    yardstick
    local books
    for books in 500 1000; do
        make_server "$work/M$books" --projects 20 --books $books --pages 0 --ibd 0 --ibs 0 --plain-names
    done
    echo "== merging the tables of 20 projects with 500 books each against parsing them, ten times"
    pair "$bin/bench tables $work/M500 10" \
        "for i in 1 2 3 4 5 6 7 8 9 10; do $work/yardstick parse $work/M500/Docs/*/QV_Toc.xml; done"
    echo "== 1,000 books each against 500"
    pair "$bin/bench tables $work/M1000 10" "$bin/bench tables $work/M500 10"
}
catalogue() {
    make_server "$work/C20k" --projects 20000 --catalogue-only
    local file=$work/C20k/Docs/QV_Selection.xml
    echo "== listing the names of a catalogue of 20,000 against parsing it, 20 times each"
    pair "$bin/bench names 20 $work/C20k" "$bin/bench parse 20 $file"
    echo "== loading it the checked way against parsing it, 20 times each"
    pair "$bin/bench read 20 $work/C20k" "$bin/bench parse 20 $file"
    cp "$file" "$work/catalogue"
    echo "== ranking all 20,000 against appending one"
    pair "cp $work/catalogue $file; $bin/bench rank $work/C20k" "cp $work/catalogue $file; $bin/bench append $work/C20k New"
}
delete() {
    make_server "$work/gone" --projects 1 --books 200 --pages 100 --page-kb 1 --ibd 0 --ibs 0 --plain-names
    local name run
    name=$(name_of "$work/gone")
    cp -a "$work/gone" "$work/gone.new"
    echo "== deleting a project of 20,000 pages, ours and rm -rf"
    for run in $(seq "${RUNS:-7}"); do
        rm -rf "$work/gone"; cp -a "$work/gone.new" "$work/gone"
        /usr/bin/time -f "ours %e s wall %U + %S s CPU" "$bin/bench" delete "$work/gone" "$name"
        rm -rf "$work/gone"; cp -a "$work/gone.new" "$work/gone"
        /usr/bin/time -f "rm %e s wall %U + %S s CPU" rm -rf "$work/gone/Docs/$name"
    done
}
# MIGRATE is the database of a legacy book set.
migrating() {
    local database=${MIGRATE:-$tools/../../data/mdb/legacy_large.mdb} dir=$work/migrating
    command -v mdb-export >/dev/null || { echo "mdb-export is not installed: nothing to compare with"; return; }
    configure_and_build release qv_dbtoxml
    database=$(realpath "$database")
    cat >"$work/migrate" <<M
#!/bin/sh
rm -rf "$dir" && mkdir -p "$dir/s/Docs" "$dir/settings"
QUOVANE_DRIVES=$dir QUOVANE_SETTINGS=$dir/settings exec "$bin/qv_dbtoxml" '--database=${database//\//\\}' \
    --mode=1 '--target=S:\Docs\P' --name=P --id=P --language=ENU
M
    cat >"$work/export" <<M
#!/bin/sh
mdb-tables -1 "$database" | while read -r table; do mdb-export "$database" "\$table" >/dev/null; done
rm -rf "$work/migrated" && cp -r "$work/plain" "$work/migrated"
M
    chmod +x "$work/migrate" "$work/export"
    "$work/migrate" | tail -n 1
    cp -r "$dir/s/Docs/P" "$work/plain"
    echo "== migrating $(find "$work/plain" -type f | wc -l) files against printing the tables and copying the files"
    pair "$work/migrate" "$work/export"
}

for job in "$@"; do
    "$job"
done
