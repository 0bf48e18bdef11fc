#!/usr/bin/env bash
# Renders the SVG drawings to the PNG files that the resource files list, at one, two and three
# pixels per unit: svg/add.svg gives add.png, add@2x.png and add@3x.png in the folder above it.
# The size in the drawing's first line is the size at one pixel per unit.
# Needs rsvg-convert (package librsvg2-bin).
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
command -v rsvg-convert >/dev/null || {
    echo "render-icons: rsvg-convert is missing; install librsvg2-bin" >&2
    exit 1
}

for svg in "$root"/valuewidgets/images/svg/*.svg "$root"/resources/svg/*.svg; do
    folder=$(dirname "$(dirname "$svg")")
    name=$(basename "$svg" .svg)
    for scale in 1 2 3; do
        suffix=$([ "$scale" = 1 ] || echo "@${scale}x")
        rsvg-convert --zoom "$scale" --output "$folder/$name$suffix.png" "$svg"
    done
done
