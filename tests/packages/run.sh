#!/usr/bin/env bash
# Installs the packages of a folder in a bare Debian, uses them as a newcomer would, and removes
# them: run.sh FOLDER. Needs root and debootstrap; the bare system is made once, in build/bare.
set -euo pipefail
packages=$(cd "$1" && pwd)
root=$(cd "$(dirname "$0")/../.." && pwd)
base=$root/build/bare/base
system=$root/build/bare/system
suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
mirror=$({ cat /etc/apt/sources.list /etc/apt/sources.list.d/* 2>/dev/null || true; } |
    sed -n 's/^URIs: *//p; s/^deb \(\[[^]]*\] \)\?\([^ ]*\) .*/\2/p' | sed -n 1p)

say() { echo "-- $*"; }
inside() { chroot "$system" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 \
    DEBIAN_FRONTEND=noninteractive "$@"; }
cleanup() {
    local folder
    for folder in dev/pts dev proc sys; do
        mountpoint -q "$system/$folder" && umount "$system/$folder"
    done
    return 0
}
trap cleanup EXIT
expect() {  # expect WHAT PATTERN COMMAND...: the command's output must hold the pattern
    local what=$1 pattern=$2 output
    shift 2
    output=$("$@" 2>&1) || { echo "$output"; echo "FAILED: $what"; exit 1; }
    grep -q -- "$pattern" <<<"$output" || { echo "$output"; echo "FAILED: $what: no $pattern"; exit 1; }
    say "$what"
    passed=$((passed + 1))
}
passed=0

if [ ! -e "$base/etc/debian_version" ]; then
    say "a bare $suite"
    debootstrap --variant=minbase "$suite" "$base" "$mirror" >"$root/build/bare.log" 2>&1 ||
        { tail "$root/build/bare.log"; exit 1; }
fi
rm -rf "$system"
cp -a "$base" "$system"
for folder in proc sys dev dev/pts; do
    mount --bind "/$folder" "$system/$folder"
done
cp /etc/apt/sources.list "$system/etc/apt/" 2>/dev/null || true
cp -r /etc/apt/sources.list.d /etc/apt/apt.conf.d /etc/apt/trusted.gpg.d "$system/etc/apt/" 2>/dev/null || true
cp /etc/resolv.conf "$system/etc/" 2>/dev/null || true
mkdir "$system/packages"
cp "$packages"/*.deb "$system/packages/"

inside apt-get update -qq
files() { (cd "$system" && find etc usr var/lib/dpkg/info lib* -xdev \( -type f -o -type l \) 2>/dev/null | sort); }

# A program's user: the command line alone.
inside sh -c 'apt-get install -y -qq --no-install-recommends man-db >/dev/null 2>&1'
# The bare system may leave out manuals and documents when it unpacks; ours are looked at.
rm -f "$system/etc/dpkg/dpkg.cfg.d/docker" "$system/etc/dpkg/dpkg.cfg.d/excludes"
inside sh -c 'apt-get install -y -qq --no-install-recommends /packages/marlune_*.deb /packages/marlune-udev_*.deb >/dev/null'
expect "marlune waypoints --port virtual" '^W;CHAMX;' inside marlune waypoints --port virtual
expect "marlune-receiver --help" -- inside marlune-receiver --help
expect "man marlune" 'exchanges data with GPS receivers' inside man -P cat marlune
expect "man 5 marlune-lines" 'Upload files' inside man -P cat 5 marlune-lines
expect "man 7 marlune-host" 'scriptable host' inside man -P cat 7 marlune-host
expect "completion" 'send-waypoints' inside cat /usr/share/bash-completion/completions/marlune
expect "device rules" '091e' inside cat /usr/lib/udev/rules.d/60-marlune.rules

# A program's author: the library.
inside sh -c 'apt-get install -y -qq --no-install-recommends /packages/libmarlune1_*.deb /packages/libmarlune-dev_*.deb g++ pkgconf >/dev/null'
expect "pkg-config --libs marlune" '-lmarlune' inside pkg-config --libs marlune
inside sh -c 'cp /usr/share/doc/libmarlune-dev/examples/minimal/main.cpp /tmp/ && cd /tmp && g++ -std=c++20 main.cpp $(pkg-config --cflags --libs marlune) -o minimal'
expect "the example, compiled against the shared library" 'libmarlune.so.1' inside ldd /tmp/minimal

# A script's author: the Python module.
inside sh -c 'apt-get install -y -qq --no-install-recommends /packages/python3-marlune_*.deb >/dev/null'
expect "import marlune" 'CHAMX' inside python3 -c \
    'import marlune; print(marlune.__version__, [w.name for w in marlune.open("virtual").waypoints()])'

# A form's author: the Qt widget.
inside sh -c 'apt-get install -y -qq --no-install-recommends /packages/libmarlune-qt1_*.deb /packages/marlune-qt-dev_*.deb cmake make >/dev/null'
inside sh -c 'cp -r /usr/share/doc/libmarlune-dev/examples/qt-form /tmp/ && cd /tmp && cmake -S qt-form -B form && cmake --build form >/dev/null'
expect "the form, compiled against the shared library" 'libmarlune-qt.so.1' inside ldd /tmp/form/qt-form
expect "the plugin for Designer" 'marlune-qt-designer.so' inside sh -c 'ls "$(qtpaths6 --query QT_INSTALL_PLUGINS)"/designer'

# Somebody without a terminal: the program in the menu.
inside sh -c 'apt-get install -y -qq --no-install-recommends /packages/marlune-desktop_*.deb desktop-file-utils appstream >/dev/null'
expect "marlune-desktop --version" '1.0.0' inside env QT_QPA_PLATFORM=offscreen marlune-desktop --version
expect "man marlune-desktop" 'window' inside man -P cat marlune-desktop
expect "its entry in the menu" '' inside sh -c 'desktop-file-validate /usr/share/applications/*marlune*.desktop'
expect "its page in the program centre" '' inside sh -c 'appstreamcli validate --no-net /usr/share/metainfo/*marlune*.xml'

# Removed and purged, nothing of ours is left.
inside sh -c 'apt-get purge -y -qq marlune marlune-udev libmarlune1 libmarlune-dev python3-marlune libmarlune-qt1 marlune-qt-dev marlune-desktop >/dev/null'
left=$(files | grep -i marlune || true)
[ -z "$left" ] || { echo "$left"; echo "FAILED: files are left"; exit 1; }
say "purged: no file is left"
passed=$((passed + 1))
echo "$passed passed, 0 failed"
