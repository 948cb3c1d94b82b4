#!/usr/bin/env bash
# One short session with the panel on a display that nobody sees: a click on a mode, headphones in
# and out, the advanced dialog. Prints what the engine received, leaves pictures of every window.
#   session.sh [BIN PICTURES [STARTER]]   STARTER runs programs that end in ".exe"
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
bin=${1-$top/build/bin}
pictures=${2-$top/build/screenshots}
mkdir -p "$pictures"
starter=${3-}
program() { command=(${starter:+"$starter"} "$bin/$1${starter:+.exe}"); }

# Wine may believe that a window that has just come up is in the corner of the screen, and then takes
# every click for one beside it, until the window manager moves the window.
tell_its_place() {
  [ -n "$starter" ] || return 0
  sleep 0.3
  xdotool windowmove --relative "$1" 8 0
  sleep 0.2
}

# wait_for TITLE: prints the window's number once it is on the screen.
wait_for() {
  local number
  for _ in $(seq 100); do
    number=$(xdotool search --onlyvisible --name "^$1\$" 2>/dev/null | tail -n 1) && [ -n "$number" ] &&
      { tell_its_place "$number"; echo "$number"; return 0; }
    sleep 0.05
  done
  echo "The window \"$1\" did not appear." >&2
  return 1
}

# click WINDOW X Y: at a position in the skin's 96-DPI units.
click() {
  local scale=${TONALYX_DPI-96}
  xdotool mousemove --window "$1" $(($2 * scale / 96)) $(($3 * scale / 96)) click 1
  sleep 0.4
}

picture() {
  import -window root "$pictures/$1.png"
  echo "Picture: ${pictures#"$top/"}/$1.png"
}

received=$(mktemp)
program enginemon
"${command[@]}" --values > >(tee "$received") &
engine=$!
panel=""
trap 'kill "$engine" ${panel:+"$panel"} 2>/dev/null || true; rm -f "$received"' EXIT
for _ in $(seq 200); do
  ! grep -q ready "$received" || break
  sleep 0.05
done
program tonalyx
"${command[@]}" &
panel=$!
program laptopctl

main=$(wait_for Tonalyx)
sleep 0.5
picture main-window
echo "-- click on Movie"
click "$main" 524 200
picture movie
if [ -n "${TONALYX_LAPTOP-}" ]; then
  echo "-- headphones in"
  "${command[@]}" "$TONALYX_LAPTOP" plug headphones
  sleep 0.6
  picture headphones
  echo "-- headphones out"
  "${command[@]}" "$TONALYX_LAPTOP" unplug
  sleep 0.6
fi
echo "-- the advanced dialog, collapsed and expanded"
click "$main" 80 417
dialog=$(wait_for Velsona)
sleep 0.4
picture advanced-collapsed
xdotool mousemove --window "$dialog" $((703 * ${TONALYX_DPI-96} / 96)) $((191 * ${TONALYX_DPI-96} / 96)) click 1
sleep 0.5
picture advanced
xdotool key Escape
main=$(wait_for Tonalyx)
sleep 0.3
echo "-- Done"
click "$main" 572 419
wait "$panel"
kill "$engine"
wait "$engine" 2>/dev/null || true
rm -f "$received"
trap - EXIT
