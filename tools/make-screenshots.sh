#!/usr/bin/env bash
# Photographs the flash dialog and the message alerts for docs/screenshots/: runs the flash
# UI tests (tests/flash/) on a private Xvfb display and keeps the pictures they take.
#   tools/make-screenshots.sh [BUILD_DIR]     (default: build; configured if need be)
# Needs the flash bundle's build requirements plus xvfb, xdotool and ImageMagick.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${1:-build}
cd "$here"

[ -f "$build/CMakeCache.txt" ] || cmake -S . -B "$build" -DXP_BUILD_FLASH=ON > /dev/null
cmake --build "$build" --target flash_ui_tests -j "$(nproc 2> /dev/null || echo 2)"

shots=$(mktemp -d)
trap 'rm -rf "$shots"' EXIT
bash tests/flash/run-under-xvfb.sh bash tests/flash/flash-ui.sh run \
  "$build/tests/flash_ui_tests" --shots="$shots" --gtest_filter='-*NoDisplay*'

# The tests take more pictures than the gallery shows: these are the ones it does.
pictures=(
  dialog-splash dialog-please-wait dialog-please-wait-turned-ok dialog-titled-ok
  dialog-nib-texts dialog-missing-logo alert-one-button alert-two-buttons alert-non-ascii
)
mkdir -p docs/screenshots
for picture in "${pictures[@]}"; do
  cp "$shots/$picture.png" "docs/screenshots/flash-$picture.png"
done
echo "${#pictures[@]} pictures in docs/screenshots/"
