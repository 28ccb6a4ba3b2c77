#!/usr/bin/env bash
# Renders the library's artwork, src/resources/*.svg, at one, two and three pixels a point.
# Needs rsvg-convert, pngquant and zopflipng (Debian: librsvg2-bin, pngquant, zopfli).
set -euo pipefail
cd "$(dirname "$0")/../src/resources"

for source in *.svg; do
    name=${source%.svg}
    for scale in 1 2 3; do
        suffix=$([ "$scale" -gt 1 ] && echo "@${scale}x" || true)
        rsvg-convert --zoom "$scale" --output "$name$suffix.png" "$source"
        pngquant --force --skip-if-larger --quality 98-100 --speed 1 --output "$name$suffix.png" "$name$suffix.png" ||
            [ $? -ge 98 ] # a picture that needs more colours is kept as it is
        zopflipng -y --lossy_transparent "$name$suffix.png" "$name$suffix.png" >/dev/null
    done
done
