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

# One short line for each line of JSON.
timeline() { # WHO
    local line
    while IFS= read -r line; do printf '%-9s %s\n' "$1" "$("in_words_of_the_$1" "$line")"; done
}
member() { # NAME LINE: its value as text, empty without one
    sed -nE "s/.*\"$1\": ?\"?((\\\\.|[^\"\\,}])*)\"?[,}].*/\1/p" <<<"$2"
}
in_words_of_the_player() {
    local ms event rest
    ms=$(member ms "$1") event=$(member event "$1")
    rest=$(sed -E 's/^\{"ms":[0-9]+,"event":"[^"]*",?//; s/\}$//; s/"([a-zA-Z]+)":/\1 /g; s/,([a-zA-Z]+) /, \1 /g; s/"//g' <<<"$1")
    rest=${rest#action }
    printf '%6d.%03d s  %s%s' $((ms / 1000)) $((ms % 1000)) "$event" "${rest:+: $rest}"
}
in_words_of_the_exchange() {
    local signed
    case $(member signatureOk "$1") in
        true) signed=", rightly signed" ;;
        false) signed=", WRONGLY SIGNED" ;;
    esac
    if [ "$(member event "$1")" = listening ]; then
        printf 'listens at %s and %s' "$(member https "$1")" "$(member http "$1")"
    else
        printf '%s %s%s' "$(member method "$1")" "$(member path "$1")" "${signed:-}"
    fi
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

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && [ "${QT_QPA_PLATFORM:-}" != offscreen ]; then
    echo "== The studio: any ad, at any size; it stays until it is closed"
    play studio
fi
