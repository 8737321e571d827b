#!/usr/bin/env bash
# Prints the share of test code: lines of tests/ and fuzz/ over lines of src/,
# include/ and tools/, counting the C and C++ files git tracks, and in them
# every line that is neither blank nor only a // comment (files deleted but
# not yet committed are skipped). The house keeps the share at a quarter to a
# third.
#   scripts/test_share.sh [--max PERCENT]    (exits 1 when the share is above PERCENT)
set -euo pipefail
cd "$(dirname "$0")/.."

count() {
  git ls-files -z -- "$@" | { grep -zE '\.(c|cc|cpp|cxx|h|hh|hpp)$' || true; } |
    { xargs -0r grep -sHcvE '^\s*(//.*)?$' -- || true; } | awk -F: '{ n += $NF } END { print n + 0 }'
}

code=$(count src include tools)
tests=$(count tests fuzz)
share=$(awk -v t="$tests" -v c="$code" 'BEGIN { printf "%.1f", c ? 100 * t / c : 0 }')
echo "test share: $tests test lines / $code code lines = $share%"

if [ "${1:-}" = "--max" ]; then
  awk -v s="$share" -v m="$2" 'BEGIN { exit !(s <= m) }' || { echo "test share above $2%" >&2; exit 1; }
fi
