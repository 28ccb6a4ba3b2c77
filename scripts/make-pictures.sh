#!/usr/bin/env bash
# Takes the README's pictures from the running library. Needs the build of scripts/demo.sh.
set -euo pipefail
cd "$(dirname "$0")/.."
pictures=docs/pictures
mkdir -p "$pictures"
bin=build/dev
work=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || true; rm -rf "$work"' EXIT

mkfifo "$work/exchange"
"$bin/sandbox/zntads-exchange" --state-dir "$work/state" >"$work/exchange" &
exec 3<"$work/exchange"
read -r listening <&3
cat <&3 >/dev/null &
field() { sed -E "s/.*\"$1\": ?\"([^\"]*)\".*/\1/" <<<"$listening"; }

export QT_QPA_PLATFORM=offscreen
player() {
    "$bin/examples/player/zntads-player" --exchange "$(field https)" --log-upload "$(field http)" \
        --ca-file "$(field ca)" --data-dir "$work/data" --log off --events /dev/null "$@"
}

player --screenshots "$pictures" tour
# The nine templates, one row each, as one sheet.
player --size 375x1800 --position feed --count 9 --at "1.5:screenshot:$pictures/feed.png" \
    --at 2:quit feed
