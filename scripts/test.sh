#!/usr/bin/env bash
# Builds a preset (default: debug) and runs every test with ctest.
# Usage: scripts/test.sh [debug|release|asan|tsan]
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-debug}"
scripts/ensure-deps.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" -j"$(nproc)"
ctest --preset "$preset" -j"$(nproc)"
