#!/usr/bin/env bash
# wayland_test.sh SCALE BIN_FOLDER MOUSE SAMPLE
#
# The program on a Wayland desktop with one output of that scale: its windows are made of physical
# pixels, transparent, moved by the compositor, come forward at a second start, and stand an output
# of another scale.
set -u

scale=$1 bin=$2 mouse=$3 sample=$4
work=$(mktemp -d)
mkdir "$work/program"
cp "$bin/tonalyx" "$work/program"
export TONALYX_ROOT=$work/state TONALYX_LAPTOP=$work/laptop.json
failures=0
panel=
another=

cleanup() {
  [ -n "$panel" ] && kill "$panel" 2>/dev/null
  [ -n "$another" ] && kill "$another" 2>/dev/null
  rm -rf "$work"
}
trap cleanup EXIT

check() {
  if [ "$2" = "$3" ]; then
    echo "ok: $1"
  else
    echo "FAILED: $1: expected '$3', got '$2'"
    failures=$((failures + 1))
  fi
}

# eventually TEXT EXPECTED COMMAND...: what the command prints becomes that within five seconds.
eventually() {
  local text=$1 expected=$2 got tries
  shift 2
  for ((tries = 0; tries < 50; tries++)); do
    got=$("$@" 2>/dev/null)
    [ "$got" = "$expected" ] && break
    sleep 0.1
  done
  check "$text" "$got" "$expected"
}

# The value of a property of the window with that title, in the desktop's own units.
window() {
  swaymsg -r -t get_tree | python3 -c '
import json, sys
def walk(node):
    yield node
    for child in node["nodes"] + node["floating_nodes"]:
        yield from walk(child)
for node in walk(json.load(sys.stdin)):
    if node.get("app_id") and node["name"] == sys.argv[1]:
        node.update(node["rect"])
        print(node[sys.argv[2]])' "$1" "$2"
}

coproc MOUSE { "$mouse"; }
mouse() {
  echo "$*" >&"${MOUSE[1]}"
  read -r -t 5 answer <&"${MOUSE[0]}"
  sleep 0.05
}
# The room that all outputs take up together, to which the places of the pointer refer.
room="$((2560 / scale)) $((1600 / scale))"
move() { mouse move "$1" "$2" "$room"; }
click() {
  move "$1" "$2"
  mouse press
  mouse release
}
drag() {
  local step
  move "$1" "$2"
  mouse press
  for step in 1 2 3 4 5; do
    move $(($1 + ($3 - $1) * step / 5)) $(($2 + ($4 - $2) * step / 5))
  done
  mouse release
}

speaker='HKLM\SOFTWARE\Norvane\Velsona\Parameters\{DFF21CE1-F70F-11D0-B917-00A0C9223196}\Settings'
active_setting() { "$bin/regtool" query "$speaker" /v ActiveSetting | awk '/REG_SZ/ {print $3}'; }
pixel() { convert "$1" -format "%[hex:p{$2,$3}]" info:; }

"$bin/laptopctl" "$TONALYX_LAPTOP" new layers
"$bin/vtdmake" "$sample" "$work/program/0.vtd"
"$work/program/tonalyx" /init
"$work/program/tonalyx" &
panel=$!

eventually "application id" tonalyx window Tonalyx app_id
check "width" "$(window Tonalyx width)" 651
check "height" "$(window Tonalyx height)" 454
x=$(window Tonalyx x) y=$(window Tonalyx y)

move $((x + 300)) $((y + 60))
sleep 0.5
grim -t png "$work/main.png"
left=$((x * scale)) top=$((y * scale))
check "corner shows the desktop" "$(pixel "$work/main.png" "$left" "$top")" 406080
check "middle does not" \
  "$([ "$(pixel "$work/main.png" $((left + 300 * scale)) $((top + 230 * scale)))" = 406080 ] ||
    echo drawn)" drawn
if [ "$scale" = 2 ]; then
  # An enlarged picture consists of blocks of equal pixels: halved and doubled it stays what it is.
  size=1302x908
  convert "$work/main.png" -crop "$size+$left+$top" +repage "$work/window.png"
  convert "$work/window.png" -sample 50% -sample 200% "$work/blocks.png"
  different=$(compare -metric AE "$work/window.png" "$work/blocks.png" null: 2>&1)
  check "every pixel of the screen is drawn for itself" \
    "$([ "${different%.*}" -gt 50000 ] && echo fine || echo "$different")" fine
fi

click $((x + 524)) $((y + 199))
eventually "click on Movie" 3 active_setting
drag $((x + 200)) $((y + 20)) $((x + 240)) $((y + 50))
eventually "caption moves the window, horizontally" $((x + 40)) window Tonalyx x
eventually "and vertically" $((y + 30)) window Tonalyx y
check "and changes no mode" "$(active_setting)" 3
x=$((x + 40)) y=$((y + 30))
# Another program's window, on a workspace of its own, is all there is to be seen.
cover() {
  swaymsg '[title="Terminal"] focus' >/dev/null
  eventually "another program takes the screen" True window Terminal focused
  # The compositor lets both windows answer before it takes up the next change.
  sleep 0.5
}
foot --title Terminal --override colors.background=d0e0f0 --override csd.preferred=none \
  sleep 600 2>/dev/null &
another=$!
eventually "another program" Terminal window Terminal name
swaymsg '[title="Terminal"] move to workspace other, focus' >/dev/null

cover
mouse token
XDG_ACTIVATION_TOKEN=$answer "$work/program/tonalyx"
check "second start by a launcher" $? 0
eventually "brings the first forward" True window Tonalyx focused
cover
"$work/program/tonalyx"
check "second start from a shell" $? 0
eventually "brings it forward, too" True window Tonalyx focused

swaymsg '[title="Terminal"] kill' >/dev/null

# A second output of the other scale: the window keeps its size in the desktop's units.
other_scale=$((3 - scale))
swaymsg create_output >/dev/null
swaymsg output HEADLESS-1 position 0 0 >/dev/null
swaymsg output HEADLESS-2 resolution 2560x1600 position 2560 0 scale $other_scale >/dev/null
room="$((2560 + 2560 / other_scale)) 1600"
swaymsg '[title="Tonalyx"] move to output HEADLESS-2' >/dev/null
eventually "moved to an output of scale $other_scale" yes \
  eval '[ "$(window Tonalyx x)" -ge 2560 ] && echo yes'
eventually "has its size there" 651 window Tonalyx width
sleep 0.5
x=$(window Tonalyx x) y=$(window Tonalyx y)
click $((x + 126)) $((y + 199))
eventually "a click still reaches the store there" 1 active_setting
swaymsg '[app_id="tonalyx"] kill' >/dev/null
eventually "closed by the desktop" "" window Tonalyx app_id
echo "$failures failed"
[ "$failures" = 0 ]
