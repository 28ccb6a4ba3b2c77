#!/usr/bin/env bash
# Takes the README's pictures from the running library. Needs the build of scripts/demo.sh.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/exchange.sh
pictures=docs/pictures
mkdir -p "$pictures"
work=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || true; rm -rf "$work"' EXIT

start_exchange "$work/state" "$work/exchange"
cat <&3 >/dev/null &

export QT_QPA_PLATFORM=offscreen
take() { player "$work/data" --events /dev/null "$@"; }

take --screenshots "$pictures" tour
# The nine templates, one row each, as one sheet.
take --size 375x1800 --position feed --count 9 --at "1.5:screenshot:$pictures/feed.png" --at 2:quit feed
