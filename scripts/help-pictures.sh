#!/usr/bin/env bash
# Makes the pictures of the help, docs/help/pictures/, from those of a tour.
#   ./scripts/help-pictures.sh TOUR-FOLDER
set -euo pipefail
. "$(dirname "$0")/lib.sh"

[ $# -eq 1 ] || { say "usage: help-pictures.sh TOUR-FOLDER"; exit 64; }
install_missing imagemagick
target=$root/docs/help/pictures
mkdir -p "$target"

# picture NAME TOUR-PICTURE [OPTION...]: the last picture of that name, as wide as a page of the help.
picture() {
    local name=$1 shot=$2 taken
    shift 2
    taken=$(find "$tour" -maxdepth 1 -name "[0-9]*[0-9]-$shot.png" | sort -V | tail -n 1)
    [ -n "$taken" ] || { say "The tour has no picture $shot."; exit 1; }
    convert "$taken" "$@" +repage -resize '680x>' -strip -colors 128 -depth 8 \
        -define png:exclude-chunk=date,time "png8:$target/$name.png"
}

tour=$1
details=(-gravity NorthEast -crop 507x520+0+60) # the right half of the tab Books
editor=(-gravity NorthEast -crop 668x570+0+20)  # the main window without the project tree
picture launcher launcher
picture new-project wizard-new
picture copy wizard-copy
picture migrate migration-report
picture merge merge-ready
picture rank ranking
picture continue-delete continue
picture main-window small-window
picture project-tree small-page -crop 282x284+4+20
picture books-and-pages small-window "${editor[@]}"
picture editing-a-page small-source "${details[@]}"
picture preview viewer-set
picture import source-files
picture globals small-global-pages "${editor[@]}"
picture categories small-categories "${editor[@]}"
picture quick-navigation small-quick-navigation "${editor[@]}"
picture links small-links "${details[@]}"
picture search-keywords small-keywords "${details[@]}"
picture building build-choice -crop 834x230+0+0
picture quality-checks build-findings
picture pack pack-plan
picture search viewer-search
picture link-report links-published
picture index-manager index-identifiers
say "The pictures of the help: $(du -ch "$target"/*.png | tail -n 1 | cut -f 1)"
