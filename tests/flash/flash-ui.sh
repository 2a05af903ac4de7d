#!/usr/bin/env bash
# Real X input and screen grabs for the flash UI tests, and the start of their program.
#   flash-ui.sh run COMMAND [ARGS...]     run COMMAND with GNUstep's daemons already up
#   flash-ui.sh click X Y                 click mouse button 1 at X, Y (X coordinates: y down)
#   flash-ui.sh shot FILE [WxH+X+Y]       grab the whole screen, or that part of it, as PNG
#   flash-ui.sh colors FILE WxH+X+Y       print how many distinct colours that part of FILE has
#   flash-ui.sh pixel FILE X Y            print the colour of one pixel of FILE as R,G,B
# Needs DISPLAY (run-under-xvfb.sh sets it), xdotool and ImageMagick.
set -eu

command_name=${1:-}
[ $# -gt 0 ] && shift

case "$command_name" in
  run)
    # GNUstep starts gdnc and gpbs on demand, and they inherit the program's output: a
    # harness reading that output would then wait for daemons that never end. Started
    # here, they write nowhere; a second copy of either sees the first and leaves.
    gdnc > /dev/null 2>&1 < /dev/null &
    gpbs > /dev/null 2>&1 < /dev/null &
    exec "$@"
    ;;
  click)
    # A quick "click 1" gets lost: GNUstep needs the pointer to have arrived, and the
    # button to stay down a moment, to see a press and a release. (--sync would wait for
    # a move that never comes when the pointer is already there.)
    xdotool mousemove "$1" "$2"
    sleep 0.3
    xdotool mousedown 1
    sleep 0.15
    xdotool mouseup 1
    ;;
  shot)
    if [ $# -ge 2 ]; then
      import -window root -crop "$2" +repage "$1"
    else
      import -window root "$1"
    fi
    ;;
  colors)
    convert "$1" -crop "$2" +repage -format '%k\n' info:
    ;;
  pixel)
    convert "$1" -format "%[fx:int(255*p{$2,$3}.r)],%[fx:int(255*p{$2,$3}.g)],%[fx:int(255*p{$2,$3}.b)]\n" info:
    ;;
  *)
    echo "usage: $0 run COMMAND... | click X Y | shot FILE [WxH+X+Y] | colors FILE WxH+X+Y | pixel FILE X Y" >&2
    exit 2
    ;;
esac
