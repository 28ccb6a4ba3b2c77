#!/usr/bin/env bash
# Runs every benchmark, or those of the programs that are named, with its peer in the same run, and prints one
# table: the median of the runs, from the least to the most, beside the limit. The figures are kept as JSON in
# build/bench/bench.json; the status is 1 when one is short of its limit. On a machine at rest. Usage: scripts/bench.sh [RUNS [PROGRAM…]]   (5, all)
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build bench
cmake --preset bench >/dev/null
cmake --build --preset bench >/dev/null
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
HOME=$home XDG_RUNTIME_DIR=$home QT_QPA_PLATFORM=offscreen \
    python3 benchmarks/run.py build/bench/benchmarks build/bench/bench.json "${1:-5}" "${@:2}"
