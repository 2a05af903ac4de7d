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

# Container texts of both variants give back every file byte for byte.
printf '\211PNG\r\n\032\n\0\0\0\rIHDR\0\0\0\001\0\0\0\001\010\002\0\0\0' > "$work/dot.png"
mkdir "$work/hex" "$work/b64" "$work/typed" "$work/broken"
"$xptool" container pack "$samples/menu-macroman.txt" "$work/dot.png" > "$work/both.hex"
"$xptool" container unpack --into "$work/hex" "$work/both.hex" 2> /dev/null
check "hex container gives back the sample" cmp -s "$samples/menu-macroman.txt" "$work/hex/1.FILE"
check "hex container gives back the PNG" cmp -s "$work/dot.png" "$work/hex/2.PNGf"
"$xptool" container pack --base64 "$samples/menu-macroman.txt" "$work/dot.png" |
  "$xptool" container unpack --into "$work/b64" 2> "$work/b64.report"
check "base64 container gives back the sample" cmp -s "$samples/menu-macroman.txt" "$work/b64/1.FILE"
check "base64 container gives back the PNG" cmp -s "$work/dot.png" "$work/b64/2.PNGf"
check "unpack tells the variant" grep -q "2 streams from a base64 container text" "$work/b64.report"
"$xptool" container pack --type "PDF " "$work/dot.png" | "$xptool" container unpack --into "$work/typed" 2> /dev/null
check "--type names the stream" cmp -s "$work/dot.png" "$work/typed/1.PDF"
head -c 300 "$work/both.hex" > "$work/cut.hex"
check "a cut container text fails" exits_with 1 "$xptool" container unpack --into "$work/broken" "$work/cut.hex"
check "with its result code" grep -q "result -50" "$work/stderr"
check "and leaves no file behind" test -z "$(ls -A "$work/broken")"
check "a type of three characters" exits_with 2 "$xptool" container pack --type PDF "$work/dot.png"

# UTF-8 text, URL encoding and charset repair.
check "urlencode escapes the UTF-8 bytes, a space as %20" \
  cmp -s <(printf 'a b&\xc3\xa9~' | "$xptool" urlencode) <(printf '%s' 'a%20b%26%C3%A9~')
check "utf8 encode writes what the host writes as UTF-8" \
  cmp -s <("$xptool" utf8 encode --from ASCII_Mac "$work/all.mac") "$work/all.utf8"
check "utf8 decode gives valid UTF-8 back unchanged" cmp -s <("$xptool" utf8 decode "$work/all.utf8") "$work/all.utf8"
check "utf8 decode lets stray continuation bytes through as Latin-1" \
  cmp -s <(printf 'caf\xc3\xa9 \xa9' | "$xptool" utf8 decode) <(printf 'caf\xc3\xa9 \xc2\xa9')
page="$samples/menu-utf8.html"
check "the sample page read as Mac Roman is garbled" \
  test "$("$xptool" convert --from ASCII_Mac --to UTF8 "$page" | md5sum)" != "$(md5sum < "$page")"
check "reinterpret --meta repairs it by its meta tag" cmp -s <("$xptool" reinterpret --from ASCII_Mac --meta "$page") "$page"
check "reinterpret --to UTF8 repairs it too" cmp -s <("$xptool" reinterpret --from ASCII_Mac --to UTF8 "$page") "$page"
check "an XML declaration naming windows-1252 changes nothing" \
  cmp -s <(printf '<?xml version="1.0" encoding="windows-1252"?><a>\xc3\xa9</a>' |
    "$xptool" reinterpret --from ISO_8859_1 --meta) <(printf '<?xml version="1.0" encoding="windows-1252"?><a>\xc3\x83\xc2\xa9</a>')
check "reinterpret --help explains the command" grep -q "usage: xptool reinterpret" <("$xptool" reinterpret --help)
check "reinterpret needs --to or --meta" exits_with 2 "$xptool" reinterpret --from UTF8 "$page"
check "utf8 needs encode or decode" exits_with 2 "$xptool" utf8 "$page"
check "urlencode of an unreadable file" exits_with 1 "$xptool" urlencode "$work/does-not-exist"

# Substitution, line ends and switches strings.
printf 'Cr\xc3\xa8me CR\xc3\x88ME\0bc' > "$work/creme.utf8"
check "substitute ignores case beyond ASCII and keeps NUL bytes" \
  cmp -s <("$xptool" substitute "crème" "x" "$work/creme.utf8") <(printf 'x x\0bc')
check "substitute never searches its replacement again" test "$(printf aaa | "$xptool" substitute a aa)" = aaaaaa
printf 'a\nb\r\nc\r' > "$work/ends.txt"
check "lineends crlf makes every line end CR LF" cmp -s <("$xptool" lineends crlf "$work/ends.txt") <(printf 'a\r\nb\r\nc\r\n')
check "lineends cr makes every line end CR" cmp -s <("$xptool" lineends cr < "$work/ends.txt") <(printf 'a\rb\rc\r')
check "lineends lf-to-cr leaves CR LF as CR CR" cmp -s <("$xptool" lineends lf-to-cr "$work/ends.txt") <(printf 'a\rb\r\rc\r')
check "switch --has has no word boundary" test "$("$xptool" switch --has -WAIT '-NoDialog -Waiting')" = true
check "switch --has answers false" test "$("$xptool" switch --has -Quiet '-NoDialog')" = false
check "switch --tag --number stops at the next switch" \
  test "$("$xptool" switch --tag -timeout= --number '-Timeout=30-Other')" = 30
check "switch --tag --number never reads a minus sign" test "$("$xptool" switch --tag -t= --number '-t=-5')" = none
check "switch --tag prints the value up to --end" \
  test "$("$xptool" switch --tag name= --end ';' 'id=7;Name=Joe Doe;x')" = "Joe Doe"
check "lineends --help names the converter modes" grep -q "mode 10" <("$xptool" lineends --help)
check "lineends needs a known mode" exits_with 2 "$xptool" lineends lf "$work/ends.txt"
check "substitute needs a replacement" exits_with 2 "$xptool" substitute x
check "switch takes --has or --tag, not both" exits_with 2 "$xptool" switch --has a --tag b text
check "switch --number goes with --tag" exits_with 2 "$xptool" switch --has a --number text
check "switch --tag of a missing tag" exits_with 1 "$xptool" switch --tag -x= '-a'

# Hex text and base64: the RFC 4648 vectors (section 10), every byte value, and
# a file of several slices, through every mode.
for pair in ":" "f:Zg==" "fo:Zm8=" "foo:Zm9v" "foob:Zm9vYg==" "fooba:Zm9vYmE=" "foobar:Zm9vYmFy"; do
  check "base64 of '${pair%%:*}'" test "$(printf %s "${pair%%:*}" | "$xptool" base64 encode --line-length 0)" = "${pair#*:}"
done
check "hex of foobar" test "$(printf foobar | "$xptool" hex encode)" = 666F6F626172
printf "$(printf '\\%03o' $(seq 0 255))" > "$work/bytes"
head -c 2500000 /dev/urandom >> "$work/bytes"
"$xptool" hex encode "$work/bytes" > "$work/bytes.hex"
"$xptool" base64 encode "$work/bytes" > "$work/bytes.b64"
check "hex decode inverts hex encode" cmp -s <("$xptool" hex decode "$work/bytes.hex") "$work/bytes"
check "base64 decode inverts base64 encode" cmp -s <("$xptool" base64 decode "$work/bytes.b64") "$work/bytes"
check "base64 lines are 76 characters and CR LF" test "$(head -c 78 "$work/bytes.b64" | tail -c 2 | od -An -c | tr -d ' ')" = '\r\n'
tr -d '\n' < "$work/bytes.b64" > "$work/bytes.b64cr"
check "base64 --mode hex reads hex text, lines end with CR" \
  cmp -s <("$xptool" base64 encode --mode hex "$work/bytes.hex") "$work/bytes.b64cr"
check "base64 decode --mode hex writes hex text" \
  cmp -s <("$xptool" base64 decode --mode hex "$work/bytes.b64") <(tr -d '\n' < "$work/bytes.hex")
check "base64 --mode bin reads what decode --mode bin writes" \
  cmp -s <("$xptool" base64 decode --mode bin "$work/bytes.b64" | "$xptool" base64 encode --mode bin) "$work/bytes.b64cr"
check "bin text escapes NUL and backslash" \
  test "$(printf 'A\0\\' | "$xptool" base64 encode --line-length 0 | "$xptool" base64 decode --mode bin)" = 'A\0\\'
check "hex decode takes lower case and line breaks" test "$(printf '66 6f\n6F' | "$xptool" hex decode)" = foo
check "base64 --help explains the command" grep -q "usage: xptool base64 encode" <("$xptool" base64 --help)
check "base64 needs encode or decode" exits_with 2 "$xptool" base64 "$work/bytes"
check "base64 of an unknown mode" exits_with 2 "$xptool" base64 encode --mode octal "$work/bytes"
check "base64 of a negative line length" exits_with 2 "$xptool" base64 encode --line-length -1 "$work/bytes"
check "base64 decode takes no line length" exits_with 2 "$xptool" base64 decode --line-length 76 "$work/bytes.b64"
check "hex decode of a non-digit" exits_with 1 "$xptool" hex decode <(printf '4G')
check "hex decode of an odd digit count" exits_with 1 "$xptool" hex decode <(printf '414')
check "hex of an unreadable file" exits_with 1 "$xptool" hex encode "$work/does-not-exist"

# Dates from Mac seconds, and messages from a bundle's strings table.
check "date of the last Mac second" grep -q '^iso: *2040-02-06 06:28:15$' <("$xptool" date 0xFFFFFFFF)
check "date 0 is host day 695056" grep -q '^host: *day 695056, second 0$' <("$xptool" date 0)
check "date writes the long style of LC_ALL" grep -q '^long: *6\. Februar 2040$' <(LC_ALL=de_DE.UTF-8 "$xptool" date 4294967295)
check "date writes short, medium and long" \
  test "$(LC_ALL=en_US.UTF-8 "$xptool" date 43200 | grep -cE '^(short|medium|long): +[^ ]')" = 3
check "date of a negative number" exits_with 2 "$xptool" date -1
check "date past 32 bits" exits_with 2 "$xptool" date 4294967296
bundle="$work/Msgs.bundle"
mkdir -p "$bundle/Contents/Resources/en.lproj"
printf '<?xml version="1.0" encoding="UTF-8"?>\n<plist version="1.0"><dict><key>CFBundleDevelopmentRegion</key><string>en</string></dict></plist>\n' \
  > "$bundle/Contents/Info.plist"
printf '"1" = "Disk full (code 3)";\n"131" = "Never read";\n"MSG_007" = "Seven";\n' \
  > "$bundle/Contents/Resources/en.lproj/Msgs.strings"
check "strings reads message 131 as message 1" test "$("$xptool" strings "$bundle" Msgs 131)" = "Disk full (code 3)"
check "strings --cut drops the text from its parenthesis" test "$("$xptool" strings --cut "$bundle" Msgs 1)" = "Disk full "
check "strings --format makes the key" test "$("$xptool" strings --format MSG_%03d "$bundle" Msgs 7)" = Seven
check "strings --help explains the key format" grep -q -- "--format MSG_%03d" <("$xptool" strings --help)
check "strings of a missing message" exits_with 1 "$xptool" strings "$bundle" Msgs 2
check "strings of a missing bundle" exits_with 1 "$xptool" strings "$work/none.bundle" Msgs 1
check "strings --format with a string conversion" exits_with 2 "$xptool" strings --format %s "$bundle" Msgs 1

# log: the line lands in Logs/Varn Logs, counted up from the folder that holds xptool.
mkdir -p "$work/logs/a/b/c/d" "$work/nolog"
cp "$xptool" "$work/logs/a/b/c/d/xptool"
cp "$xptool" "$work/nolog/xptool"
touch "$work/nolog/Logs"
logged=$("$work/logs/a/b/c/d/xptool" log --app-type 1 --tag srv 'café opened')
check "log prints the server log's path" test "$logged" -ef "$work/logs/a/Logs/Varn Logs/Varn Plugin FMServer.log"
check "log appends time, tag and text" \
  grep -qE '^[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2} \[srv\] café opened$' "$logged"
check "log of a debug line says where it went" \
  test "$("$work/logs/a/b/c/d/xptool" log --app-type 101 --tag dbg hi 2> "$work/log.err")" = "standard error"
check "log of a debug line writes it to standard error" test "$(cat "$work/log.err")" = "[dbg] hi"
check "log of a debug line makes its file beside xptool" test -f "$work/logs/a/b/c/d/Logs/Varn Logs/VarnDebug.log"
check "log where no Logs folder can be made" exits_with 1 "$work/nolog/xptool" log --app-type 101 --tag t text
check "log needs --tag" exits_with 2 "$xptool" log --app-type 1 text
check "log of a type that is no number" exits_with 2 "$xptool" log --app-type web --tag t text
check "log --help explains the command" grep -q "usage: xptool log" <("$xptool" log --help)

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
