#!/usr/bin/env bash
# The flash bundle's exported symbols against what the main plug-in may use: the plain entry
# points and settings undecorated, every toolkit function under its typed name, and nothing
# else, so neither the host operations nor the platform layer, the C++ library, ICU or
# GNUstep. The archives name the code linked in whole: each of their toolkit functions must
# be exported.
#   exported_symbols_test.sh BUNDLE_EXECUTABLE ARCHIVE...
set -euo pipefail

bundle=$1
shift

# Looked up by name by the main plug-in, or read by it: exported exactly so.
plain=(
  Kest7_LoadMyCocoaFlashPlugin Kest7_UnLoadMyCocoaFlashPlugin
  KestCocoa_CALLShowPluginFlashDialog Vn7BundleFlash_VersionFunc
  CX_DisplayMessageAlert CX_DisplayMessageAlert2Button CX_DisplayFlashDialogSimple
  gFlashBundlePtr gKestBundle_CALLShowPluginFlashDialogFunc
  gMyErrorChar gBetterEncoding_ASCII_Mac pseudo gXP7_Debug_GoDebugTxt gXP_StartupCount
  gThePluginLogPtr gDebugToFile gDefaultDebugFSRefPtr
)
# Toolkit functions, and the toolkit's tables, by the start of their names.
toolkit='^(XP_|XP7_|XP64_|Vn|VN|PluginCocoa_)[A-Za-z0-9_]*'

failures=0
# check TITLE LINES: a failure when there are lines.
check() {
  if [ -n "$2" ]; then
    echo "$1:" >&2
    echo "$2" | sed 's/^/  /' >&2
    failures=$((failures + 1))
  fi
}

exported=$(nm -D --defined-only "$bundle" | awk '{print $NF}' | sort -u)
[ -n "$exported" ] || { echo "nothing exported by $bundle" >&2; exit 1; }
plainSorted=$(printf '%s\n' "${plain[@]}" | sort)

check "plain names missing" "$(comm -23 <(echo "$plainSorted") <(echo "$exported"))"

# Each name of a list with its demangled form after a tab.
demangled() { paste <(echo "$1") <(echo "$1" | c++filt); }

# Every other exported name is a toolkit table, or a toolkit function whose demangled name
# starts with a toolkit prefix.
check "exported beyond the toolkit and the entry points" "$(
  demangled "$(comm -23 <(echo "$exported") <(echo "$plainSorted"))" | while IFS=$'\t' read -r symbol name; do
    [[ $symbol == _Z* && $name =~ ${toolkit}\( || $symbol =~ ${toolkit}$ ]] || echo "$symbol ($name)"
  done)"

# Linked in whole: every toolkit function and table of the archives is there.
for archive in "$@"; do
  defined=$(nm --defined-only -g "$archive" | awk 'NF == 3 && $2 ~ /[TDBR]/ {print $3}' | sort -u)
  check "toolkit functions of $(basename "$archive") not exported" "$(
    demangled "$defined" | while IFS=$'\t' read -r symbol name; do
      if [[ $name =~ ${toolkit}(\(|$) ]]; then echo "$symbol"; fi
    done | comm -23 - <(echo "$exported"))"
done

# The host operations come from whatever loads the bundle.
[[ $(nm -D --undefined-only "$bundle") == *" FM_Text_Constructor1"* ]] ||
  check "host operations not imported" "FM_Text_Constructor1"

if [ "$failures" -gt 0 ]; then exit 1; fi
echo "$(echo "$exported" | wc -l) symbols exported, as expected"
