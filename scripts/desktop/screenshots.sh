#!/usr/bin/env bash
# Takes the pictures of docs/desktop.md: builds the program that drives the window through its main
# states and shows it on a screen in memory. Needs xvfb and imagemagick.
#   scripts/desktop/screenshots.sh [FOLDER]    docs/images without one
set -euo pipefail
cd "$(dirname "$0")/../.."
folder=${1:-docs/images}
{ cmake --preset desktop && cmake --build --preset desktop --target desktop_pictures; } >/dev/null
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_RUNTIME_DIR=$work LC_ALL=C.UTF-8 TZ=UTC
xvfb-run -a -s "-screen 0 1280x800x24" build/desktop/tests/desktop/app/desktop_pictures "$work"
for picture in "$work"/*.png; do
    convert "$picture" +dither -colors 256 -strip -define png:compression-level=9 \
        "PNG8:$folder/desktop-$(basename "$picture")"
done
