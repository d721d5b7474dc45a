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
configure_and_build release driver qvdev
driver=$root/build/release/bin/driver
qvdev=$root/build/release/bin/qvdev
work=$(mktemp -d "${TMPDIR:-/tmp}/faults-XXXXXX")
trap 'rm -rf "$work"' EXIT
export FAULTFS_LIB=$work/libfaultfs.so QUOVANE_SETTINGS=$work/settings
good=3046706 # the colour of a light
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
    "$qvdev" --server "$1" new Base --id B01
    "$qvdev" --server "$1" import Base ALP "$work/pages" --new-book Alpha
    "$driver" --server "$1" lights Base $good
    "$qvdev" --server "$1" release Base --date 2026-01-02
    "$qvdev" --server "$1" new Second --id S01
    "$qvdev" --server "$1" import Second ALP "$work/pages" --new-book Alpha
    "$driver" --server "$1" add-book Second Gamma GAM
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
    local step=("$driver" --server "$dir") run=("$qvdev" --server "$dir")
    local verify="${step[*]} verify" list="${run[*]} list"
    # sweep_over CHECK NAME OPTION... -- COMMAND...
    sweep_over() {
        local check=$1 name=$2
        shift 2
        check "sweep: $name" python3 "$tools/crash_sweep.py" --watch "$dir" --leftover '*.qvtmp*' \
            --leftover '*.lock' --leftover '*.qvnew*' --leftover '*.qvdel*' --leftover '*_Backup*' \
            --leftover '*TempFile.txt' --quiet --check "$check" "$@"
    }
    one() { sweep_over "$verify" "$@"; }
    # Commands over several files: after the next open all of them are old, or all are new, but the
    # lights, which are set before.
    whole() { # NAME COMMAND...
        local name=$1
        shift
        one "$name" --recover "$verify" --together '*/Base/QV_[!S]*.xml' --together '*/Base/Book_ALP/*' -- "$@"
    }
    sweep_over "$list" "append to the catalogue" -- "${step[@]}" append Other O01 ENU # it has no folder
    one "set ranks" -- "${run[@]}" rank Base=7
    one "create a project" --steps '*QV_Toc.xml' -- "${run[@]}" new Fresh --id F01
    one "copy a project" -- "${run[@]}" copy Base Twin --id T01 --language DEU
    "${run[@]}" reopen Base
    rm "$dir/Docs/Base/QV_StatusIndicators.xml"
    one "make a project current" -- "${step[@]}" open Base
    "${step[@]}" open Base
    one "set the indicators" -- "${step[@]}" lights Base 255
    one "create a book" -- "${step[@]}" add-book Base Beta BET
    one "save a page" -- "${step[@]}" save-page Base ALP one.htm "changed text"
    "${step[@]}" add-category Base ALP Hydraulics
    whole "add import files" "${run[@]}" import Base ALP "$work/more/"*
    "${run[@]}" import Base ALP "$work/more/"*
    printf '# Four\n\nnew\n' >"$work/more/four.md"
    whole "re-import newer files" "${step[@]}" import-newer Base ALP
    whole "change a book" "${step[@]}" rename-book Base ALP "Alpha two"
    whole "rename a page with its links" "${step[@]}" rename-page Base ALP one.htm first.htm
    whole "rename a category" "${step[@]}" rename-category Base Hydraulics Pumps
    : >"$dir/Docs/Base/_Backup/Build.lock" # else packing goes on without it where it cannot be made
    one "pack a project" -- "${run[@]}" pack Base
    "${run[@]}" pack Base
    "${step[@]}" save-page Base ALP one.htm "changed since it was packed"
    one "pack it again" -- "${run[@]}" pack Base
    whole "delete a book" "${step[@]}" delete-book Base ALP
    installation "$dir" >/dev/null
    # After the next start everything but the numbered backups has one of the two names.
    one "rename a project" --recover "$list" --together '*[!0-9]' -- "${step[@]}" rename-project Base "Renamed 7"
    # These only read; they tell that some links are bad.
    local reading=(--ok-status 0,2 --ops all --faults kill,eio,eacces,gone)
    one "report targets" "${reading[@]}" -- "${run[@]}" report targets
    one "report references" "${reading[@]}" -- "${run[@]}" report references
    "${step[@]}" lights Second $good
    one "release a set" -- "${run[@]}" release Second --date 2026-01-03
    one "reopen a set" -- "${run[@]}" reopen Base
    # A failure leaves what was made in place, unlisted: only its own folder may be in between.
    one "merge two projects" --ok-status 0,2 --steps '*Both/*' --ignore-text '\d\d:\d\d' -- \
        "${run[@]}" merge Both --id M01 Base Second
    # A project that is on its way out cannot be opened.
    sweep_over "$list" "take a project out of the list" -- "${run[@]}" delete Base --yes
    sweep_over "$list" "delete a project" -- "${run[@]}" delete Base --files --yes
}

# The tools of a build: after the first step of the next one the files of each are all old, or all
# new, and nothing else is left.
derived() {
    local dir=$work/derived
    local step=("$driver" --server "$dir")
    sweep_tool() { # NAME TOOL FOLDER
        check "build: $1" python3 "$tools/crash_sweep.py" --watch "$dir" --leftover '*.qvtmp*' \
            --leftover '*.lock' --together "*/Base/$3/*" --leftover '*.bin' --again \
            --recover "${step[*]} finish-build Base" --check "${step[*]} verify" --quiet -- \
            "${step[@]}" run-tool Base "$2"
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
    "${step[@]}" number-pages Base ALP 100
    sweep_tools "the first time"
    local tool
    for tool in links context quicknav words; do
        "${step[@]}" run-tool Base "$tool" >/dev/null
    done
    quick_navigation P0002 Second
    "${step[@]}" number-pages Base ALP 200
    "${step[@]}" save-page Base ALP one.htm '<a href="two.htm">two</a> <a href="qvlink:Base-ONE">other words</a>'
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
$driver --server $work/mixed append P\$1-\$2 I\$1-\$2 ENU
$qvdev --server $work/mixed rank "P\$1-\$2=\$((\$2 + 1))"
[ "\$2" -eq 1 ] || $qvdev --server $work/mixed delete P\$1-\$((\$2 - 1)) --yes
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
    mkdir -p "$work/empty/Docs"
    check "bad files" python3 "$tools/badset_run.py" "$work/bad" --only catalogue --only status \
        --only toc --only book --only linkid -- \
        "$driver" --server "$work/empty" read '{kind}' '{file}'
}

# The program's work on an installation stays inside it.
fence() {
    local dir=$work/fence
    installation "$dir" >/dev/null
    check "fence: copy a project" python3 "$tools/fence_run.py" --allow "$dir" -- \
        "$qvdev" --server "$dir" copy Base Twin --id T01
    check "fence: delete a book" python3 "$tools/fence_run.py" --allow "$dir" -- \
        "$driver" --server "$dir" delete-book Base ALP
}

# Names and paths in the files that lead elsewhere.
hostile() {
    check "hostile values" python3 "$root/scripts/hostile.py" "$tools/.." "$qvdev"
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
