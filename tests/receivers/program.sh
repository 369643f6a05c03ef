#!/usr/bin/env bash
# marlune-receiver as a program: the path comes first, SIGUSR1 prints, SIGTERM ends with status 0,
# wrong usage with 2.   program.sh MARLUNE-RECEIVER
set -euo pipefail
program=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
fail() { echo "program.sh: $*" >&2; exit 1; }

coproc receiver { exec "$program" --unit gps45 --link "$folder/gps" --print; }
pid=$receiver_PID
exec 5<&"${receiver[0]}"
read -r path <&5
[ -c "$path" ] || fail "the first line is no terminal: $path"
[ "$(readlink "$folder/gps")" = "$path" ] || fail "the link leads elsewhere"
kill -USR1 "$pid"
read -r line <&5
[ "$line" = "W;CHAMX;45.923611;6.869444;Chamonix - gare;;18;0" ] || fail "printed: $line"
kill -TERM "$pid"
status=0
wait "$pid" || status=$?
[ "$status" = 0 ] || fail "ended with status $status"
[ "$(grep -c "^W;CUSCO" <&5)" = 2 ] || fail "did not print its lines again at its end"
[ ! -e "$folder/gps" ] || fail "left its link behind"

# Whoever read the path may close the pipe: the receiver goes on, and clears up when the terminal
# closes. What was broken off by its end it tells.
exec 5<&-
coproc receiver { exec "$program" --unit gps45 --link "$folder/gps" --print 2>"$folder/err"; }
pid=$receiver_PID
exec 5<&"${receiver[0]}"
read -r path <&5
exec 5<&- {receiver[0]}<&-
exec 6<>"$path"
stty raw -echo <&6
printf '\020\033\002\001\000\342\020\003' >&6  # a count of one record
head -c 8 <&6 >"$folder/out"                      # its acknowledgement
exec 6<&-
kill -USR1 "$pid"
kill -HUP "$pid"
status=0
wait "$pid" || status=$?
[ "$status" = 0 ] || fail "without a reader it ended with status $status"
[ ! -e "$folder/gps" ] || fail "left its link behind without a reader"
grep -q "an upload was broken off" "$folder/err" || fail "said nothing of the broken upload"

for wrong in "--fault nonsense" "--baud 99" "--unit nonesuch" "--family nonesuch" "--tags A100" \
             "--data $folder/none" "--now yesterday" "--rate 0" "--nonesuch" \
             "--family usb --link $folder/usb" "--family usb --fault refuse:packet=1"; do
    status=0
    # shellcheck disable=SC2086  # options and their values
    "$program" $wrong >"$folder/out" 2>"$folder/err" || status=$?
    [ "$status" = 2 ] || fail "$wrong: status $status"
    [ -s "$folder/err" ] || fail "$wrong: no word of why"
done
"$program" --help >"$folder/out"
grep -q 'Units of the family garmin' "$folder/out" || fail "the help names no units"
status=0
"$program" --link "$folder" >"$folder/out" 2>&1 || status=$?
[ "$status" = 1 ] || fail "a link that cannot be made: status $status"
