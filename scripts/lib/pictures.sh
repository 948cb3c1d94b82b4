#!/usr/bin/env bash
# pictures.sh TONE FOLDER [BIN STARTER]: puts every window of the panel on this display, on a light or
# a dark desktop, in each state that looks different, and keeps each as FOLDER/<surface>-<state>.png.
# STARTER runs programs that end in ".exe".
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
tone=$1
pictures=$2
bin=${3-$top/build/bin}
starter=${4-}
end=${starter:+.exe}
dpi=${TONALYX_DPI:?}

work=$(mktemp -d)
panel=""
cleanup() {
  [ -z "$panel" ] || kill "$panel" 2>/dev/null || true
  rm -rf "$work"
}
trap cleanup EXIT
# The file dialogs will show the folder of the settings.
pictures=$(realpath "$pictures")
export TONALYX_ROOT=$work/state TONALYX_LAPTOP=$work/laptop.json
mkdir "$work/program" "$work/settings"
cp "$bin/tonalyx$end" "$work/program/"
cd "$work/settings"

# tool NAME [ARGUMENT...]
tool() { ${starter:+"$starter"} "$bin/$1$end" "${@:2}"; }
# type_name FILE: as the program's system names it.
type_name() {
  local name=$1
  [ -z "$starter" ] || name=z:${name//\//\\}
  xdotool type --delay 5 "$name"
}
panel_command=(${starter:+"$starter"} "$work/program/tonalyx$end")

tool vtdmake "$top/resources/samples/sample.json" "$work/sample.vtd"

case $tone in
  light) hsetroot -add '#e9eef4' -add '#a9b9cb' -gradient 150 ;;
  dark) hsetroot -add '#33404f' -add '#0e1217' -gradient 150 ;;
esac

scaled() { echo $(($1 * dpi / 96)); }

# find_window TITLE: waits for it and takes its place on the screen: X, Y, WIDTH, HEIGHT.
find_window() {
  local window _
  for _ in $(seq 200); do
    window=$(xdotool search --onlyvisible --name "^$1\$" 2>/dev/null | tail -n 1) || true
    [ -z "$window" ] || break
    sleep 0.05
  done
  [ -n "$window" ] || { echo "The window \"$1\" did not appear." >&2; return 1; }
  sleep 0.3
  if [ -n "$starter" ]; then
    # What Wine believes of a new window's place may be wrong until the window is moved.
    xdotool windowmove --relative "$window" 8 0
    sleep 0.2
  fi
  read -r X Y WIDTH HEIGHT < <(xwininfo -id "$window" | awk '
    /Absolute upper-left/ { printf "%s ", $NF } /Width:|Height:/ { printf "%s ", $NF }
    END { print "" }')
}

wait_until_gone() {
  local _
  for _ in $(seq 100); do
    [ -n "$(xdotool search --onlyvisible --name "^$1\$" 2>/dev/null)" ] || return 0
    sleep 0.05
  done
  echo "The window \"$1\" stays." >&2
  return 1
}

# Positions are in 96-DPI units from the window's corner.
point_at() {
  xdotool mousemove $((X + $(scaled "$1"))) $((Y + $(scaled "$2")))
  sleep 0.15
}

click() {
  point_at "$1" "$2"
  xdotool click 1
  sleep 0.25
}

key() {
  xdotool key "$1"
  sleep 0.3
}

# keep NAME [RIGHT BELOW]: the window with some desktop around it, and more on these sides.
keep() {
  local around left upper
  around=$(scaled 28)
  left=$((X > around ? X - around : 0)) upper=$((Y > around ? Y - around : 0))
  import -window root -define png:compression-level=1 -crop "$((X + WIDTH + around - left \
    + $(scaled "${2-0}")))x$((Y + HEIGHT + around - upper + $(scaled "${3-0}")))+$left+$upper" \
    +repage "$pictures/$1.png"
}

# start KIND: a new laptop of that kind with this tuning, the panel open on it.
start() {
  rm -rf "$TONALYX_ROOT"
  [ -z "$starter" ] || tool regtool delete 'HKLM\SOFTWARE\Norvane' /f 2>/dev/null || true
  tool laptopctl "$TONALYX_LAPTOP" new "$1"
  cp "${2-$work/sample.vtd}" "$work/program/0.vtd"
  "${panel_command[@]}" /init
  "${panel_command[@]}" &
  panel=$!
  find_window Tonalyx
  rest
}

finish() {
  kill "$panel"
  wait "$panel" 2>/dev/null || true
  panel=""
}

# Takes the pointer to where nothing lights up.
rest() { point_at 300 70; }

# main_window SURFACE ELEMENT...: each ELEMENT is name:x:y, the six modes come first.
main_window() {
  local surface=$1 number=0 element name x y
  shift
  for element in "$@"; do
    IFS=: read -r name x y <<<"$element"
    point_at "$x" "$y"
    keep "$surface-hover-$name"
    ((++number <= 6)) || continue
    xdotool click 1
    rest
    keep "$surface-selected-$name"
  done
  tool laptopctl "$TONALYX_LAPTOP" default "$other_endpoint"
  rest
  sleep 1.2
  keep "$surface-warning"
}

# on_control X Y WIDTH HEIGHT: clicks on the middle of a control, given in dialog units.
on_control() {
  xdotool mousemove $((X + ($1 * 2 + $3) * base_x / 8)) $((Y + ($2 * 2 + $4) * base_y / 16)) click 1
  sleep 0.3
}

expand() { on_control 441 107 55 21; }

choose_from_menu() {
  on_control 446 7 25 19
  key "$1"
}

# open_dialog X Y: through the panel's entry.
open_dialog() {
  click "$1" "$2"
  find_window Velsona
  rest
}

# advanced_dialog SURFACE
advanced_dialog() {
  keep "$1-collapsed"
  expand
  find_window Velsona
  rest
  keep "$1-expanded"
}

filter_types() {
  local type
  for type in peaking:282 high-shelving:304 low-shelving:326 high-pass:348 low-pass:370; do
    on_control 389 "${type#*:}" 107 12
    rest
    keep "dialog-type-${type%:*}"
  done
}

# message NAME TITLE: a window of the toolkit, answered with Return.
message() {
  find_window "$2"
  keep "messages-$1"
  key Return
  wait_until_gone "$2"
}

messages() {
  on_control 446 7 25 19
  keep messages-menu 110 0
  key Down
  keep messages-menu-highlighted 110 0
  key Escape
  point_at 25 25
  xdotool click 1
  sleep 0.3
  keep messages-system-menu
  # The last entry.
  key Up
  key Return
  message about "About Tonalyx"
  find_window Velsona
  choose_from_menu r
  message restore Confirm
  find_window Velsona
  choose_from_menu s
  find_window "Save As"
  keep messages-save
  type_name "$PWD/evening"
  key Return
  wait_until_gone "Save As"
  printf 'not a settings file' >broken.tus
  find_window Velsona
  choose_from_menu l
  find_window Open
  keep messages-open
  type_name "$PWD/broken.tus"
  key Return
  message invalid-file Error
}

unsupported_model() {
  tool laptopctl "$TONALYX_LAPTOP" new unsupported
  "${panel_command[@]}" &
  panel=$!
  message unsupported-model Error
  wait "$panel" || true
  panel=""
}

# All bands at full gain on one frequency leave the plot at the top.
make_steep_tuning() {
  local band first parameters='"Param117": 1'
  for ((band = 0; band < 10; ++band)); do
    first=$((118 + 5 * band))
    parameters+=", \"Param$first\": 1, \"Param$((first + 1))\": 1"
    parameters+=", \"Param$((first + 2))\": $((band < 6 ? 1000 + 20 * band : 120 + 2 * band))"
    parameters+=", \"Param$((first + 3))\": $((band < 6 ? 3 : 0)).25, \"Param$((first + 4))\": 4"
  done
  sed -e "s/PARAMETERS/$parameters/g" >"$work/steep.json" <<'END'
{ "version": "0x0200", "ssid": "0x00000000",
  "properties": { "apoName": "Velsona APO", "apoMajor": 3, "apoBuild": 12, "toolVersion": "2.4.1",
    "dataVersion": 7, "date": 20260115, "statusSpeaker": "0x3F", "statusSubwoofer": "0x3F",
    "statusHeadphone": "0x3F", "statusLineOut": "0x3F" },
  "routes": [ { "guid": "{DFF21CE1-F70F-11D0-B917-00A0C9223196}",
    "settings": [ { PARAMETERS }, { PARAMETERS } ] } ] }
END
  tool vtdmake "$work/steep.json" "$work/steep.vtd"
}

case $dpi in
  96) base_x=6 base_y=13 ;;
  120) base_x=8 base_y=16 ;;
  144) base_x=9 base_y=20 ;;
  192) base_x=12 base_y=25 ;;
esac
other_endpoint='{0.0.0.00000000}.{5B1C9E70-3A54-4D0F-8C26-7F1E02A9D402}'

start layers
main_window standard off:126:199 music:325:199 movie:524:199 recording:126:303 gaming:325:303 \
  speech:524:303 minimise:582:24 close:608:24 done:572:419 maker:317:418 advanced:80:416
finish

start standard
keep standard-without-advanced
finish

start davrin
main_window davrin war-room:147:168 battlefield:359:168 multimedia:571:168 action:147:302 \
  soundscape:359:302 off:571:302 minimise:650:27 close:685:27 maker:647:408 advanced:615:27
finish

start layers
open_dialog 80 416
messages
find_window Velsona
advanced_dialog dialog
filter_types
finish

start davrin
open_dialog 615 27
advanced_dialog dialog-red
finish

make_steep_tuning
start layers "$work/steep.vtd"
open_dialog 80 416
advanced_dialog dialog-steep
rm "$pictures/dialog-steep-collapsed.png"
finish

unsupported_model
