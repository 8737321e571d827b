# Installs the Debian packages that are missing, and nothing else; sourced by
# the other scripts. Needs root (or sudo) only when something is missing.
ensure_packages() {
  missing=""
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing="$missing $package"
  done
  [ -z "$missing" ] && return 0
  echo "installing:$missing"
  sudo_cmd=""
  if [ "$(id -u)" -ne 0 ]; then
    if command -v sudo >/dev/null 2>&1; then sudo_cmd="sudo"; else
      echo "missing packages:$missing (run as root or install them)" >&2; return 1
    fi
  fi
  export DEBIAN_FRONTEND=noninteractive
  $sudo_cmd apt-get update -qq
  # shellcheck disable=SC2086
  $sudo_cmd apt-get install -y -qq --no-install-recommends $missing >/dev/null
}

# What the library, its tests, tools and benchmarks need to build; the Python
# package (pybind11, numpy) and its batch on Dask, with pytest for its tests.
MORVANE_BUILD_PACKAGES="cmake make g++ pkgconf libboost-dev libgtest-dev libbenchmark-dev libjpeg62-turbo-dev libpng-dev libexif-dev
  pybind11-dev python3-dev python3-numpy python3-pytest python3-dask python3-distributed"

# What the fuzz targets need: clang with its libFuzzer and sanitizer runtimes,
# and Python for the seed corpus.
MORVANE_FUZZ_PACKAGES="cmake make clang-14 libclang-rt-14-dev libboost-dev python3"
