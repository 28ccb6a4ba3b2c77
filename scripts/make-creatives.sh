#!/usr/bin/env bash
# Renders the sandbox's creatives from their SVG sources: pictures, logos and a short looping video.
# The results are kept in the repository; run this after changing a source.
# What it needs is installed by: scripts/setup.sh art
set -euo pipefail
cd "$(dirname "$0")/../sandbox/creatives"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

encode() { ffmpeg -v error -y -bitexact "$@"; }

picture() { # SOURCE WIDTH RESULT [FILTER]
    rsvg-convert --width "$2" --keep-aspect-ratio "$1.svg" -o "$scratch/picture.png"
    encode -i "$scratch/picture.png" -vf "${4:-null}" -pix_fmt yuvj420p -q:v 3 "$3.jpg"
}

picture splash 1500 splash
picture interstitial 1000 interstitial
picture tea 1280 tea-wide
picture isle 1280 isle-wide
picture radio 1280 radio-wide
picture tea 1280 tea-square "crop=680:680:600:40,scale=600:600"
picture isle 1280 isle-square "crop=560:560:640:130,scale=600:600"
picture radio 1280 radio-square "crop=620:620:330:100,scale=600:600"
for logo in logo-tea logo-isle; do
    rsvg-convert "$logo.svg" -o "$logo.png"
done

# Three seconds that end where they begin: the boat rocks, waves, clouds and birds drift and return.
frames=60
for ((i = 0; i < frames; i++)); do
    read -r rock heave drift <<<"$(awk -v i=$i -v n=$frames 'BEGIN {
        a = 2 * atan2(0, -1) * i / n
        printf "%.3f %.3f %.3f", 4 * sin(a), 6 * cos(a), 14 * sin(a) }')"
    sed -e "s/viewBox=\"0 0 1280 720\" width=\"1280\"/viewBox=\"735 0 405 720\" width=\"405\"/" \
        -e "/id=\"boat\"/s/translate(980 560)/translate(980 $(awk "BEGIN { print 560 + $heave }")) rotate($rock)/" \
        -e "/id=\"waves\"/s/translate(0 0)/translate($drift 0)/" \
        -e "/id=\"clouds\"/s/translate(0 0)/translate($heave 0)/" \
        -e "/id=\"birds\"/s/translate(0 0)/translate($drift $heave)/" isle.svg |
        rsvg-convert --width 540 --height 960 -o "$(printf '%s/frame%03d.png' "$scratch" "$i")"
done
encode -framerate 20 -i "$scratch/frame%03d.png" -c:v libx264 -profile:v high -pix_fmt yuv420p \
    -crf 26 -preset veryslow -movflags +faststart video.mp4
