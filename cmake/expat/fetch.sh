#!/usr/bin/env bash
# Fetches the source of expat from Debian into the given folder, with Debian's patches, through apt
# with its signatures checked. The system's own list of sources stays as it is: it need not name
# source packages.
set -euo pipefail
folder=$1
[ ! -e "$folder/xmlparse.c" ] || exit 0
codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir -p lists/partial cache/archives/partial
echo "deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] ${MARLUNE_DEBIAN_MIRROR:-http://deb.debian.org/debian} $codename main" >sources.list
apt=(apt-get -qq -o Dir::Etc::SourceList="$work/sources.list" -o Dir::Etc::SourceParts=/dev/null
    -o Dir::State::Lists="$work/lists" -o Dir::Cache="$work/cache" -o APT::Sandbox::User=
    -o Debug::NoLocking=1)
"${apt[@]}" update
"${apt[@]}" source --download-only expat
mkdir source
tar -xf expat_*.orig.tar.* -C source --strip-components=1
tar -xf expat_*.debian.tar.* -C source
cd source
while read -r name _; do
    case "$name" in '' | '#'*) continue ;; esac
    patch -p1 --quiet <"debian/patches/$name"
done <debian/patches/series
mkdir -p "$folder"
cp "$(dirname "$(find . -name xmlparse.c | head -n 1)")"/*.[ch] "$folder"
