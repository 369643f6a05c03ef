#!/usr/bin/env bash
# Builds the control for 64-bit and 32-bit Windows and runs its tests under Wine: the library's own
# tests as Windows programs, then the control as scripts, programs and forms see it, against virtual
# receivers on COM3. Needs no display. Ends non-zero when anything fails.
set -euo pipefail
cd "$(dirname "$0")/../.."
root=$PWD
work=$root/build/windows
build=$root/build/windows64
passed=0
failed=0

# A prefix and a home of its own, so that nothing of the user's is touched.
rm -rf "$work"
mkdir -p "$work/home"
export HOME=$work/home WINEPREFIX=$work/prefix WINEDEBUG=-all LC_ALL=C.UTF-8
export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe,winedbg.exe=d'
unset DISPLAY

step() { printf '%4ds  %s\n' "$SECONDS" "$1"; }
pass() { passed=$((passed + 1)); }
fail() {
    failed=$((failed + 1))
    echo "FAILED: $1"
}

# check NAME COMMAND...: one test; what the command says is shown when it fails.
check() {
    local name=$1
    shift
    if "$@" >"$work/check.log" 2>&1; then pass; else
        fail "$name"
        cat "$work/check.log"
    fi
}

# A Windows program; the time limit is only met by one that hangs.
windows() { timeout 300 wine "$@" 2>>"$work/errors.log" </dev/null; }

# googletest NAME PROGRAM [ARGUMENT...]: counts the program's tests.
googletest() {
    local name=$1 ended=0 done
    shift
    windows "$@" --gtest_brief=1 >"$work/gtest.log" || ended=$?
    done=$(sed -n 's/^\[  PASSED  \] \([0-9]*\) tests\?\..*/\1/p' "$work/gtest.log" | tail -1)
    passed=$((passed + ${done:-0}))
    if [ "$ended" -ne 0 ] || [ -z "$done" ] || [ "$done" -eq 0 ]; then
        local wrong
        wrong=$(grep -c '^\[  FAILED  \] [^0-9]' "$work/gtest.log" || true)
        fail "$name (ended with $ended)"
        failed=$((failed + (wrong > 1 ? wrong - 1 : 0)))
        cat "$work/gtest.log"
    fi
}

receivers=()
# receiver PORT ARGUMENT...: a virtual receiver on that COM port, ready when this returns.
receiver() {
    local port=$1 pty
    shift
    exec {said}< <(exec "$root/build/dev/apps/receiver/marlune-receiver" --link "$work/$port" "$@")
    receivers+=($!)
    read -r -t 20 pty <&"$said"
    [ -e "$work/$port" ]
}
stop_receivers() {
    local each
    for each in "${receivers[@]}"; do
        kill "$each" 2>/dev/null || true
        tail --pid="$each" -f /dev/null  # it is no child of this shell
    done
    receivers=()
    rm -f "$work"/com*
}
finish() {
    stop_receivers
    wineserver -k 2>/dev/null || true
}
trap finish EXIT

build_all() {
    local preset
    for preset in windows64 windows32; do
        cmake --preset "$preset" && cmake --build --preset "$preset" || return 1
    done
    cmake --preset dev && cmake --build --preset dev --target marlune_program marlune-receiver
}

step "building for Windows, 64 and 32 bits"
build_all >"$work/build.log" 2>&1 || { cat "$work/build.log"; exit 1; }

step "starting Wine"
{
    wineboot -i
    wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f
    for port in com3 com4; do
        wine reg add 'HKLM\Software\Wine\Ports' /v "${port^^}" /d "$work/$port" /f
    done
    wineserver -k  # the ports are read when it starts
} >"$work/wine.log" 2>&1
wineserver -p 2>/dev/null

step "what the libraries import and export"
imports() { "$1-w64-mingw32-objdump" -p "$2" | sed -n 's/^\tDLL Name: //p' | tr a-z A-Z | sort; }
exports() { "$1-w64-mingw32-objdump" -p "$2" | sed -n 's/^\t\[ *[0-9]*\] \(Dll.*\)/\1/p' | sort | tr '\n' ' '; }
only_system_libraries() {
    local system='ADVAPI32|COMDLG32|GDI32|KERNEL32|MPR|MSVCRT|OLE32|OLEAUT32|SETUPAPI|USER32'
    imports "$@" | tee /dev/stderr | grep -q KERNEL32 && ! imports "$@" | grep -vE "^($system)\.DLL$"
}
five_exports() {
    exports "$@" | tee /dev/stderr |
        grep -qx 'DllCanUnloadNow DllGetClassObject DllInstall DllRegisterServer DllUnregisterServer '
}
is_stripped() { "$1-w64-mingw32-objdump" -t "$2" | tee /dev/stderr | grep -q 'no symbols'; }
for each in "x86_64 $build" "i686 $root/build/windows32"; do
    for what in only_system_libraries five_exports is_stripped; do
        check "$what ${each%% *}" $what "${each%% *}" "${each#* }/apps/activex/marlune.ocx"
    done
done

step "the library's tests as Windows programs"
while read -r program; do
    googletest "$program" "$build/tests/$program"
done < <(cd "$build/tests" && find . -name '*_test.exe' -not -path './windows/*' | sort)

step "the control without a receiver"
ocx_test=$build/tests/windows/ocx_test.exe
googletest ocx_test "$ocx_test" --gtest_filter=-Garmin*:Nmea*

step "the control and a Garmin receiver"
receiver com3
receiver com4 --fault silence:packet=1
googletest "ocx_test, Garmin" "$ocx_test" --gtest_filter=Garmin*
googletest port_test "$build/tests/windows/port_test.exe"
stop_receivers

step "the control and a stream of sentences"
receiver com3 --family nmea --rate 20
googletest "ocx_test, NMEA" "$ocx_test" --gtest_filter=Nmea*
stop_receivers

step "the examples"
script() { windows "$build/tests/windows/script_host.exe" "$@"; }
check "regsvr32" windows regsvr32 /s "$build/apps/activex/marlune.ocx"
receiver com3

same_lines_as_on_linux() {
    script examples/windows/waypoints.vbs >"$work/windows.txt"
    "$root/build/dev/apps/cli/marlune" waypoints --port "$work/com3" >"$work/linux.txt"
    [ -s "$work/linux.txt" ] && diff "$work/linux.txt" "$work/windows.txt"
}
check "waypoints.vbs" same_lines_as_on_linux

upload_arrives() {
    printf 'W;BUREAU;48.85;2.35;le bureau;35;18;0\r\nW;ECOLE;48.6;2.3;;99;18;0\r\n' >"$work/up.txt"
    diff <(script examples/windows/upload.js "Z:$work/up.txt") - <<END
U W;BUREAU;48.85;2.35;le bureau;35;18;0
U W;ECOLE;48.6;2.3;;99;18;0
2 sent
END
    script examples/windows/waypoints.vbs | grep -qx 'W;BUREAU;48.85;2.35;le bureau;35;18;0'
}
check "upload.js" upload_arrives

handlers_work() {
    script tests/windows/handlers.vbs "Z:$work/up.txt" >"$work/handlers.txt"
    diff "$work/handlers.txt" tests/windows/handlers.txt
}
check "handlers.vbs" handlers_work

form_is_drawn() {
    windows "$build/examples/windows/form_host.exe" --port 3 --screenshot "Z:$work/form.bmp"
    [ "$(head -c 2 "$work/form.bmp")" = BM ]
}
check "form_host" form_is_drawn

# The system's own host of scripts, which ends with 0 even after an error: its last line counts.
cscript_prints() {
    windows cscript //nologo "Z:$root/tests/windows/identity.vbs" | tr -d '\r' | tee /dev/stderr |
        tail -1 | grep -qx 'Marlune Version 1.0.0 -  GPSId:  Version:  - '
}
check "cscript" cscript_prints

is_forgotten() {
    windows regsvr32 /s /u "$build/apps/activex/marlune.ocx"
    ! windows reg query 'HKLM\Software\Classes\Marlune.GpsControl'
}
check "regsvr32 /u" is_forgotten
stop_receivers

step "done"
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
