#!/usr/bin/env bash
# Builds the control for 64-bit and 32-bit Windows and runs its tests under Wine, each in both: the
# library's own tests as Windows programs, then the control as scripts, programs and forms see it,
# against virtual receivers on COM3. Needs no display. Ends non-zero when anything fails.
#
#   run.sh            both kinds
#   run.sh 64 | 32    one of them
set -euo pipefail
cd "$(dirname "$0")/../.."
root=$PWD
work=$root/build/windows
kinds=${1:-64 32}

build_all() {
    local kind
    for kind in $kinds; do
        cmake --preset "windows$kind" && cmake --build --preset "windows$kind" || return 1
    done
    cmake --preset dev && cmake --build --preset dev --target marlune_program marlune-receiver &&
        { [ "$kinds" != "64 32" ] || scripts/package/windows.sh; }
}
step() { printf '%4ds  %s\n' "$SECONDS" "$1"; }

if [ -z "${MARLUNE_WINDOWS_BUILT:-}" ]; then
    mkdir -p "$work"
    step "building for Windows, $kinds bits"
    build_all >"$work/build.log" 2>&1 || { cat "$work/build.log"; exit 1; }
    step "built"
    MARLUNE_WINDOWS_BUILT=1 exec tests/windows/with-wine32.sh "$0" "$@"
fi

# A prefix and a home of its own, so that nothing of the user's is touched.
find "$work" -mindepth 1 -delete
mkdir -p "$work/home"
export HOME=$work/home WINEPREFIX=$work/prefix WINEDEBUG=-all LC_ALL=C.UTF-8
export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe,winedbg.exe=d'
unset DISPLAY
passed=0
failed=0

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
# A program of the system, of the kind that is tested now: system PROGRAM [ARGUMENT...]. To what the
# usual loader starts from it, the system's folder is that of 32-bit programs.
system() {
    local loader=wine folder=syswow64
    [ "$kind" = 32 ] || { loader=/usr/lib/wine/wine64 folder=system32; }
    timeout 300 "$loader" "C:\\windows\\$folder\\$1" "${@:2}" 2>>"$work/errors.log" </dev/null
}

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

script() { windows "$build/tests/windows/script_host.exe" "$@"; }
same_lines_as_on_linux() {
    script examples/windows/waypoints.vbs >"$work/windows.txt"
    "$root/build/dev/apps/cli/marlune" waypoints --port "$work/com3" >"$work/linux.txt"
    [ -s "$work/linux.txt" ] && diff "$work/linux.txt" "$work/windows.txt"
}
upload_arrives() {
    printf 'W;BUREAU;48.85;2.35;le bureau;35;18;0\r\nW;ECOLE;48.6;2.3;;99;18;0\r\n' >"$work/up.txt"
    diff <(script examples/windows/upload.js "Z:$work/up.txt") - <<END
U W;BUREAU;48.85;2.35;le bureau;35;18;0
U W;ECOLE;48.6;2.3;;99;18;0
2 sent
END
    script examples/windows/waypoints.vbs | grep -qx 'W;BUREAU;48.85;2.35;le bureau;35;18;0'
}
handlers_work() {
    script tests/windows/handlers.vbs "Z:$work/up.txt" >"$work/handlers.txt"
    diff "$work/handlers.txt" tests/windows/handlers.txt
}
form_is_drawn() {
    windows "$build/examples/windows/form_host.exe" --port 3 --screenshot "Z:$work/form.bmp"
    [ "$(head -c 2 "$work/form.bmp")" = BM ]
}
# The system's own host of scripts, which ends with 0 even after an error: its last line counts.
cscript_prints() {
    system cscript.exe //nologo "Z:$root/tests/windows/identity.vbs" | tr -d '\r' | tee /dev/stderr |
        tail -1 | grep -qx 'Marlune Version 1.0.0 -  GPSId:  Version:  - '
}
registers() { system regsvr32.exe /s "$build/apps/activex/marlune.ocx"; }
unregisters() { system regsvr32.exe /s /u "$build/apps/activex/marlune.ocx"; }
works_unregistered() {
    local folder=$work/free$kind
    mkdir "$folder"
    cp "$build/examples/windows/form_host.exe" "$build/apps/activex"/marlune.{ocx,manifest} "$folder"
    cp examples/windows/registration-free/program.exe.manifest "$folder/form_host.exe.manifest"
    ! windows reg query 'HKLM\Software\Classes\Marlune.GpsControl' &&
        windows "$folder/form_host.exe" --port 3 --screenshot "Z:$work/free.bmp" &&
        cmp "$work/free.bmp" "$work/form.bmp"
}

test_kind() {
    local compiler=x86_64 program what before=$passed
    [ "$kind" = 64 ] || compiler=i686

    step "$kind bits: what the library imports and exports"
    for what in only_system_libraries five_exports is_stripped; do
        check "$what" $what $compiler "$build/apps/activex/marlune.ocx"
    done

    step "$kind bits: the library's tests as Windows programs"
    while read -r program; do
        googletest "$program" "$build/tests/$program"
    done < <(cd "$build/tests" && find . -name '*_test.exe' -not -path './windows/*' | sort)

    step "$kind bits: the control without a receiver"
    local ocx_test=$build/tests/windows/ocx_test.exe
    googletest ocx_test "$ocx_test" "--gtest_filter=-Garmin*:Slow*:Cut*:Nmea*"

    # A screen of another resolution.
    windows reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d 144 /f >/dev/null
    googletest "ocx_test, 144 dots per inch" "$ocx_test" --gtest_filter=*OnFinerScreens
    windows reg delete 'HKCU\Control Panel\Desktop' /v LogPixels /f >/dev/null

    step "$kind bits: the control and a Garmin receiver"
    receiver com3
    receiver com4 --fault silence:packet=1
    googletest "ocx_test, Garmin" "$ocx_test" --gtest_filter=Garmin*
    googletest port_test "$build/tests/windows/port_test.exe"
    stop_receivers

    step "$kind bits: a form during a slow transfer"
    {
        printf 'N;Long\r\n'
        seq 1 78 | sed 's/.*/T;45.9&;6.8&;39234.5&;1000;0\r/'
    } >"$work/long.txt"
    receiver com3 --baud 9600 --data "$work/long.txt"
    googletest "ocx_test, slow Garmin" "$ocx_test" --gtest_filter=Slow*
    stop_receivers

    step "$kind bits: a receiver that stops in the middle of a frame"
    receiver com3 --fault short:packet=3,of=35
    googletest "ocx_test, cut Garmin" "$ocx_test" --gtest_filter=Cut*
    stop_receivers

    step "$kind bits: the control and a stream of sentences"
    receiver com3 --family nmea --rate 20
    receiver com4 --family magellan
    googletest "ocx_test, NMEA" "$ocx_test" --gtest_filter=Nmea*
    stop_receivers

    step "$kind bits: the examples"
    check regsvr32 registers
    receiver com3
    check "waypoints.vbs" same_lines_as_on_linux
    check "upload.js" upload_arrives
    check "handlers.vbs" handlers_work
    check "form_host" form_is_drawn
    check "cscript" cscript_prints
    check "regsvr32 /u" unregisters
    check "without registration" works_unregistered
    stop_receivers
    step "$kind bits: $((passed - before)) passed"
}
for kind in $kinds; do
    build=$root/build/windows$kind
    test_kind
done

# Both on one machine: each works when the other has gone, and nothing stays of the last.
of() {  # of KIND COMMAND...
    local kind=$1 build=$root/build/windows$1
    shift
    "$@"
}
nothing_is_left() { ! windows reg query 'HKLM\Software\Classes\Marlune.GpsControl' && ! of 64 cscript_prints; }
stays() {  # stays KIND OTHER: KIND goes last
    of 64 registers && of 32 registers && of 64 cscript_prints && of 32 cscript_prints &&
        of "$2" unregisters && of "$1" cscript_prints && ! of "$2" cscript_prints &&
        of "$1" unregisters && nothing_is_left
}
if [ "$kinds" = "64 32" ]; then
    step "both kinds side by side"
    check "64 without 32" stays 64 32
    check "32 without 64" stays 32 64
fi

# The installer, from nothing to nothing.
registry() {
    # A restart of the system removes what was in use, as the remover itself; its end writes the files.
    { wineserver -k; wineboot; wineserver -k; } >"$work/restart.log" 2>&1
    # Not the times: the keys' own, and one that Wine sets anew with each start.
    sed -E '/^#time=/d; /^"DriverDateData"=/d; s/^(\[.*\]) [0-9]+$/\1/' "$WINEPREFIX"/{system,user,userdef}.reg
    wineserver -p 2>/dev/null
}
installed_files() {
    find "$WINEPREFIX/drive_c" \( -name windows -o -name Temp \) -prune -o -print | sort
}
comes_and_goes() {
    local programs="$WINEPREFIX/drive_c/Program Files" kind
    installed_files >"$work/files.before"
    registry >"$work/registry.before"
    windows "$root"/build/packages/marlune-*-setup.exe /S || return 1
    ls -R "$programs/Marlune" "$WINEPREFIX/drive_c/ProgramData/Microsoft/Windows/Start Menu"
    for kind in $kinds; do
        windows "$root/build/windows$kind/tests/windows/script_host.exe" \
            "C:\\Program Files\\Marlune\\samples\\waypoints.vbs" >"$work/windows.txt" || return 1
        [ -s "$work/windows.txt" ] && diff "$work/linux.txt" "$work/windows.txt" || return 1
    done
    windows "$programs/Marlune/uninstall.exe" /S || return 1
    timeout 60 bash -c 'while [ -e "$0" ]; do sleep 0.2; done' "$programs/Marlune" || return 1
    registry >"$work/registry.after"
    installed_files >"$work/files.after"
    diff "$work/registry.before" "$work/registry.after" && diff "$work/files.before" "$work/files.after"
}
if [ "$kinds" = "64 32" ]; then
    step "the installer"
    receiver com3
    "$root/build/dev/apps/cli/marlune" waypoints --port "$work/com3" >"$work/linux.txt"
    check "installed, used and removed" comes_and_goes
    stop_receivers
fi

step "done"
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
