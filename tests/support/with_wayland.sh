#!/usr/bin/env bash
# with_wayland.sh SCALE COMMAND [ARGUMENT...]
#
# Runs the command on a Wayland desktop of its own: sway without any hardware, one output of
# 2560 x 1600 pixels at that scale, on which the program's windows float. Ends it when the command
# ends, and exits with its status. Nothing of the person's own desktop settings takes part.
set -u

scale=$1
shift

work=$(mktemp -d)
desktop=
cleanup() {
  if [ -n "$desktop" ]; then
    kill "$desktop" 2>/dev/null
    wait "$desktop" 2>/dev/null
  fi
  rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

export XDG_RUNTIME_DIR=$work/runtime XDG_CONFIG_HOME=$work/config XDG_CACHE_HOME=$work/cache
mkdir -m 700 "$XDG_RUNTIME_DIR" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$work/desktop"
unset DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS SESSION_MANAGER QT_QPA_PLATFORM

cat >"$work/sway.conf" <<END
xwayland disable
output * resolution 2560x1600 scale $scale
output * bg #406080 solid_color
default_border none
default_floating_border none
focus_follows_mouse no
focus_on_window_activation focus
for_window [app_id="tonalyx"] floating enable
END

# The compositor refuses to run as root; its sockets serve root all the same.
as_user=()
if [ "$(id -u)" = 0 ]; then
  as_user=(setpriv --reuid=65534 --regid=65534 --clear-groups)
  chmod 711 "$work"
  chown 65534:65534 "$work/desktop"
fi
XDG_RUNTIME_DIR=$work/desktop WLR_BACKENDS=headless WLR_RENDERER=pixman WLR_LIBINPUT_NO_DEVICES=1 \
  "${as_user[@]}" sway -c "$work/sway.conf" >"$work/sway.log" 2>&1 &
desktop=$!

for ((tries = 0; tries < 200; tries++)); do
  SWAYSOCK=$(find "$work/desktop" -name 'sway-ipc.*.sock')
  WAYLAND_DISPLAY=$(find "$work/desktop" -name 'wayland-*' ! -name '*.lock')
  export SWAYSOCK WAYLAND_DISPLAY
  [ -n "$SWAYSOCK" ] && [ -n "$WAYLAND_DISPLAY" ] &&
    swaymsg -t get_outputs >/dev/null 2>&1 && break
  sleep 0.05
done
if [ "$tries" = 200 ]; then
  echo "with_wayland.sh: sway did not start" >&2
  cat "$work/sway.log" >&2
  exit 1
fi
export XDG_SESSION_TYPE=wayland XDG_CURRENT_DESKTOP=sway

"$@"
exit $?
