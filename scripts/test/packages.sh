#!/usr/bin/env bash
# The Debian packages: built, and installed, used and removed in a bare Debian of its own.
set -euo pipefail
cd "$(dirname "$0")/../.."
. scripts/install-packages.sh
install_packages packages.txt packages-debian.txt packages-bare.txt
./package debian
tests/packages/run.sh build/packages
