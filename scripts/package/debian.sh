#!/usr/bin/env bash
# The packages for Debian: libraries, programs, device rules, Python module.
set -euo pipefail
cd "$(dirname "$0")/../.."
. scripts/install-packages.sh
install_packages packages.txt packages-debian.txt packages-desktop.txt

# Packages are built from what git has, in a folder of their own: debian/ fills up while they are.
out=$PWD/build/packages
tree=$out/tree
rm -rf "$tree"
mkdir -p "$tree"
git ls-files -z | tar --null -T - -cf - | tar -xf - -C "$tree"
cd "$tree"
rm -f "$out"/*.deb
dpkg-buildpackage -us -uc -b >"$out/build.log" 2>&1 || { tail -40 "$out/build.log"; exit 1; }
rm -rf "$tree"
cd "$out"
lintian --allow-root --fail-on error,warning ./*.changes
for package in *.deb; do
    printf '%s  %s bytes\n' "$package" "$(stat -c %s "$package")"
done
