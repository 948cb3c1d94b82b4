#!/usr/bin/env bash
# wayland_test.sh SCALE BIN_FOLDER MOUSE SAMPLE
#
# The program on a Wayland desktop with one output of that scale: its windows are made of physical
# pixels, transparent, moved by the compositor, come forward at a second start, keep what is below a
# modal window from input, and stand an output of another scale.
set -u

scale=$1 bin=$2 mouse=$3 sample=$4
work=$(mktemp -d)
mkdir "$work/program"
cp "$bin/tonalyx" "$work/program"
export TONALYX_ROOT=$work/state TONALYX_LAPTOP=$work/laptop.json
failures=0
panel=
another=
keyboard=

cleanup() {
  [ -n "$panel" ] && kill "$panel" 2>/dev/null
  [ -n "$another" ] && kill "$another" 2>/dev/null
  [ -n "$keyboard" ] && kill "$keyboard" 2>/dev/null
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

output_width() {
  swaymsg -r -t get_outputs | python3 -c '
import json, sys
print(*(o["rect"]["width"] for o in json.load(sys.stdin) if o["name"] == sys.argv[1]))' "$1"
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
settings() { "$bin/regtool" query "$speaker" /s | md5sum; }
pixel() { convert "$1" -format "%[hex:p{$2,$3}]" info:; }

# A keyboard that stays plugged in; those that type come and go.
wtype -s 600000 -k Shift_L &
keyboard=$!

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

# Another program's window, on a workspace of its own, is all there is to be seen. (This compositor
# gives a window that comes forward the focus and its workspace the screen, but leaves the order of
# overlapping windows alone.)
cover() {
  swaymsg '[title="Terminal"] focus' >/dev/null
  eventually "another program takes the screen from $1" True window Terminal focused
  # The compositor lets both windows answer before it takes up the next change.
  sleep 0.5
  shown "$1" no
}
# shown TITLE yes|no: the middle of the panel is not covered by the other window.
shown() { eventually "$1 is to be seen" "$2" uncovered; }
uncovered() {
  grim -t png "$work/stack.png"
  [ "$(pixel "$work/stack.png" $(((x + 300) * scale)) $(((y + 110) * scale)))" = "$plain" ] &&
    echo no || echo yes
}
foot --title Terminal --override colors.background=d0e0f0 --override csd.preferred=none \
  sleep 600 2>/dev/null &
another=$!
eventually "another program" Terminal window Terminal name
swaymsg '[title="Terminal"] move to workspace other, focus' >/dev/null
sleep 0.3
grim -t png "$work/other.png"
plain=$(pixel "$work/other.png" $(((x + 300) * scale)) $(((y + 110) * scale)))

cover Tonalyx
mouse token
XDG_ACTIVATION_TOKEN=$answer "$work/program/tonalyx"
check "second start by a launcher" $? 0
eventually "brings the first forward" True window Tonalyx focused
shown Tonalyx yes
cover Tonalyx
"$work/program/tonalyx"
check "second start from a shell" $? 0
eventually "brings it forward, too" True window Tonalyx focused
shown Tonalyx yes

click $((x + 80)) $((y + 416))
eventually "advanced dialog" 755 window Velsona width
# The middle of a control of the dialog, from its place in dialog units.
units_x() { echo $((x + $1 * 3 / 2)); }
units_y() { [ "$scale" = 2 ] && echo $((y + $1 * 25 / 16)) || echo $((y + $1 * 13 / 8)); }
place() { x=$(window Velsona x) y=$(window Velsona y); }
# drag_control TEXT X Y DX DY: it changes the active set.
drag_control() {
  local before
  before=$(settings)
  drag "$(units_x "$2")" "$(units_y "$3")" \
    $(($(units_x "$2") + $4)) $(($(units_y "$3") + $5))
  check "$1" "$([ "$(settings)" = "$before" ] || echo changed)" changed
}
place
cover Velsona
"$work/program/tonalyx"
eventually "a second start brings the dialog forward" True window Velsona focused
shown Velsona yes
swaymsg '[title="Terminal"] kill' >/dev/null

click "$(units_x 468)" "$(units_y 117)"
eventually "the dialog opens whole" $((scale == 2 ? 619 : 644)) window Velsona height
place
drag_control "dragging a knob edits the store" 100 70 20 30
click "$(units_x 395)" "$(units_y 288)"
drag_control "and so does dragging a slider" 241 336 60 0

# choose DOWN: the entry of the menu that lies so far below its button's middle.
choose() {
  local column row
  column=$(units_x 458) row=$(units_y 16)
  click "$column" "$row"
  sleep 0.3
  click $((column + 40)) $((row + $1))
}
# answer_file_dialog TITLE PATH
answer_file_dialog() {
  eventually "$1" True window "$1" focused
  # A keyboard that has just been plugged in needs a moment.
  wtype -s 300 "$2" -s 100 -k Return
}
choose 18
answer_file_dialog "Save As" "$work/mine.tus"
eventually "settings are saved" saved eval "[ -s '$work/mine.tus' ] && echo saved"
echo "no settings" >"$work/bad.tus"
choose -8
answer_file_dialog "Open" "$work/bad.tus"
eventually "a message box" True window Error focused
before=$(settings)
drag "$(units_x 100)" "$(units_y 100)" "$(units_x 110)" "$(units_y 80)"
check "what is below takes no input meanwhile" \
  "$([ "$(settings)" = "$before" ] && echo untouched)" untouched
swaymsg '[title="Error"] focus' >/dev/null
wtype -s 300 -k Return
eventually "the box goes" "" window Error name

# A second output of the other scale: the picture there shows the same as here.
grim -t png "$work/here.png"
convert "$work/here.png" -crop \
  $((755 * scale))x$((400 * scale))+$((x * scale))+$((y * scale)) -resize 755x400! "$work/here.png"
other_scale=$((3 - scale))
swaymsg create_output >/dev/null
swaymsg output HEADLESS-1 position 0 0 >/dev/null
swaymsg output HEADLESS-2 resolution 2560x1600 position 2560 0 scale $other_scale >/dev/null
room="$((2560 + 2560 / other_scale)) 1600"
swaymsg '[title="Velsona"] move to output HEADLESS-2' >/dev/null
eventually "moved to an output of scale $other_scale" yes \
  eval '[ "$(window Velsona x)" -ge 2560 ] && echo yes'
sleep 0.5
place
grim -o HEADLESS-2 -t png "$work/there.png"
convert "$work/there.png" -crop \
  $((755 * other_scale))x$((400 * other_scale))+$(((x - 2560) * other_scale))+$((y * other_scale)) \
  -resize 755x400! "$work/there.png"
difference=$(compare -metric RMSE "$work/here.png" "$work/there.png" null: 2>&1 |
  sed 's/.*(\(.*\))/\1/')
check "it looks the same there" \
  "$(awk -v d="$difference" 'BEGIN { print d < 0.05 ? "same" : d }')" same
drag_control "a knob still edits the store there" 200 70 20 30
swaymsg output HEADLESS-2 scale "$scale" >/dev/null
eventually "the output changes its scale" $((2560 / scale)) output_width HEADLESS-2
room="$((2560 + 2560 / scale)) $((1600 / scale))"
swaymsg '[title="Velsona"] move absolute position 2600 50' >/dev/null
sleep 0.5
place
drag_control "and the knob edits the store again" 300 70 20 30

swaymsg '[app_id="tonalyx"] kill' >/dev/null
eventually "closed by the desktop" "" window Velsona app_id
echo "$failures failed"
[ "$failures" = 0 ]
