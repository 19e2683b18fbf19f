#!/usr/bin/env bash
# Installs the library into a scratch prefix and builds a consumer program against
# it twice, through find_package(Zelt) and through pkg-config, then runs both.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/ensure-deps.sh pkg-config
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake -S . -B "$work/build" -DCMAKE_BUILD_TYPE=Release -DZELT_BUILD_TESTS=OFF -DZELT_BUILD_TOOLS=OFF >/dev/null
cmake --build "$work/build" -j"$(nproc)" --target zelt >/dev/null
cmake --install "$work/build" --prefix "$work/prefix" >/dev/null
lib=$(ls -d "$work"/prefix/lib*/ | head -n1)

cmake -S examples/consumer -B "$work/consumer" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
cmake --build "$work/consumer" >/dev/null
LD_LIBRARY_PATH="$lib" "$work/consumer/consumer"

PKG_CONFIG_PATH="$lib/pkgconfig" cc examples/consumer/consumer.c -o "$work/consumer-pc" \
  $(PKG_CONFIG_PATH="$lib/pkgconfig" pkg-config --cflags --libs zelt)
LD_LIBRARY_PATH="$lib" "$work/consumer-pc"
echo "package check: find_package and pkg-config consumers both ran"
