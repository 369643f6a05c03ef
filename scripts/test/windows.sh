#!/usr/bin/env bash
# The control as a Windows library and its tests, under Wine.
set -euo pipefail
cd "$(dirname "$0")/../.."
. scripts/install-packages.sh
install_packages packages.txt packages-test.txt packages-windows.txt
tests/windows/run.sh
