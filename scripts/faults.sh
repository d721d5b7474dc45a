#!/usr/bin/env bash
# Breaks things on purpose and looks at what is left: bad files, every failing file operation,
# sudden death, power cuts, several writers. Takes some minutes; not part of the quick tests.
#   ./scripts/faults.sh TOOLS_FOLDER [badset|sweep|derived|race|fence|hostile|legacy]...
# TOOLS_FOLDER/faults holds crash_sweep.py, fence_run.py, race_run.py, xml_badset.py and badset_run.py.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

[ $# -ge 1 ] && [ -f "$1/faults/crash_sweep.py" ] || {
    say "usage: faults.sh TOOLS_FOLDER [badset|sweep|derived|race|fence|hostile|legacy]..."
    exit 64
}
tools=$(cd "$1/faults" && pwd)
shift
[ $# -gt 0 ] || set -- badset sweep derived race fence hostile legacy
configure_and_build release driver
driver=$root/build/release/bin/driver
work=$(mktemp -d "${TMPDIR:-/tmp}/faults-XXXXXX")
trap 'rm -rf "$work"' EXIT
export FAULTFS_LIB=$work/libfaultfs.so
failed=()

# check NAME COMMAND...: runs one check and remembers when it finds something.
check() {
    local name=$1
    shift
    printf '== %s\n' "$name"
    "$@" || failed+=("$name")
}

# installation DIR: a small installation with a released project that holds a book with pages, and a
# second one that has the same book and one of its own; links between the two.
installation() {
    rm -rf "$1"
    mkdir -p "$1/Docs" "$work/pages"
    printf '<html><head><title>One</title></head><body>**Base** one</body></html>\n' >"$work/pages/one.htm"
    printf '<html><head><title>Two</title></head><body>two</body></html>\n' >"$work/pages/two.htm"
    local run=("$driver" --server "$1" --date 2026-01-02)
    "${run[@]}" create Base B01 ENU
    "${run[@]}" add-book Base Alpha ALP Book_ALP
    "${run[@]}" import Base ALP "$work/pages"
    "${run[@]}" release Base 2026-01-02
    "${run[@]}" create Second S01 ENU
    "${run[@]}" add-book Second Alpha ALP Book_ALP
    "${run[@]}" import Second ALP "$work/pages"
    "${run[@]}" add-book Second Gamma GAM Book_GAM
    link_file Base >"$1/Docs/Base/QV_LinkID.xml"
    link_file Second >"$1/Docs/Second/QV_LinkID.xml"
    link_file Base >"$1/Docs/QV_LinkID.xml"
}

# link_file PROJECT: one target in the project, one that is missing, and a reference to the other.
link_file() {
    iconv -f utf-8 -t utf-16 <<X
<?xml version="1.0" encoding="utf-16"?>
<LINKS><IBD>
<ID><LinkID>$1-ONE</LinkID><LinkIDSourceFile>$1\\Book_ALP\\one.htm#top</LinkIDSourceFile></ID>
<ID><LinkID>$1-GONE</LinkID><LinkIDSourceFile>$1\\Book_ALP\\gone.htm</LinkIDSourceFile></ID>
</IBD><IBS><USER><LinkID>Base-ONE</LinkID><FilePath>$1\\Book_ALP\\two.htm</FilePath></USER></IBS></LINKS>
X
}

sweep() {
    local dir=$work/server
    installation "$dir" >/dev/null
    local common=(--watch "$dir" --leftover '*.qvtmp*' --leftover '*.lock' --leftover '*.qvnew*'
        --leftover '*.qvdel*' --leftover '*_Backup*' --leftover '*TempFile.txt'
        --check "$driver --server $dir --date 2026-01-02 verify" --quiet)
    local run=("$driver" --server "$dir" --date 2026-01-02)
    one() { # NAME OPTION... -- ARGUMENT...
        local name=$1 options=()
        shift
        while [ "$1" != -- ]; do
            options+=("$1")
            shift
        done
        shift
        check "sweep: $name" python3 "$tools/crash_sweep.py" "${common[@]}" "${options[@]}" -- "${run[@]}" "$@"
    }
    common[-2]="$driver --server $dir list" # what is appended has no folder
    one "append to the catalogue" -- append Other O01 ENU
    common[-2]="$driver --server $dir --date 2026-01-02 verify"
    one "set ranks" -- rank Base#7
    one "create a project" --steps '*QV_Toc.xml' -- create Fresh F01 ENU
    one "copy a project" -- copy Base Twin T01 DEU
    rm "$dir/Docs/Base/QV_StatusIndicators.xml"
    one "make a project current" -- open Base
    "${run[@]}" open Base
    one "set the indicators" -- lights Base 255
    one "create a book" -- add-book Base Beta BET Book_BET
    one "save a page" -- save-page Base ALP one.htm "changed text"
    "${run[@]}" add-category Base ALP Hydraulics
    # Commands over several files: after the next open all of them are old, or all are new.
    whole() { # NAME ARGUMENT...
        local name=$1
        shift
        one "$name" --recover "$driver --server $dir --date 2026-01-02 verify" \
            --together '*/Base/QV_*.xml' --together '*/Base/Book_ALP/*' -- "$@"
    }
    whole "add import files" import-files Base ALP "$work/more"
    "${run[@]}" import-files Base ALP "$work/more"
    printf '# Four\n\nnew\n' >"$work/more/four.md"
    whole "re-import newer files" import-newer Base ALP
    whole "change a book" rename-book Base ALP "Alpha two"
    whole "rename a page with its links" rename-page Base ALP one.htm first.htm
    whole "rename a category" rename-category Base Hydraulics Pumps
    one "pack a project" -- pack Base
    "${run[@]}" pack Base
    "${run[@]}" save-page Base ALP one.htm "changed since it was packed"
    one "pack it again" -- pack Base
    whole "delete a book" delete-book Base ALP
    installation "$dir" >/dev/null
    # After the next start everything but the numbered backups has one of the two names.
    one "rename a project" --recover "$driver --server $dir finish-renames" \
        --together '*[!0-9]' -- rename-project Base "Renamed 7"
    one "report targets" --ops all --faults kill,eio,eacces,gone -- report-ibd # reads only
    one "report references" --ops all --faults kill,eio,eacces,gone -- report-ibs
    one "release a set" -- release Second 2026-01-03
    one "reopen a set" -- reopen Base
    # A failure leaves what was made in place, unlisted: only its own folder may be in between.
    one "merge two projects" --steps '*Both/*' -- merge Both M01 - Base Second
    common[-2]="$driver --server $dir list" # a project that is on its way out cannot be opened
    one "take a project out of the list" -- unmerge Base
    one "delete a project" -- delete Base yes
}

# The tools of a build: after the first step of the next one the files of each are all old, or all
# new, and nothing else is left.
derived() {
    local dir=$work/derived
    local run=("$driver" --server "$dir" --date 2026-01-02)
    sweep_tool() { # NAME TOOL FOLDER
        check "build: $1" python3 "$tools/crash_sweep.py" --watch "$dir" --leftover '*.qvtmp*' \
            --leftover '*.lock' --together "*/Base/$3/*" --leftover '*.bin' --again \
            --recover "$driver --server $dir finish-build Base" \
            --check "$driver --server $dir --date 2026-01-02 verify" --quiet -- \
            "${run[@]}" build Base "$2"
    }
    sweep_tools() { # NAME
        sweep_tool "links, $1" links DocToDoc
        sweep_tool "context settings, $1" context DynamicHelp
        sweep_tool "quick navigation, $1" quicknav QuickNav/none
        sweep_tool "search words, $1" words Search_Words
    }
    # quick_navigation PAGE TITLE: one entry.
    quick_navigation() {
        iconv -f utf-8 -t utf-16 >"$dir/Docs/Base/QuickNav/Book_QuickNav.xml" <<X
<?xml version="1.0" encoding="utf-16"?>
<QV_QuickNav><View ID="V1"><View_Name>View</View_Name><Group ID="G1"><Group_Name>Group</Group_Name>
<Topic ID="T1"><Topic_Name>Topic</Topic_Name><Category ID="C1"><Category_Name>Category</Category_Name>
<Link ID="L1" Book="ALP" Page="$1"><Link_Title>$2</Link_Title></Link></Category></Topic></Group></View>
</QV_QuickNav>
X
    }
    installation "$dir" >/dev/null
    rm "$dir/Docs/Base/QV_LinkID.xml" # else the first log tells what went out of it
    mkdir -p "$dir/Docs/Base/QuickNav"
    quick_navigation P0001 First
    "${run[@]}" number-pages Base ALP 100
    sweep_tools "the first time"
    local tool
    for tool in links context quicknav words; do
        "${run[@]}" build Base "$tool" >/dev/null
    done
    quick_navigation P0002 Second
    "${run[@]}" number-pages Base ALP 200
    "${run[@]}" save-page Base ALP one.htm '<a href="two.htm">two</a> <a href="qvlink:Base-ONE">other words</a>'
    sweep_tools "once more"
}

race() {
    cat >"$work/count.py" <<'P'
import re, sys
text = open(sys.argv[2], "rb").read().decode("utf-16")
names = re.findall(r"<QV_Name[^>]*>([^<]*)</QV_Name>", text)
done = ["P%s-%s" % tuple(line.split()) for line in open(sys.argv[1])]
lost = [name for name in done if names.count(name) != 1]
print("%d appended, %d lost or doubled" % (len(done), len(lost)))
sys.exit(1 if lost or not done else 0)
P
    appends() { # NAME FOLDER OPTION...
        local name=$1 dir=$work/$2
        shift 2
        mkdir -p "$dir/Docs"
        check "race: $name" python3 "$tools/race_run.py" "$@" \
            --check "python3 $work/count.py \"\$RACE_DONE\" $dir/Docs/QV_Selection.xml" -- \
            "$driver" --server "$dir" append 'P{job}-{i}' 'I{job}-{i}' ENU
    }
    appends "2 x 1,000 appends" race --jobs 2 --times 1000
    cat >"$work/turn.sh" <<T
set -e
run() { $driver --server $work/mixed "\$@"; }
run append P\$1-\$2 I\$1-\$2 ENU
run rank "P\$1-\$2#\$((\$2 + 1))"
[ "\$2" -eq 1 ] || run delete P\$1-\$((\$2 - 1)) no
T
    cat >"$work/left.py" <<'P'
import re, sys
text = open(sys.argv[2], "rb").read().decode("utf-16")
left = {name: rank for rank, name in re.findall(r'<QV_Name[^>]*Rank="(\d+)"[^>]*>([^<]*)</QV_Name>', text)}
last = {}
for line in open(sys.argv[1]):
    job, turn = map(int, line.split())
    last[job] = max(turn, last.get(job, 0))
wanted = {"P%d-%d" % (job, turn): str(turn + 1) for job, turn in last.items()}
print("left: %s, wanted: %s" % (left, wanted))
sys.exit(0 if left == wanted else 1)
P
    mkdir -p "$work/mixed/Docs"
    check "race: appending, ranking and deleting" python3 "$tools/race_run.py" --jobs 2 --times 200 \
        --check "python3 $work/left.py \"\$RACE_DONE\" $work/mixed/Docs/QV_Selection.xml" -- \
        bash "$work/turn.sh" '{job}' '{i}'
    appends "with killed writers" killed --jobs 3 --times 100 --kill 0.3 --kill-within 0.02 --timeout 15
}

badset() {
    python3 "$tools/xml_badset.py" "$work/bad" >/dev/null
    check "bad files" python3 "$tools/badset_run.py" "$work/bad" --only catalogue --only status \
        --only toc --only book --only linkid -- "$driver" read '{kind}' '{file}'
}

# The program's work on an installation stays inside it.
fence() {
    local dir=$work/fence
    installation "$dir" >/dev/null
    check "fence: copy a project" python3 "$tools/fence_run.py" --allow "$dir" -- \
        "$driver" --server "$dir" --date 2026-01-02 copy Base Twin T01 ENU
    check "fence: delete a book" python3 "$tools/fence_run.py" --allow "$dir" -- \
        "$driver" --server "$dir" --date 2026-01-02 delete-book Base ALP
}

# Names and paths in the files that lead elsewhere.
hostile() {
    check "hostile values" python3 "$root/scripts/hostile.py" "$tools/.." "$driver"
}

# Databases that are foreign, damaged, or changed in up to 64 bytes (FLIPS of them).
legacy() {
    configure_and_build release qv_dbtoxml
    check "legacy databases" python3 "$root/scripts/legacy.py" "$root/build/release/bin/qv_dbtoxml" \
        "${DATABASES:-$tools/../../data/mdb}" "${FLIPS:-10000}"
}

mkdir -p "$work/more"
printf '<html><head><title>Three</title></head><body>three</body></html>\n' >"$work/more/three.htm"
printf '# Four\n\n[x](three.htm)\n' >"$work/more/four.md"
for part in "$@"; do
    "$part"
done
if [ ${#failed[@]} -gt 0 ]; then
    printf 'Found something: %s\n' "${failed[@]}"
    exit 1
fi
echo "Nothing found."
