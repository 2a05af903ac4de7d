#!/usr/bin/env bash
# The README's demo, unattended: demo_host on an Xvfb of its own (DISPLAY is unset), with
# every button clicked by real X input. It must end with 0 and leave a PNG of each dialog.
#   tests/demo/demo_host_test.sh DEMO_HOST WORK_DIR
# Exits 77, which ctest counts as skipped, when Xvfb, xdotool or ImageMagick is missing.
set -u

demo=$1
work=$2
for tool in Xvfb xdotool import; do
  if ! command -v "$tool" > /dev/null 2>&1; then
    echo "SKIPPED: $tool is not installed (apt-get install xvfb xdotool imagemagick)" >&2
    exit 77
  fi
done

rm -rf "$work"
mkdir -p "$work"
# GNUstep catches SIGTERM: only SIGKILL ends a hung modal loop.
env -u DISPLAY timeout -s KILL "${XP_DEMO_TIMEOUT:-240}" "$demo" --auto --out "$work" "Text given on the command line"
status=$?
if [ "$status" -ne 0 ]; then
  echo "demo_host ended with $status" >&2
  exit 1
fi

failed=0
for name in demo-1-splash demo-2-please-wait demo-3-please-wait-ok demo-4-titled demo-5-alert; do
  shot="$work/screenshots/$name.png"
  if [ ! -s "$shot" ]; then
    echo "missing: $shot" >&2
    failed=1
  elif [ "$(head -c 8 "$shot" | od -An -tx1 | tr -d ' \n')" != "89504e470d0a1a0a" ]; then
    echo "not a PNG: $shot" >&2
    failed=1
  fi
done
exit $failed
