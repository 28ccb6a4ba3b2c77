#!/usr/bin/env bash
# Draws the README's picture with the running library. Needs the build of scripts/demo.sh and pngquant.
set -euo pipefail
cd "$(dirname "$0")/.."
pictures=docs/pictures
mkdir -p "$pictures"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export QT_QPA_PLATFORM=offscreen

# One answer in every style and template.
echo '{"code": 200, "data": [{"adId": "1", "sourceName": "雾山茶", "sourceLogo": "${BASE}/creatives/logo-tea.png",
    "images": [{"url": "${BASE}/creatives/tea-wide.jpg"}, {"url": "${BASE}/creatives/isle-square.jpg"},
        {"url": "${BASE}/creatives/radio-square.jpg"}],
    "texts": [{"type": "TXT", "content": "第一口春天，来自云雾深处"}],
    "urlInfo": {"h5url": "${BASE}/landing/tea"}}]}' >"$work/answer.json"
build/dev/examples/player/zntads-player --data-dir "$work/data" --events /dev/null --log off \
    --answer "$work/answer.json" --sizes 320x568 --out "$work/preview.png" preview
pngquant --force --output "$pictures/preview.png" "$work/preview.png"
