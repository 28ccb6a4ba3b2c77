#!/usr/bin/env bash
# The long forms of the tests that try to break the library, and one summary table. Hours; what is named runs alone.
# Usage: scripts/torture.sh [lives] [soak] [fuzz] [faults] [kills] [threads] [flakes]   (all)
#   lives    5,000 random lives under the address and undefined-behaviour sanitizers
#   soak     10,000 cycles of all formats in one process
#   fuzz     10 minutes at each door
#   faults   every fault on every endpoint
#   kills    200 processes that are killed while they log
#   threads  what the thread sanitizer is asked about
#   flakes   every test 50 times
set -euo pipefail
cd "$(dirname "$0")/.."
wanted=("$@")
[ ${#wanted[@]} -gt 0 ] || wanted=(lives soak fuzz faults kills threads flakes)
logs=build/torture
mkdir -p "$logs"

# test PRESET CTEST_ARGUMENT…
test() {
    cmake --preset "$1" >/dev/null
    cmake --build --preset "$1" >/dev/null
    ctest --preset "$1" "${@:2}"
}

# live PRESET LIVES CYCLES
live() {
    cmake --preset "$1" >/dev/null
    cmake --build --preset "$1" --target tst_lives >/dev/null
    HOME=$(mktemp -d) QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 LSAN_OPTIONS=suppressions=tests/lsan.supp \
        ZNTADS_SEED=${ZNTADS_SEED:-$RANDOM} ZNTADS_LIVES=$2 ZNTADS_CYCLES=$3 QTEST_FUNCTION_TIMEOUT=14400000 \
        "build/$1/tests/tst_lives"
}

lives() { live asan 5000 100; }
# One heap that gives back what is freed, lest its holes pass for growth.
soak() { MALLOC_ARENA_MAX=1 MALLOC_MMAP_THRESHOLD_=65536 live dev 1 10000; }
fuzz() { scripts/fuzz.sh 600; }
faults() { ZNTADS_ALL_FAULTS=1 test dev -R core/faults; }
kills() {
    cmake --preset dev >/dev/null
    cmake --build --preset dev --target tst_logger >/dev/null
    ZNTADS_KILLS=200 QTEST_FUNCTION_TIMEOUT=3600000 build/dev/tests/tst_logger losesASecondAtMostWhenKilled
}
threads() { test tsan; }
flakes() { test dev -E consumer --repeat until-fail:50 -j "$(nproc)"; }

scripts/setup.sh build
failed=0
summary=()
for name in "${wanted[@]}"; do
    case $name in lives | soak | fuzz | faults | kills | threads | flakes) ;; *) echo "torture.sh: no '$name'" >&2; exit 2 ;; esac
    echo "== $name"
    begun=$SECONDS result=ok
    "$name" >"$logs/$name.log" 2>&1 || { result=FAILED; failed=1; }
    told=$(grep -hoE '[0-9]+ lives from seed [0-9]+|[0-9]+ cycles: .*|tests passed.*|^(ad|configuration|http|picture|records|url) .*' \
        "$logs/$name.log" | paste -sd';' | cut -c1-300 || true)
    summary+=("$(printf '%-8s %-7s %6d s  %s' "$name" "$result" $((SECONDS - begun)) "$told")")
done
printf '%s\n' "" "${summary[@]}" "The logs are in $logs."
exit $failed
