#!/usr/bin/env bash
# with_display.sh DPI COMMAND [ARGUMENT...]
#
# Runs the command on a display of its own: an X server of that resolution with a window manager
# and, unless TONALYX_COMPOSITOR=none, a compositor. Ends them when the command ends, and exits with
# its status. Nothing of the person's own desktop settings takes part.
set -u

dpi=$1
shift

work=$(mktemp -d)
started=()
cleanup() {
  local i
  for ((i = ${#started[@]} - 1; i >= 0; i--)); do
    kill "${started[i]}" 2>/dev/null
    wait "${started[i]}" 2>/dev/null
  done
  rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

start() {
  local log=$1
  shift
  "$@" >"$work/$log.log" 2>&1 &
  started+=($!)
}

# Tries for ten seconds; a failure shows the log of what did not come up.
wait_for() {
  local log=$1
  shift
  local tries
  for ((tries = 0; tries < 200; tries++)); do
    "$@" >/dev/null 2>&1 && return 0
    sleep 0.05
  done
  echo "with_display.sh: $log did not start" >&2
  cat "$work/$log.log" >&2
  exit 1
}

export XDG_RUNTIME_DIR=$work/runtime XDG_CONFIG_HOME=$work/config XDG_CACHE_HOME=$work/cache
mkdir -m 700 "$XDG_RUNTIME_DIR" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME"
unset WAYLAND_DISPLAY XAUTHORITY DBUS_SESSION_BUS_ADDRESS SESSION_MANAGER
export QT_QPA_PLATFORM=xcb

# The server itself chooses a free display number.
start server Xvfb -displayfd 9 -screen 0 2560x1600x24 -dpi "$dpi" -nolisten tcp -noreset \
  9>"$work/display"
wait_for server test -s "$work/display"
DISPLAY=:$(tr -d '[:space:]' <"$work/display")
export DISPLAY

start manager openbox --sm-disable
has_manager() { xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'; }
wait_for manager has_manager

if [ "${TONALYX_COMPOSITOR:-}" != none ]; then
  start compositor picom --config /dev/null --backend xrender
  has_compositor() { xwininfo -root -tree | grep -q '"picom"'; }
  wait_for compositor has_compositor
fi

# In the middle, where windows come up, it would have a say.
xdotool mousemove 0 0

"$@"
exit $?
