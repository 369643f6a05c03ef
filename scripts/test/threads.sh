#!/usr/bin/env bash
# Controls of all families on several threads, under the thread sanitizer.
set -euo pipefail
cd "$(dirname "$0")/../.."
. scripts/install-packages.sh
install_packages packages.txt packages-test.txt

cmake --preset tsan >/dev/null
cmake --build --preset tsan --target threads_test -j "$(nproc)"
# The sanitizer does not know the widely spread addresses of recent kernels.
setarch -R ctest --preset tsan -R '^Threads\.' --no-tests=error
