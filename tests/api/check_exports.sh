#!/bin/sh
# Compares the dynamic symbols that the shared library defines with the
# functions that the public header declares: both lists must be equal.
set -eu
header=$1
library=$2
declared=$(sed -n 's/^MORVANE_API[^(]*[ *]\([a-z_0-9]*\)(.*/\1/p' "$header" | sort -u)
exported=$(nm -D --defined-only "$library" | awk '$2 ~ /^[TWBDRV]$/ {print $3}' | grep -v '^_' | sort -u)
others=$(nm -D --defined-only "$library" | awk '{print $3}' | grep '^_' | grep -Ev '^(_init|_fini|_edata|_end|__bss_start)$' || true)
if [ "$declared" != "$exported" ] || [ -n "$others" ]; then
  echo "declared in the header:"; echo "$declared"
  echo "exported by the library:"; echo "$exported"; echo "$others"
  exit 1
fi
echo "exports match the header: $(echo "$declared" | wc -l) functions"
