#!/usr/bin/env bash
# The same work done by the command line of both systems leaves the same files, and each reads what
# the other has written without changing a byte of it.
#   same-files.sh QVDEV QVDEV.EXE
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
linux=$1
windows=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# run SYSTEM TREE COMMAND...: works on the installation in $work/TREE.
run() {
    local system=$1 tree=$work/$2 program=("$linux")
    shift 2
    [ "$system" = linux ] || {
        program=("$here/../../scripts/wine.sh" "$windows")
        tree=Z:$tree
    }
    QUOVANE_DRIVES=$tree/drives QUOVANE_SETTINGS=$tree/settings \
        "${program[@]}" --server "$tree/drives/c/Server" "${@//TREE/$tree/drives/c}" </dev/null
}

# Dates stand as the system writes them, in logs with the time.
without_dates() {
    local as_text=(cat)
    [ "$(head -c 2 "$1" | od -An -tx1)" != " ff fe" ] || as_text=(iconv -f UTF-16 -t UTF-8)
    "${as_text[@]}" <"$1" | sed -E \
        -e 's/[0-9]{1,2}( [A-Z][a-z]{2} |\/[0-9]{1,2}\/)[0-9]{2,4}/DATE/g' \
        -e 's/[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}/DATE/g'
}

# What a packed copy holds is looked at where it came from; caches tell when files were written.
same_files() {
    (cd "$work/linux" && find . -type f ! -name '*.bin' ! -name '*.Zip' | sort) >"$work/names"
    diff "$work/names" <(cd "$work/windows" && find . -type f ! -name '*.bin' ! -name '*.Zip' | sort)
    local name failed=0
    while IFS= read -r name; do
        cmp -s "$work/linux/$name" "$work/windows/$name" \
            || diff <(without_dates "$work/linux/$name") <(without_dates "$work/windows/$name") \
            || { echo "differs: $name" && failed=1; }
    done <"$work/names"
    return $failed
}

sums() { (cd "$1" && find . -type f -print0 | sort -z | xargs -0 sha256sum); }

for system in linux windows; do
    mkdir -p "$work/$system/drives/c/Server/Docs" "$work/$system/settings"
    cp -rp "$here/../../docs/help" "$work/$system/drives/c/Pages"
    run "$system" "$system" new Plant --id P1
    run "$system" "$system" import Plant GD TREE/Pages --new-book Guide
    run "$system" "$system" new Ölwerk --id OE --language DEU
    run "$system" "$system" import "DEU_Ölwerk" OE TREE/Pages/index.html --new-book Öl || [ $? = 2 ]
    run "$system" "$system" build Plant || [ $? = 2 ]
    run "$system" "$system" pack Plant --release
    run "$system" "$system" copy Plant Second --id S1
    run "$system" "$system" merge Both --id B1 Plant DEU_Ölwerk || [ $? = 2 ]
    run "$system" "$system" build Both || [ $? = 2 ]
    run "$system" "$system" rank Both=7 Plant=12
    run "$system" "$system" delete Second --files --yes
done >"$work/said"
same_files

for reader in linux windows; do
    for tree in linux windows; do
        sums "$work/$tree" >"$work/before"
        run "$reader" "$tree" list --json >"$work/list-$reader-$tree"
        run "$reader" "$tree" report targets --json >"$work/report-$reader-$tree" || [ $? = 2 ]
        run "$reader" "$tree" who-links Both GD index.html --json >"$work/links-$reader-$tree"
        diff "$work/before" <(sums "$work/$tree")
    done
done
for what in list report links; do
    for reader in linux windows; do
        for tree in linux windows; do
            cmp "$work/$what-linux-linux" "$work/$what-$reader-$tree"
        done
    done
done
run linux windows build Both --rebuild >"$work/said" || [ $? = 2 ]
run windows linux build Both --rebuild >"$work/said" || [ $? = 2 ]
same_files
echo "the files of both systems are the same"
