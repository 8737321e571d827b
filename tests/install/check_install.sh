#!/bin/sh
# Installs the built library into a prefix of its own, as
# `cmake --install build --prefix DIR` does, and builds a small C consumer
# against it with the settings the README gives for such a prefix: CMake's
# find_package with CMAKE_PREFIX_PATH, pkg-config with PKG_CONFIG_PATH, and
# at run time LD_LIBRARY_PATH or a run path. The installed tool runs from the
# prefix without any of them.
set -eu
build=$1
consumer=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix="$work/prefix"
cmake --install "$build" --prefix "$prefix" >/dev/null
libdir=$(dirname "$(find "$prefix" -name 'libmorvane16.so.16' | head -n 1)")
unset LD_LIBRARY_PATH PKG_CONFIG_PATH CMAKE_PREFIX_PATH

# CMake: a program built against the imported target keeps the library's
# folder as its run path in the build tree.
cmake -S "$consumer" -B "$work/cmake-build" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
"$work/cmake-build/consumer"

# pkg-config: once with LD_LIBRARY_PATH at run time, once with a run path.
export PKG_CONFIG_PATH="$libdir/pkgconfig"
cc -std=c99 -Wall -Werror -o "$work/consumer-pc" "$consumer/consumer.c" $(pkg-config --cflags --libs morvane)
LD_LIBRARY_PATH="$libdir" "$work/consumer-pc"
cc -std=c99 -Wall -Werror -o "$work/consumer-rpath" "$consumer/consumer.c" $(pkg-config --cflags --libs morvane) \
  -Wl,-rpath,"$(pkg-config --variable=libdir morvane)"
"$work/consumer-rpath"

if [ -x "$prefix/bin/morvane-scan" ]; then
  "$prefix/bin/morvane-scan" --version >/dev/null
fi
