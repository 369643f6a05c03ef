#!/bin/sh
# Completion for shells, made from the program's own tables of commands and options as its --help
# tells them: completion.sh PROGRAM OUTPUT-FOLDER writes bash, zsh and fish files.
set -eu
program=$1
out=$2
mkdir -p "$out/bash" "$out/zsh" "$out/fish"

# "option NAMES WANTS TEXT" and "command NAME - TEXT", a line each, separated by tabs.
"$program" --help | awk '
    /^Options:/ { kind = "option"; next }
    /^Subcommands:/ { kind = "command"; next }
    !/^  / { kind = ""; next }
    kind == "" { next }
    {
        line = substr($0, 3)
        text = line
        head = line
        if (match(line, /  +/)) {
            head = substr(line, 1, RSTART - 1)
            text = substr(line, RSTART + RLENGTH)
        }
        words = split(head, word, " ")
        printf "%s\t%s\t%s\t%s\n", kind, word[1], (words > 1 ? word[2] : "-"), text
    }' >"$out/table"

names() { awk -F '\t' -v kind="$1" '$1 == kind { gsub(",", " ", $2); print $2 }' "$out/table" | tr '\n' ' '; }
wanting() { awk -F '\t' '$1 == "option" && $3 != "-" { gsub(",", "|", $2); printf "%s%s", sep, $2; sep = "|" }' "$out/table"; }

cat >"$out/bash/marlune" <<EOF
_marlune() {
    local word=\${COMP_WORDS[COMP_CWORD]} before=\${COMP_WORDS[COMP_CWORD-1]}
    case \$before in
        --mark) COMPREPLY=(\$(compgen -W "GRM GRM_USB MGN MLR" -- "\$word")) ;;
        --lang) COMPREPLY=(\$(compgen -W "en fr" -- "\$word")) ;;
        --port) COMPREPLY=(\$(compgen -W "virtual /dev/ttyUSB0 /dev/ttyS0" -- "\$word") \$(compgen -f -- "\$word")) ;;
        $(wanting)) COMPREPLY=(\$(compgen -f -- "\$word")) ;;
        *)
            case \$word in
                -*) COMPREPLY=(\$(compgen -W "$(names option)" -- "\$word")) ;;
                *) COMPREPLY=(\$(compgen -W "$(names command)" -- "\$word") \$(compgen -f -- "\$word")) ;;
            esac ;;
    esac
}
complete -o filenames -F _marlune marlune
EOF

{
    echo '#compdef marlune'
    echo '_arguments -S \'
    awk -F '\t' '$1 == "option" {
        gsub(/[^A-Za-z0-9 ,.;()_-]/, " ", $4)
        count = split($2, name, ",")
        for (i = 1; i <= count; ++i)
            printf "    '"'"'%s[%s]%s'"'"' \\\n", name[i], $4, ($3 == "-" ? "" : ":" tolower($3) ":_files")
    }' "$out/table"
    printf "    '1:command:((%s))' \\\\\n    '*:file:_files'\n" "$(awk -F '\t' '$1 == "command" {
        gsub(/[^A-Za-z0-9 ,.;_-]/, "", $4); printf "%s%s\\:\"%s\"", sep, $2, $4; sep = " " }' "$out/table")"
} >"$out/zsh/_marlune"

{
    awk -F '\t' '$1 == "command" { gsub("'"'"'", "", $4)
        printf "complete -c marlune -n __fish_use_subcommand -a %s -d '"'"'%s'"'"'\n", $2, $4 }' "$out/table"
    awk -F '\t' '$1 == "option" { gsub("'"'"'", "", $4)
        count = split($2, name, ",")
        printf "complete -c marlune"
        for (i = 1; i <= count; ++i)
            if (name[i] ~ /^--/) printf " -l %s", substr(name[i], 3); else printf " -s %s", substr(name[i], 2)
        printf "%s -d '"'"'%s'"'"'\n", ($3 == "-" ? "" : " -r"), $4 }' "$out/table"
} >"$out/fish/marlune.fish"
rm "$out/table"
