#!/usr/bin/env bash
# Has libFuzzer enter every door, or those that are named, and prints one line for each: what was executed and
# found. Finds are kept in build/fuzz/finds. Usage: scripts/fuzz.sh [SECONDS [NAME…]]   (60, all)
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
names=("${@:2}")
[ ${#names[@]} -gt 0 ] || names=(ad configuration http picture records url)

scripts/setup.sh build fuzz
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target "${names[@]/#/fuzz_}" >/dev/null
finds=build/fuzz/finds
mkdir -p "$finds"
export ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=print_stacktrace=1

# What a run learns is kept beside the build for the next one.
fuzz() {
    local learnt=build/fuzz/learnt/$1 status=ok
    mkdir -p "$learnt"
    build/fuzz/tests/fuzz/fuzz_"$1" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=65536 \
        -artifact_prefix="$finds/$1-" -print_final_stats=1 "$learnt" "tests/fuzz/corpus/$1" \
        >"$finds/$1.log" 2>&1 || status="FOUND, see $finds/$1.log"
    awk -v name="$1" -v status="$status" '/number_of_executed_units/ {n = $2} /average_exec/ {rate = $2}
        /peak_rss/ {peak = $2} END {printf "%-14s %12d %8d /s %6d MB  %s\n", name, n, rate, peak, status}' "$finds/$1.log"
    [ "$status" = ok ]
}

printf '%-14s %12s %11s %9s\n' door executions rate peak
failed=0
for name in "${names[@]}"; do
    fuzz "$name" || failed=1
done
exit $failed
