#!/usr/bin/env bash
# Builds everything and runs every test. Usage: scripts/test.sh [PRESET]   (dev, asan or tsan)
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-dev}

scripts/setup.sh build
cmake --preset "$preset"
cmake --build --preset "$preset"
ctest --preset "$preset" -j "$(($(nproc) + 1))" # most of them wait most of the time
