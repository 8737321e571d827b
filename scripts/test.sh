#!/usr/bin/env bash
# Installs what is missing, builds the library with its tests and runs every
# test three times, each build in its own folder: the release build (build),
# a build with AddressSanitizer (with leak detection) and
# UndefinedBehaviorSanitizer (build-sanitize), and one with ThreadSanitizer
# (build-tsan), which cannot share a build with AddressSanitizer.
# MORVANE_SKIP_SANITIZE=1 skips both sanitizer runs. Last, it prints the share of
# test code (scripts/test_share.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/deps.sh
# shellcheck disable=SC2086
ensure_packages $MORVANE_BUILD_PACKAGES

jobs=$(nproc)

echo "== release build"
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DMORVANE_WERROR=ON >/dev/null
cmake --build build -j"$jobs"
(cd build && ctest --output-on-failure -j"$jobs")

if [ "${MORVANE_SKIP_SANITIZE:-0}" != "1" ]; then
  echo "== sanitizer build"
  # The benchmarks and tools add nothing that the tests do not already cover here.
  cmake -S . -B build-sanitize -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMORVANE_WERROR=ON -DMORVANE_SANITIZE=address \
    -DMORVANE_BUILD_BENCH=OFF >/dev/null
  cmake --build build-sanitize -j"$jobs"
  export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:strict_string_checks=1
  export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
  (cd build-sanitize && ctest --output-on-failure -j"$jobs")
fi

if [ "${MORVANE_SKIP_SANITIZE:-0}" != "1" ]; then
  echo "== thread sanitizer build"
  # The library and the test programs: the tools and the Python package add no
  # threads of their own, and a race in the library shows in its tests.
  cmake -S . -B build-tsan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMORVANE_WERROR=ON -DMORVANE_SANITIZE=thread \
    -DMORVANE_BUILD_BENCH=OFF -DMORVANE_BUILD_TOOLS=OFF -DMORVANE_BUILD_PYTHON=OFF >/dev/null
  cmake --build build-tsan -j"$jobs"
  unset ASAN_OPTIONS UBSAN_OPTIONS
  export TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1
  # ThreadSanitizer's runtime cannot place its shadow memory under the address
  # randomisation of some newer kernels; the tests run without it.
  no_aslr=""
  if command -v setarch >/dev/null 2>&1 && setarch "$(uname -m)" -R true 2>/dev/null; then
    no_aslr="setarch $(uname -m) -R"
  fi
  (cd build-tsan && $no_aslr ctest --output-on-failure -j"$jobs")
fi

# The share of test code in the tracked sources, when this is a git checkout.
if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
  scripts/test_share.sh
fi
