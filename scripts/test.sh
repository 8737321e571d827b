#!/usr/bin/env bash
# Installs what is missing, builds the library with its tests, runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/deps.sh
# shellcheck disable=SC2086
ensure_packages $MORVANE_BUILD_PACKAGES

jobs=$(nproc)
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DMORVANE_WERROR=ON >/dev/null
cmake --build build -j"$jobs"
cd build
ctest --output-on-failure -j"$jobs"
