#!/usr/bin/env bash
# The main job: a Mac Roman menu converted to UTF-8 and back through host text,
# byte for byte, and the same file through the Mac/Windows tables and back.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
xptool=${XPTOOL:-xptool}
sample="$here/samples/menu-macroman.txt"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

echo "== $sample, Mac Roman with Mac line ends, shown as UTF-8:"
"$xptool" convert --from ASCII_Mac --to UTF8 "$sample" > "$work/menu.utf8"
tr '\r' '\n' < "$work/menu.utf8"

"$xptool" convert --from UTF8 --to ASCII_Mac "$work/menu.utf8" > "$work/menu.back"
if cmp -s "$sample" "$work/menu.back"; then
  echo "== UTF-8 and back to Mac Roman: all $(wc -c < "$sample") bytes identical"
else
  echo "== UTF-8 and back to Mac Roman: the bytes differ" >&2
  exit 1
fi

"$xptool" mac2win --euro "$sample" > "$work/menu.1252"
"$xptool" win2mac --euro "$work/menu.1252" > "$work/menu.mac"
echo "== the first line in Windows code page 1252, after mac2win --euro:"
"$xptool" convert --from ASCII_Windows --to UTF8 "$work/menu.1252" | tr '\r' '\n' | head -n 1
if cmp -s "$sample" "$work/menu.mac"; then
  echo "== win2mac after mac2win gives back every byte, also of the characters 1252 lacks"
else
  echo "== the Mac/Windows tables did not round-trip" >&2
  exit 1
fi
