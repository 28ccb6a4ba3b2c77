#!/usr/bin/env bash
# Takes the README's pictures from the running library. Needs the build of scripts/demo.sh and pngquant.
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
# One answer in every style and template.
echo '{"code": 200, "data": [{"adId": "1", "sourceName": "雾山茶", "sourceLogo": "${BASE}/creatives/logo-tea.png",
    "images": [{"url": "${BASE}/creatives/tea-wide.jpg"}, {"url": "${BASE}/creatives/isle-square.jpg"},
        {"url": "${BASE}/creatives/radio-square.jpg"}],
    "texts": [{"type": "TXT", "content": "第一口春天，来自云雾深处"}],
    "urlInfo": {"h5url": "${BASE}/landing/tea"}}]}' >"$work/answer.json"
build/dev/examples/player/zntads-player --data-dir "$work/data" --events /dev/null --log off \
    --answer "$work/answer.json" --sizes 320x568 --out "$work/preview.png" preview
pngquant --force --output "$pictures/preview.png" "$work/preview.png"
# The nine templates, one row each, as one sheet.
take --size 375x1800 --position feed --count 9 --at "1.5:screenshot:$pictures/feed.png" --at 2:quit feed
