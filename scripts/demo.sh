#!/usr/bin/env bash
# Builds the release preset and runs the demo: a generated test pattern through the
# library's main routes. Usage: scripts/demo.sh [output-dir]
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/ensure-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release -j"$(nproc)" --target zelt_tool
exec build/release/tools/zelt/zelt demo "$@"
