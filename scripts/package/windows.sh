#!/usr/bin/env bash
# The control for Windows: an installer and a ZIP for copying, each with both kinds of the library.
set -euo pipefail
cd "$(dirname "$0")/../.."
. scripts/install-packages.sh
install_packages packages.txt packages-windows.txt

cmake --preset windows64 >/dev/null
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/windows64/CMakeCache.txt)
name=marlune-$version
packages=$PWD/build/packages
work=$PWD/build/package-windows
stage=$work/$name
rm -rf "$work"
mkdir -p "$stage/manual" "$packages"

cmake --preset dev >/dev/null
cmake --build --preset dev --target marlune_help_pages
for each in "64 x64" "32 x86"; do
    cmake --preset "windows${each% *}" >/dev/null
    cmake --build --preset "windows${each% *}" --target marlune_ocx
    mkdir "$stage/${each#* }"
    cp "build/windows${each% *}/apps/activex"/marlune.{ocx,manifest} "$stage/${each#* }"
done
apps/activex/help/make.sh "$PWD/build/dev/apps/activex/help/marlune_help_pages" "$stage/manual"
cp -r examples/windows "$stage/samples"
find "$stage/samples" -name CMakeLists.txt -delete
# What the sample in C++ is built with, and the ends of lines that Visual Basic insists on.
cp build/windows64/apps/activex/marlune_{com.h,ids.cpp} "$stage/samples/form"
sed -i 's/$/\r/' "$stage/samples"/*.{bas,cls,frm}
sed 's/$/\r/' apps/activex/setup/README.txt >"$stage/README.txt"

# What the installer copies beside the libraries, and what it removes again.
{
    echo '!macro copyFiles'
    (cd "$stage" && find manual samples README.txt -type f -printf '%h %p\n' | sort) |
        sed 's,/,\\,g' | while read -r folder file; do
        printf 'SetOutPath "$INSTDIR\\%s"\nFile "${STAGE}\\%s"\n' "${folder#.}" "$file"
    done
    echo '!macroend'
    echo '!macro deleteFiles'
    (cd "$stage" && find manual samples README.txt -type f -printf 'Delete "$INSTDIR\\%p"\n' &&
        find manual samples -depth -type d -printf 'RMDir "$INSTDIR\\%p"\n') | sed 's,/,\\,g'
    echo '!macroend'
} >"$work/files.nsh"
makensis -V2 -NOCD "-DVERSION=$version" "-DSTAGE=$stage" "-DFILES=$work/files.nsh" \
    "-DOUTPUT=$packages/$name-setup.exe" apps/activex/setup/marlune.nsi
rm -f "$packages/$name-windows.zip"
(cd "$work" && zip -qrX "$packages/$name-windows.zip" "$name")
ls -l "$packages/$name-setup.exe" "$packages/$name-windows.zip"
