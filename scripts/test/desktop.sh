#!/usr/bin/env bash
# The control on a Qt form and the desktop program, on a platform without a screen.
set -euo pipefail
cd "$(dirname "$0")/../.."
. scripts/install-packages.sh
install_packages packages.txt packages-test.txt packages-desktop.txt

cmake --preset desktop >/dev/null
cmake --build --preset desktop --target desktop_tests -j "$(nproc)"
ctest --preset desktop -L desktop -j 2 --no-tests=error
