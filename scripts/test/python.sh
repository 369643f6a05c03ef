#!/usr/bin/env bash
# The Python module, against the virtual receivers.
set -euo pipefail
cd "$(dirname "$0")/../.."
. scripts/install-packages.sh
install_packages packages.txt packages-python.txt

cmake --preset release -B build/python -DMARLUNE_PYTHON=ON -DMARLUNE_BENCH=OFF \
    -DPython3_EXECUTABLE=/usr/bin/python3 >/dev/null
cmake --build build/python --target marlune_python
PYTHONPATH=build/python/apps/python /usr/bin/python3 -m pytest -q -p no:cacheprovider apps/python/tests
