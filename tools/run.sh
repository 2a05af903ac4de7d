#!/usr/bin/env bash
# Sets the project up on a Debian 12 machine and runs one of its jobs:
#   tools/run.sh demo   installs what is missing, builds, runs the main job
#   tools/run.sh test   installs what is missing, builds, runs every test
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$here"
jobs=$(nproc 2>/dev/null || echo 2)

packages=(cmake ninja-build g++ clang libclang-rt-14-dev libicu-dev icu-devtools libgtest-dev libgmock-dev libbenchmark-dev perl libssl-dev tzdata
  gobjc++ libgnustep-gui-dev gnustep-back0.29 gnustep-make xvfb xdotool imagemagick)

install_packages() {
  local missing=()
  for p in "${packages[@]}"; do
    dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
  done
  if [ ${#missing[@]} -gt 0 ]; then
    echo "== installing: ${missing[*]}"
    local sudo=""
    [ "$(id -u)" -eq 0 ] || sudo=sudo
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}" >/dev/null
  fi
}

build() {  # build DIR [cmake options...]
  local dir=$1
  shift
  cmake -S . -B "$dir" -G Ninja "$@" >/dev/null
  cmake --build "$dir" -j "$jobs"
}

# Every reader of untrusted text under libFuzzer for about 20 s, starting from
# the seeds in fuzz/corpus/<target>/ (new inputs go to build-fuzz, never there);
# a finding fails the job and leaves its input in build-fuzz/findings.
fuzz() {
  build build-fuzz -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang -DXP_BUILD_FUZZ=ON \
    -DXP_SANITIZE=address,undefined -DXP_BUILD_TESTS=OFF -DXP_BUILD_BENCH=OFF -DXP_BUILD_TOOLS=OFF
  mkdir -p build-fuzz/findings
  local seeds target corpus
  for seeds in fuzz/corpus/*/; do
    target=$(basename "$seeds")
    corpus=build-fuzz/corpus/$target
    mkdir -p "$corpus"
    echo "== fuzz_$target"
    if ! "build-fuzz/fuzz/fuzz_$target" -max_total_time=20 -max_len=4096 -timeout=10 \
         -artifact_prefix="build-fuzz/findings/$target-" "$corpus" "$seeds" 2> "build-fuzz/$target.log"; then
      tail -n 40 "build-fuzz/$target.log"
      echo "fuzz_$target found a failing input: see build-fuzz/findings/" >&2
      return 1
    fi
    grep -E '^Done' "build-fuzz/$target.log" || true
  done
}

case "${1:-}" in
  demo)
    install_packages
    # The flash parts are asked for whenever GNUstep and gobjc++ are there, so that a build
    # folder configured before they were installed gains them.
    flash=()
    if command -v gnustep-config > /dev/null && [ -x "$(g++ -print-prog-name=cc1objplus)" ]; then
      flash=(-DXP_BUILD_FLASH=ON)
    fi
    build build -DCMAKE_BUILD_TYPE=Release "${flash[@]}"
    if [ -x build/tools/demo-host/demo_host ]; then
      # Unattended: without DISPLAY the demo host starts an Xvfb of its own; --auto clicks
      # every button. GNUstep catches SIGTERM, so a hang is ended with SIGKILL.
      timeout -s KILL 300 build/tools/demo-host/demo_host --auto --out build/demo
      echo "== screenshots of every dialog: $here/build/demo/screenshots"
    else
      echo "== the flash bundle was not built (no GNUstep): the toolkit demo only"
      XPTOOL=build/tools/xptool bash tools/demo.sh
    fi
    ;;
  test)
    install_packages
    build build -DXP_WERROR=ON
    (cd build && ctest --output-on-failure -j "$jobs")
    # The encoding, host and toolkit tests again under AddressSanitizer and
    # UndefinedBehaviorSanitizer, built with clang so both compilers see the tree.
    build build-asan -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang -DCMAKE_BUILD_TYPE=Debug \
      -DXP_SANITIZE=address,undefined -DXP_WERROR=ON
    (cd build-asan && ASAN_OPTIONS=detect_leaks=1 ctest --output-on-failure -j "$jobs" -E package_consumer)
    if command -v clang++ > /dev/null; then
      fuzz
    fi
    ;;
  *)
    echo "usage: tools/run.sh demo|test" >&2
    exit 2
    ;;
esac
