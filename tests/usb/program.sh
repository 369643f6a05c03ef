#!/usr/bin/env bash
# marlune itself, unmodified, over an emulated USB bus: what it tells is what it tells over a serial
# line to the same unit, and what it uploads is what the unit then holds.
#   program.sh MARLUNE MARLUNE-RECEIVER UNIT PIPES
set -euo pipefail
marlune=$1
receiver=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"; [ -z "${serial:-}" ] || kill "$serial" 2>/dev/null || true' EXIT
fail() { echo "program.sh: $*" >&2; exit 1; }
export ASAN_OPTIONS=verify_asan_link_order=0

cat >"$folder/waypoints.txt" <<'END'
W;NEUF1;44.5;5.25;un point;100;18;0
W;NEUF2;-44.5;-5.25;;0;10;0
END
cat >"$folder/routes.txt" <<'END'
R;9;RETOUR
W;NEUF1;44.5;5.25;un point;100;18;0
W;NEUF2;-44.5;-5.25;;0;10;0
END
cat >"$folder/tracks.txt" <<'END'
N;MARCHE
T;44.5;5.25;39083.5;100;-1
T;44.6;5.25;39083.6;110;0
END

# Every service in one connection.
cat >"$folder/calls" <<END
{"call":"gpsConnect"}
{"call":"getIdent"}
{"call":"getProtocoles"}
{"call":"getWaypts"}
{"call":"getTracks"}
{"call":"GetRoutes"}
{"call":"SendWaypts","args":["$folder/waypoints.txt"]}
{"call":"SendRoutes","args":["$folder/routes.txt"]}
{"call":"SendTraces","args":["$folder/tracks.txt"]}
{"call":"getWaypts"}
{"call":"getTracks"}
{"call":"GetRoutes"}
{"call":"GetTime"}
{"call":"getPosition"}
{"when":"PvtData","nth":2,"call":"StopPvtData"}
{"call":"StartPvtData"}
END

# Without what differs on purpose (results of transfers) and what moves with the time.
same() {
    sed -E -e '/"call":"(get(Waypts|Tracks)|GetRoutes|Send|StartPvt|StopPvt|GetTime)/d' \
        -e 's/([0-9]{2}\/[0-9]{2}\/[0-9]{4}) [0-9:]{8}/\1/g' \
        -e 's/(-?[0-9]+\.[0-9]{3})[0-9]*/\1/g' "$1"
}

unit=(--unit "$3" --now "01/06/2007 12:00:00" --rate 50)
coproc line { exec "$receiver" "${unit[@]}" --print 2>"$folder/errors"; }
serial=$line_PID
exec 5<&"${line[0]}"
read -r path <&5  # it is ready when it has said it
"$marlune" host --mark GRM --port "$path" <"$folder/calls" >"$folder/serial.told"
kill "$serial"
cat <&5 >"$folder/serial.kept"
wait "$serial" || fail "the serial receiver failed"
serial=
"$receiver" --family usb --pipes "$4" "${unit[@]}" --print -- bash -c '"$0" host --mark GRM_USB <"$1" >"$2"' \
    "$marlune" "$folder/calls" "$folder/usb.told" >"$folder/usb.kept" 2>>"$folder/errors" ||
    fail "marlune on USB failed: $(cat "$folder/errors")"

[ ! -s "$folder/errors" ] || fail "the receivers complain: $(cat "$folder/errors")"
same "$folder/serial.told" >"$folder/serial.same"
same "$folder/usb.told" >"$folder/usb.same"
diff "$folder/serial.same" "$folder/usb.same" || fail "told differently"
diff "$folder/serial.kept" "$folder/usb.kept" || fail "kept differently"
grep -q 'W;NEUF2;-44.5;-5.25' "$folder/usb.kept" || fail "the upload is not kept"
[ "$(grep -c '"event":"PvtData"' "$folder/usb.told")" = 2 ] || fail "no positions"
for call in getWaypts getTracks GetRoutes SendWaypts SendRoutes SendTraces; do
    grep -q "{\"call\":\"$call\",\"result\":true}" "$folder/usb.told" || fail "$call is not true"
done

# A unit that is pulled out while it sends, and one that refuses to speak.
status=0
"$receiver" --family usb --fault hangup:packet=1,of=35 -- "$marlune" waypoints --mark GRM_USB \
    >"$folder/out" 2>&1 || status=$?
[ "$status" = 1 ] || fail "pulled out: status $status"
status=0
"$receiver" --family usb --fault silence:packet=1 -- "$marlune" ident --mark GRM_USB \
    >"$folder/out" 2>&1 || status=$?
[ "$status" = 1 ] || fail "silent: status $status"
grep -q 'Problème Ouverture de session' "$folder/out" || fail "silent: $(cat "$folder/out")"
