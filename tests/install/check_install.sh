#!/bin/sh
# Installs the built library into a temporary prefix and builds a small C
# consumer against it twice: with CMake's find_package and with pkg-config.
set -eu
build=$1
consumer=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work/prefix" >/dev/null
libdir=$(dirname "$(find "$work/prefix" -name 'libmorvane16.so.16' | head -n 1)")

cmake -S "$consumer" -B "$work/cmake-build" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
LD_LIBRARY_PATH="$libdir" "$work/cmake-build/consumer"

PKG_CONFIG_PATH="$libdir/pkgconfig" cc -std=c99 -Wall -Werror -o "$work/consumer-pc" "$consumer/consumer.c" \
  $(PKG_CONFIG_PATH="$libdir/pkgconfig" pkg-config --cflags --libs morvane)
LD_LIBRARY_PATH="$libdir" "$work/consumer-pc"
