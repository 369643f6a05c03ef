#!/usr/bin/env bash
# Runs a command on a machine that has 32-bit Wine as well, for the time of this command:
#
#   with-wine32.sh COMMAND...
#
# Wine's 32-bit half belongs to another architecture, i386. The machine is not taught a second one:
# the packages are unpacked into build/wine32, and a mount namespace of the command's own lays them
# over /usr. Where 32-bit Wine is installed, the command just runs.
set -euo pipefail
[ -x /usr/lib/wine/wine ] && exec "$@"

folder=$(cd "$(dirname "$0")/../.." && pwd)/build/wine32
version=$(dpkg-query -W -f='${Version}' libwine)

# The packages of that architecture, without a word to the machine's own package system.
download() {
    mkdir -p state/lists/partial cache/archives/partial
    : >state/status
    cat >apt.conf <<END
APT::Architecture "i386";
APT::Architectures { "i386"; };
APT::Install-Recommends "false";
APT::Sandbox::User "";
Debug::NoLocking "true";
Dir::State "$folder/state";
Dir::State::status "$folder/state/status";
Dir::Cache "$folder/cache";
END
    # An index that cannot be had now is no matter unless a package is missing then.
    APT_CONFIG=$folder/apt.conf apt-get update -qq || true
    APT_CONFIG=$folder/apt.conf apt-get install -qq -y -d "wine32=$version" "libwine=$version"
}

unpack() {
    local package
    for package in cache/archives/*.deb; do
        dpkg-deb --fsys-tarfile "$package" | tar -x -C root --no-same-owner --exclude='./usr/share' \
            --exclude='./etc' --transform='flags=r;s,^\./lib/,./usr/lib/,'
    done
    # What the package's script would copy on installation, and has copied for 64 bits.
    cp /usr/lib/x86_64-linux-gnu/wine/i386-windows/zlib1.dll root/usr/lib/i386-linux-gnu/wine/i386-windows/
}

if [ "$(cat "$folder/version" 2>/dev/null)" != "$version" ]; then
    rm -rf "$folder"
    mkdir -p "$folder/root"
    (cd "$folder" && download && unpack && rm -rf cache state) >&2
    echo "$version" >"$folder/version"
fi

root=()
[ "$(id -u)" -eq 0 ] || root=(--map-root-user)
exec unshare --mount "${root[@]}" bash -c \
    'mount -t overlay marlune -o "lowerdir=$0/root/usr:/usr" /usr && exec "$@"' "$folder" "$@"
