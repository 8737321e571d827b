#!/usr/bin/env bash
# Installs what is missing, builds the library, morvane-scan and the Python
# package (Release, into build/), and runs the tool on the bundled sample
# photo: the straightened page, its black-and-white form, the overlay and the
# JSON report go to out/. Then the Python batch straightens the sample on a
# local Dask cluster into out/batch/.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/deps.sh
# shellcheck disable=SC2086
ensure_packages $MORVANE_BUILD_PACKAGES

# The build's own lines go to the log; the screen shows how far the build of
# target $1 has got, from make's "[ 42%]" (or Ninja's "[12/80]"): on one line
# that counts up on a terminal, else a line at every tenth.
show_progress() {
  local tty=0
  if [ -t 1 ]; then tty=1; fi
  awk -v tty="$tty" -v target="$1" '
    match($0, /^\[ *[0-9]+%\]/) { done = substr($0, RSTART + 1, RLENGTH - 3) + 0 }
    match($0, /^\[[0-9]+\/[0-9]+\]/) { split(substr($0, 2, RLENGTH - 2), n, "/"); done = int(100 * n[1] / n[2]) }
    done != "" && done != shown && (tty || int(done / 10) != int(shown / 10) || shown == "") {
      shown = done
      if (tty) printf "\r  %s: %3d%% built", target, done; else printf "  %s: %3d%% built\n", target, done
      fflush()
    }
    END { if (tty && shown != "") print "" }'
}

log=build/demo-build.log
mkdir -p build
: >"$log"
echo "building morvane, morvane-scan and the Python package (Release) into build/ (log: $log) ..."
build_failed() {
  tail -n 30 "$log"
  echo "the build failed; the whole log is in $log" >&2
  exit 1
}
echo "  configuring"
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release >>"$log" 2>&1 || build_failed
targets=(morvane-scan)
build_python() { grep -q '^MORVANE_BUILD_PYTHON:BOOL=ON' build/CMakeCache.txt; }
if build_python; then targets+=(_morvane); fi
for target in "${targets[@]}"; do
  cmake --build build -j"$(nproc)" --target "$target" 2>&1 | tee -a "$log" | show_progress "$target" || build_failed
done

scan=build/tools/morvane-scan
sample=samples/page.jpg
mkdir -p out
corners=$(grep -v '^#' samples/page.corners | head -n 1)
run() { "$scan" "$sample" "$@" -o out/page.png --binarize sauvola --overlay out/overlay.png; }

status=0
args=()
echo "finding the page in $sample ..."
run || status=$?
if [ "$status" -eq 1 ]; then
  # No page found: rectify with the corners the sample photo was made with.
  echo "no page found; the demo falls back to the sample's known corners ($corners)"
  args=(--corners "$corners")
  status=0
  run "${args[@]}" || status=$?
fi
run "${args[@]}" --json >out/report.json || true

echo
if [ "$status" -eq 0 ]; then
  echo "the straightened page:  out/page.png"
  echo "in black and white:     out/page-bw.png"
else
  echo "no page written (exit code $status)"
fi
echo "the overlay:            out/overlay.png"
echo "the JSON report:        out/report.json"

if build_python; then
  python=$(sed -n 's/^Python_EXECUTABLE:FILEPATH=//p' build/CMakeCache.txt)
  echo
  echo "straightening $sample as a Dask batch ..."
  PYTHONPATH=build/python "$python" -m morvane.batch "$sample" -o out/batch --quiet || true
  echo "the Python package is in build/python: PYTHONPATH=build/python $python -m morvane.batch --help"
fi
exit "$status"
