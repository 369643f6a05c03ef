#!/usr/bin/env bash
# Gathers the desktop's texts for translation: run it when a text has changed, and translate what it
# leaves unfinished in apps/desktop/translations (Qt Linguist helps). The English file has the plural
# forms only.
set -euo pipefail
cd "$(dirname "$0")/../.."
lupdate=$(command -v lupdate6 || echo /usr/lib/qt6/bin/lupdate)
texts=apps/desktop/translations/marlune-desktop
"$lupdate" apps/desktop apps/qt -I apps -locations none -no-obsolete -ts "${texts}_fr.ts"
"$lupdate" apps/desktop apps/qt -I apps -locations none -no-obsolete -pluralonly -ts "${texts}_en.ts"
