#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (build-fuzz), writes the seed corpus
# and runs each target for a while, one after the other. Any crash, sanitizer
# report, leak, failed check or input that runs over the timeout stops the
# script with the input saved under build-fuzz/findings/<target>/.
#   scripts/fuzz.sh [SECONDS_PER_TARGET] [TARGET...]     (default 60, every target)
# The corpus grows in build-fuzz/corpus/<target>/ from one run to the next.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/deps.sh
# shellcheck disable=SC2086
ensure_packages $MORVANE_FUZZ_PACKAGES

seconds=${1:-60}
shift || true

CC=clang-14 CXX=clang++-14 cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=Release -DMORVANE_WERROR=ON -DMORVANE_FUZZ=ON \
  -DMORVANE_BUILD_TESTS=OFF -DMORVANE_BUILD_BENCH=OFF -DMORVANE_BUILD_TOOLS=OFF >/dev/null
cmake --build build-fuzz -j"$(nproc)"

targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for program in build-fuzz/fuzz/*_fuzz; do targets+=("$(basename "$program")"); done
fi

python3 fuzz/make_corpus.py build-fuzz/seeds
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
status=0
for target in "${targets[@]}"; do
  mkdir -p "build-fuzz/corpus/$target" "build-fuzz/findings/$target"
  echo "== $target: ${seconds}s"
  # -timeout: a single input that runs this long is a finding.
  if ! build-fuzz/fuzz/"$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=2048 \
        -print_final_stats=1 -artifact_prefix="build-fuzz/findings/$target/" \
        "build-fuzz/corpus/$target" "build-fuzz/seeds/$target" > "build-fuzz/findings/$target.log" 2>&1; then
    tail -n 60 "build-fuzz/findings/$target.log"
    echo "== $target: FINDING, input in build-fuzz/findings/$target/" >&2
    status=1
  else
    grep -E '^stat::number_of_executed_units|^stat::average_exec_per_sec' "build-fuzz/findings/$target.log" || true
  fi
done
exit $status
