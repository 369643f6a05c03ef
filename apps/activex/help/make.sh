#!/usr/bin/env bash
# Makes the manual as pages of HTML, and as one file of HTML help, in an empty folder:
#
#   make.sh PAGES FOLDER
#
# PAGES is the program marlune_help_pages.
set -euo pipefail
pages=$1
folder=$2
here=$(cd "$(dirname "$0")" && pwd)
docs=$here/../../../docs

"$pages" "$here/members.md" "$folder"
# Links that lead out of the manual become plain names.
for each in windows formats; do
    sed -E 's#!\[[^]]*\]\([^)]*\)##g; s#\[([^]]*)\]\(\.\./[^)]*\)#`\1`#g
            s#\]\((windows|formats)\.md#](\1.html#g; s#\[([^]]*)\]\([a-z-]+\.md[^)]*\)#\1#g' \
        "$docs/$each.md" >"$folder/$each.md"
done
for page in "$folder"/*.md; do
    title=$(sed -n '1s/^# //p' "$page")
    {
        printf '<!DOCTYPE html>\n<html><head><meta charset="utf-8"><title>%s</title>' "$title"
        printf '<style>body{font-family:Segoe UI,Verdana,sans-serif;margin:1.5em;max-width:50em}'
        printf 'pre{background:#f2f2ee;padding:.6em}table{border-collapse:collapse}'
        printf 'td,th{border:1px solid #bbb;padding:.2em .5em;text-align:left}</style></head><body>\n'
        cmark-gfm --extension table "$page"
        printf '</body></html>\n'
    } >"${page%.md}.html"
    rm "$page"
done
(cd "$folder" && chmcmd marlune.hhp >chmcmd.log 2>&1) || { cat "$folder/chmcmd.log" >&2; exit 1; }
rm "$folder"/marlune.hh? "$folder/chmcmd.log"
