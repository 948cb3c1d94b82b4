#!/usr/bin/env bash
# wayland_test.sh SCALE BIN_FOLDER MOUSE SAMPLE
#
# The program on a Wayland desktop with one output of that scale: its windows are made of physical
# pixels, transparent, moved by the compositor, and come forward at a second start.
set -u

scale=$1 bin=$2 mouse=$3 sample=$4
work=$(mktemp -d)
mkdir "$work/program"
cp "$bin/tonalyx" "$work/program"
export TONALYX_ROOT=$work/state TONALYX_LAPTOP=$work/laptop.json
failures=0
panel=

cleanup() {
  [ -n "$panel" ] && kill "$panel" 2>/dev/null
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
    got=$("$@")
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
move() { mouse move "$1" "$2" $((2560 / scale)) $((1600 / scale)); }
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
settings() { "$bin/regtool" query "$speaker" /s | md5sum; }
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
click $((x + 325)) $((y + 199))
eventually "clicks count after a move" 2 active_setting

swaymsg 'workspace other' >/dev/null
check "another workspace hides it" "$(window Tonalyx focused)" False
mouse token
XDG_ACTIVATION_TOKEN=$answer "$work/program/tonalyx"
check "second start" $? 0
eventually "brings the first forward" True window Tonalyx focused

click $((x + 80)) $((y + 416))
eventually "advanced dialog" 755 window Velsona width
x=$(window Velsona x) y=$(window Velsona y)
sleep 0.3
before=$(settings)
drag $((x + 150)) $((y + 70)) $((x + 180)) $((y + 100))
check "dragging a knob edits the store" \
  "$([ "$(settings)" = "$before" ] || echo changed)" changed

swaymsg '[app_id="tonalyx"] kill' >/dev/null
eventually "closed by the desktop" "" window Velsona app_id
echo "$failures failed"
[ "$failures" = 0 ]
