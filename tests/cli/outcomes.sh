#!/usr/bin/env bash
# What goes wrong between a receiver and marlune is told: by the exit status, by the last line on
# standard error, and by what becomes of a file that was there before.
#     outcomes.sh MARLUNE MARLUNE-RECEIVER COMMAND-LINE.MD
set -euo pipefail
marlune=$1
receiver=$2
manual=$3
folder=$(mktemp -d)
pid=
trap '[ -z "$pid" ] || kill "$pid" 2>/dev/null || true; rm -rf "$folder"' EXIT
fail() {
    echo "outcomes.sh: $*" >&2
    sed 's/^/    /' "$folder/err" >&2
    exit 1
}

# Starts a receiver with these options; its terminal is $port.
start() {
    coproc unit { exec "$receiver" "$@" 2>/dev/null; }
    pid=$unit_PID
    read -r port <&"${unit[0]}"
}
finish() {
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
    pid=
}

# told STATUS PATTERN RECEIVER-OPTION... -- COMMAND...: the last line on standard error matches.
told() {
    local expected=$1 pattern=$2 status=0 options=()
    shift 2
    while [ "$1" != -- ]; do options+=("$1"); shift; done
    shift
    start "${options[@]}"
    "$marlune" "$@" --port "$port" --lang en >"$folder/out" 2>"$folder/err" || status=$?
    finish
    [ "$status" = "$expected" ] || fail "status $status, not $expected: ${options[*]} -- $*"
    tail -n 1 "$folder/err" | grep -Eq "$pattern" || fail "no \"$pattern\": ${options[*]} -- $*"
}

printf '%s\n' 'W;ONE;45;7;;0;18;0' 'W;TWO;45;8;;0;18;0' 'W;THREE;45;9;;0;18;0' >"$folder/three"
printf '%s\n' 'W;ONE;45;7;;0;18;0' 'W;TWO' 'W;THREE;45;9;;0;18;0' >"$folder/bad"
printf '%s\n' 'N;WALK' 'T;45;7;39000;0;-1' 'T;200;7;39000;0;0' 'T;46;7;39000;0;0' >"$folder/far"

# A Garmin unit that is unplugged, falls silent or loses a byte.
told 3 '^marlune: 1 of 3 waypoints sent: the device is gone' \
    --fault hangup:packet=5,of=6 -- send-waypoints "$folder/three"
told 3 '^marlune: 12 of [0-9]+ track points received: the receiver fell silent' \
    --fault silence:packet=12,of=34 -- tracks
told 3 '^marlune: [0-9]+ of [0-9]+ waypoints received: ' \
    --fault hangup:packet=3,of=35 -- waypoints
told 1 '^marlune: no waypoints received: the receiver fell silent' \
    --fault silence:packet=1,of=27 -- waypoints
told 3 '^marlune: 1 of 3 waypoints sent: line 2 of the file cannot be read, which left out 2' \
    -- send-waypoints "$folder/bad"
told 3 'of [0-9]+ track points sent: ' -- send-tracks "$folder/far"
# The program's patience ends what has no time-out, and says so.
told 3 'the receiver fell silent' --fault short:packet=3,of=35,keep=6 --fault silence:packet=4,of=35 \
    -- waypoints --timeout 2
# A Magellan unit that refuses or falls silent keeps the old file.
echo old >"$folder/old.gpx"
told 1 'no waypoints received: the receiver refused' --family magellan \
    --fault refuse:packet=1,of=WAYPOINT -- waypoints --mark MGN --gpx "$folder/old.gpx"
told 3 '3 waypoints received: the receiver fell silent' --family magellan \
    --fault silence:packet=4,of=PMGNWPL -- waypoints --mark MGN --timeout 2 --gpx "$folder/old.gpx"
[ "$(cat "$folder/old.gpx")" = old ] || fail "an incomplete transfer replaced a file"
told 3 'track points received' --fault silence:packet=12,of=34 \
    -- --keep-partial --gpx "$folder/old.gpx" tracks
grep -q trkpt "$folder/old.partial.gpx" || fail "nothing was kept"
[ "$(cat "$folder/old.gpx")" = old ] || fail "an incomplete transfer replaced a file after all"

# Pipes take a file as well; a missing folder is noticed before anything is asked of the receiver.
start
"$marlune" tracks --port "$port" -o - 2>"$folder/err" | xmllint --noout - || fail "no XML in a pipe"
mkfifo "$folder/fifo"
xmllint --noout "$folder/fifo" 2>"$folder/lint" &
lint=$!
"$marlune" --gpx "$folder/fifo" waypoints --port "$port" >/dev/null 2>"$folder/err" || fail "a FIFO"
wait "$lint" || fail "no XML in a FIFO"
status=0
"$marlune" tracks --port "$port" --gpx "$folder/none/x.gpx" >"$folder/out" 2>"$folder/err" ||
    status=$?
[ "$status" = 1 ] || fail "a missing folder: status $status"
[ ! -s "$folder/out" ] || fail "a missing folder was noticed after the transfer"

# "timeout" signals twice; a comma in the locale does not get into positions.
status=0
LC_ALL=fr_FR.UTF-8 timeout -s INT 2 "$marlune" pvt --port "$port" --gpx "$folder/live.gpx" \
    >/dev/null 2>"$folder/err" || status=$?
grep -Eq 'lat="45\.9[0-9]{3}' "$folder/live.gpx" || fail "pvt: status $status, no positions"

finish

# The client of the manual, and what it does about a misspelt member.
sed -n '/^```python$/,/^```$/p' "$manual" | sed '/^```/d' >"$folder/client.py"
PATH=$(dirname "$marlune"):$PATH timeout 30 python3 "$folder/client.py" >"$folder/out" \
    2>"$folder/err" || fail "the client of the manual"
grep -q 'W;CHAMX' "$folder/out" || fail "the client of the manual got no waypoints"
sed -i 's/gps.call("getWaypts")/gps.call("getWaypoints")/' "$folder/client.py"
if PATH=$(dirname "$marlune"):$PATH timeout 10 python3 "$folder/client.py" >"$folder/out" \
    2>"$folder/err"; then
    fail "a misspelt member went unnoticed"
fi
grep -q 'no member is called "getWaypoints"' "$folder/err" || fail "a misspelt member: what?"
