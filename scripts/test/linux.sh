#!/usr/bin/env bash
# The tests with gcc, then with clang under the sanitizers, and the fuzzers.
set -euo pipefail
cd "$(dirname "$0")/../.."
. scripts/install-packages.sh
install_packages packages.txt packages-test.txt

jobs=$(nproc)
# gcc first: what it builds is what users get.
for preset in test-gcc test-asan; do
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" -j "$jobs"
done
ctest --preset test-gcc -j "$jobs" --output-on-failure --progress
ctest --preset test-asan -j "$jobs" --output-on-failure --progress
