#!/usr/bin/env bash
# Runs a command on a private Xvfb display of its own and returns the command's status.
#   tests/flash/run-under-xvfb.sh COMMAND [ARGS...]
# Exits 77, which ctest counts as skipped, only when Xvfb is not installed. The command is
# killed after XP_XVFB_TIMEOUT seconds (default 300) with SIGKILL, because GNUstep catches
# SIGTERM and a hung modal loop would otherwise outlive the test.
set -u

if ! command -v Xvfb > /dev/null 2>&1; then
  echo "SKIPPED: Xvfb is not installed (apt-get install xvfb); the UI tests need an X server" >&2
  exit 77
fi

work=$(mktemp -d)
xvfb_pid=""
cleanup() {
  if [ -n "$xvfb_pid" ]; then
    kill "$xvfb_pid" 2> /dev/null
    wait "$xvfb_pid" 2> /dev/null
  fi
  rm -rf "$work"
}
trap cleanup EXIT

# -displayfd lets the server take the first free display number and report it once it
# accepts connections, so tests running side by side never race for a number.
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3> "$work/display" > "$work/xvfb.log" 2>&1 &
xvfb_pid=$!

display=""
for _ in $(seq 1 100); do
  display=$(tr -d '[:space:]' < "$work/display")
  [ -n "$display" ] && break
  if ! kill -0 "$xvfb_pid" 2> /dev/null; then
    echo "Xvfb failed to start:" >&2
    cat "$work/xvfb.log" >&2
    exit 1
  fi
  sleep 0.1
done
if [ -z "$display" ]; then
  echo "Xvfb reported no display within 10 s" >&2
  exit 1
fi

DISPLAY=":$display" timeout -s KILL "${XP_XVFB_TIMEOUT:-300}" "$@"
