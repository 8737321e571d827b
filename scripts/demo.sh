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

echo "building morvane, morvane-scan and the Python package (Release) into build/ ..."
log=build/demo-build.log
mkdir -p build
targets=(morvane-scan)
build_python() { grep -q '^MORVANE_BUILD_PYTHON:BOOL=ON' build/CMakeCache.txt; }
if ! { cmake -S . -B build -DCMAKE_BUILD_TYPE=Release && { ! build_python || targets+=(_morvane); } &&
       cmake --build build -j"$(nproc)" --target "${targets[@]}"; } >"$log" 2>&1; then
  tail -n 30 "$log"
  echo "the build failed; the whole log is in $log" >&2
  exit 1
fi

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
