#!/usr/bin/env bash
# xptool from the outside: round trips through its subcommands, and its answers
# to bad input. Arguments: the xptool binary, the samples folder.
set -u
xptool=$1
samples=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
passed=0
failed=0

check() {  # check NAME COMMAND...: the command must succeed
  if "${@:2}"; then passed=$((passed + 1)); else failed=$((failed + 1)); echo "FAILED: $1"; fi
}

exits_with() {  # exits_with CODE COMMAND...: the command must exit with CODE and say why on stderr
  local want=$1
  shift
  "$@" > /dev/null 2> "$work/stderr"
  local got=$?
  [ "$got" -eq "$want" ] && [ -s "$work/stderr" ]
}

# Every byte a Mac Roman file can hold survives UTF-8 and the way back.
printf "$(printf '\\%03o' $(seq 1 255))" > "$work/all.mac"
"$xptool" convert --from ASCII_Mac --to UTF8 "$work/all.mac" > "$work/all.utf8"
"$xptool" convert --from UTF8 --to ASCII_Mac "$work/all.utf8" > "$work/all.back"
check "Mac Roman round trip of all bytes" cmp -s "$work/all.mac" "$work/all.back"
check "UTF-8 output of Mac 0xDB is the euro sign" grep -q "€" "$work/all.utf8"

# Embedded NUL bytes and standard input.
printf 'a\0b\xe9' > "$work/nul.latin1"
"$xptool" convert --from iso_8859_1 --to UTF-8 < "$work/nul.latin1" > "$work/nul.utf8"
check "NUL bytes pass through convert" cmp -s "$work/nul.utf8" <(printf 'a\0b\xc3\xa9')
"$xptool" convert --from UTF8 --to ByteValues "$work/nul.utf8" > "$work/nul.bytes"
check "ByteValues writes code points as bytes" cmp -s "$work/nul.bytes" "$work/nul.latin1"

# The Mac/Windows tables are inverse, with and without the euro variant.
"$xptool" mac2win "$work/all.mac" | "$xptool" win2mac > "$work/plain.back"
"$xptool" mac2win --euro "$work/all.mac" | "$xptool" win2mac --euro > "$work/euro.back"
check "mac2win then win2mac gives every byte back" cmp -s "$work/all.mac" "$work/plain.back"
check "the euro tables give every byte back" cmp -s "$work/all.mac" "$work/euro.back"
check "mac2win --euro puts the euro sign on 0x80" cmp -s <(printf '\xdb' | "$xptool" mac2win --euro) <(printf '\x80')
check "mac2win keeps the currency sign on 0xA4" cmp -s <(printf '\xdb' | "$xptool" mac2win) <(printf '\xa4')

# The shipped sample.
"$xptool" convert --from ASCII_Mac --to UTF8 "$samples/menu-macroman.txt" > "$work/menu.utf8"
check "the sample reads as UTF-8 with its accents" grep -q "Crème brûlée" "$work/menu.utf8"

# Listing and help.
check "encodings lists ISO_8859_15 as 36" grep -qE '^36 +ISO_8859_15$' <("$xptool" encodings)
check "convert --help explains the command" grep -q "usage: xptool convert" <("$xptool" convert --help)

# Bad input: usage errors exit 2, failed work exits 1, each with a message.
check "unknown encoding" exits_with 2 "$xptool" convert --from UTF16 --to UTF8 "$work/all.mac"
check "missing --to" exits_with 2 "$xptool" convert --from UTF8 "$work/all.mac"
check "option without its value" exits_with 2 "$xptool" convert --from
check "unknown option" exits_with 2 "$xptool" mac2win --dollar
check "unknown command" exits_with 2 "$xptool" frobnicate
check "unreadable file" exits_with 1 "$xptool" convert --from UTF8 --to UTF8 "$work/does-not-exist"

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
