#!/usr/bin/env bash
# Renders resources/PluginLogo.svg into the committed resources/PluginLogo.png (64 x 64, RGBA).
# Run it by hand after changing the SVG; the build copies the PNG and never needs ImageMagick.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# -background none keeps the tile's rounded corners transparent; -strip drops the time
# stamps, so an unchanged drawing gives the same bytes and no spurious change to commit.
convert -background none -density 72 "$here/resources/PluginLogo.svg" \
  -resize 64x64 -strip PNG32:"$here/resources/PluginLogo.png"
echo "wrote resources/PluginLogo.png"
