#!/bin/sh
# The manual pages, made from the documents: make.sh OUTPUT-FOLDER VERSION. Needs pandoc.
# Nothing is written twice: a page is a name and a part of a document of docs/, given here.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
docs=$here/../docs
out=$1
version=$2
mkdir -p "$out"

# part FILE FROM TO: the document's lines from the heading FROM (to the end without TO) up to TO.
part() {
    awk -v from="$2" -v to="$3" '
        from == "" || index($0, "## " from) == 1 { on = 1 }
        to != "" && index($0, "## " to) == 1 { exit }
        on && !/^# /' "$docs/$1"
}

# page NAME SECTION WHAT-IT-IS SEE-ALSO: the document's text comes in.
page() {
    {
        printf '# NAME\n\n%s - %s\n\n# DESCRIPTION\n\n' "$1" "$3"
        cat
        printf '\n# SEE ALSO\n\n%s\n' "$4"
    } | pandoc -f gfm -t man -s --lua-filter "$here/links.lua" \
        -M title="$(echo "$1" | tr a-z A-Z)" -M section="$2" -M footer="Marlune $version" \
        -M header="Marlune" -o "$out/$1.$2"
}

part command-line.md "" "The scriptable host" |
    page marlune 1 "exchanges data with GPS receivers" \
        "**marlune-receiver**(1), **marlune-lines**(5), **marlune-host**(7)"
part desktop.md "" "The widget" |
    page marlune-desktop 1 "exchanges data with GPS receivers in a window" \
        "**marlune**(1), **marlune-receiver**(1)"
part receivers.md "" "" |
    page marlune-receiver 1 "plays a GPS receiver on a pseudo terminal" \
        "**marlune**(1), **marlune-lines**(5)"
part formats.md "Text lines and upload files" "Sentences" |
    page marlune-lines 5 "text lines and upload files of GPS records" "**marlune**(1)"
part command-line.md "The scriptable host" "" |
    page marlune-host 7 "the control as a child process, over lines of JSON" \
        "**marlune**(1), **marlune-lines**(5)"
