#!/usr/bin/env bash
# Builds the library, starts the sandbox exchange and shows every kind of ad, in a window where there
# is a display and off screen where there is none. What the player and the exchange tell is printed as
# it happens; the pictures are kept. Usage: scripts/demo.sh [PICTURES_DIR]
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/exchange.sh
pictures=$(realpath -m "${1:-screenshots}")

scripts/setup.sh build
cmake --preset dev
cmake --build --preset dev --target zntads-exchange zntads-player
work=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || true; rm -rf "$work"' EXIT

timeline() { # WHO: one line of JSON a line, cut to a width that a terminal shows
    while IFS= read -r line; do printf '%-9s %.170s\n' "$1" "$line"; done
}

echo "== The exchange starts"
start_exchange build/demo "$work/exchange"
timeline exchange <<<"$listening"
timeline exchange <&3 &
play() { player "$work/data" "$@" | timeline player; }

mkdir -p "$pictures"
echo "== A splash ad from its request to its close, with a tap at two seconds"
play --at "2:tap" --at "1:screenshot:$pictures/splash-375x812.png" splash

echo "== The three splash styles, the interstitial and the feed"
play --screenshots "$pictures" tour

echo "== The feed, scrolled through"
play --at "1:scroll:700" --at "1.5:screenshot:$pictures/feed-scrolled.png" --at "2:scroll:1400" \
    --at "3:quit" feed

echo "Pictures: $pictures"
ls "$pictures"
