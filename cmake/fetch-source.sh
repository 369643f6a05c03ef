#!/usr/bin/env bash
# Fetches a library's source from Debian, with Debian's patches, through apt with its signatures
# checked:
#
#   fetch-source.sh PACKAGE FILE FOLDER
#
# Copies what stands beside FILE in the source into FOLDER, once. The system's own list of sources
# stays as it is: it need not name source packages.
set -euo pipefail
package=$1 file=$2 folder=$3
[ ! -e "$folder/$file" ] || exit 0
codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir -p lists/partial cache/archives/partial source
echo "deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] ${MARLUNE_DEBIAN_MIRROR:-http://deb.debian.org/debian} $codename main" >sources.list
apt=(apt-get -qq -o Dir::Etc::SourceList="$work/sources.list" -o Dir::Etc::SourceParts=/dev/null
    -o Dir::State::Lists="$work/lists" -o Dir::Cache="$work/cache" -o APT::Sandbox::User=
    -o Debug::NoLocking=1)
"${apt[@]}" update
"${apt[@]}" source --download-only "$package"
tar -xf "$package"_*.orig.tar.* -C source --strip-components=1
tar -xf "$package"_*.debian.tar.* -C source
cd source
while read -r name _; do
    case "$name" in '' | '#'*) continue ;; esac
    patch -p1 --quiet <"debian/patches/$name"
done < <(cat debian/patches/series 2>/dev/null)
mkdir -p "$folder"
find "$(dirname "$(find . -name "$file" | head -n 1)")" -maxdepth 1 \( -name '*.[ch]' -o -name '*.[ch]pp' \) -exec cp {} "$folder" \;
