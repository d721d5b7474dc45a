#!/usr/bin/env bash
# Fetches real documentation to try imports on, one folder per book, from Debian packages that are
# downloaded and unpacked but not installed. A book that is already there is left alone.
#   ./scripts/fetch-docs.sh DIR
# Exit status 1 when a book could not be had (no network, no package lists).
set -euo pipefail
. "$(dirname "$0")/lib.sh"

[ $# -eq 1 ] || { say "usage: fetch-docs.sh DIR"; exit 64; }
mkdir -p "$1"
target=$(cd "$1" && pwd)
failed=0

# fetch BOOK PACKAGE FOLDER-INSIDE
fetch() {
    [ -d "$target/$1" ] && return 0
    local work
    work=$(mktemp -d)
    chmod 755 "$work" # apt downloads as its own user
    if (cd "$work" && apt-get -qq -o APT::Sandbox::User=root download "$2") >/dev/null 2>&1 &&
        dpkg-deb -x "$work/$2"_*.deb "$work/unpacked" && [ -d "$work/unpacked/$3" ]; then
        mkdir "$work/book"
        # Links are followed: pictures may lie elsewhere in the package.
        cp -rL "$work/unpacked/$3/." "$work/book/" 2>/dev/null || true
        find "$work/book" -type f ! -iname '*.htm' ! -iname '*.html' ! -iname '*.css' \
            ! -iname '*.png' ! -iname '*.gif' ! -iname '*.jpg' ! -iname '*.svg' -delete
        find "$work/book" -type d -empty -delete
        mv "$work/book" "$target/$1"
    else
        say "$1: no pages from package $2"
        failed=1
    fi
    rm -rf "$work"
}

fetch aptitude-en aptitude-doc-en usr/share/doc/aptitude/html/en
fetch faq-de debian-faq-de usr/share/doc/debian/FAQ/de
fetch aptitude-ja aptitude-doc-ja usr/share/doc/aptitude/html/ja
fetch maint-guide-zh-cn maint-guide-zh-cn usr/share/doc/maint-guide-zh-cn/html
exit $failed
