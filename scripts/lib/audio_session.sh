# Sourced by what needs an audio session of its own, that nobody hears: its files are in $work, which
# goes with it.
# shellcheck shell=bash

work=$(mktemp -d)
started=()
cleanup() {
  local i
  for ((i = ${#started[@]} - 1; i >= 0; i--)); do
    kill "${started[i]}" 2>/dev/null || true
    wait "${started[i]}" 2>/dev/null || true
  done
  rm -rf "$work"
}
trap cleanup EXIT

start() {
  "$@" >>"$work/log" 2>&1 &
  started+=($!)
}

# stop: what was started last.
stop() {
  kill "${started[-1]}"
  wait "${started[-1]}" 2>/dev/null || true
  unset 'started[-1]'
}

# wait_until COMMAND...: thirty seconds at most; then what was started tells what it said.
wait_until() {
  local _
  for _ in $(seq 600); do
    "$@" >/dev/null 2>&1 && return 0
    sleep 0.05
  done
  echo "${0##*/}: waited in vain for: $*" >&2
  cat "$work/log" >&2
  return 1
}

# start_session: PipeWire with all of its parts, and a sink that swallows what it gets.
start_session() {
  export HOME=$work XDG_RUNTIME_DIR=$work/runtime XDG_CONFIG_HOME=$work/config
  export PULSE_RUNTIME_PATH=$XDG_RUNTIME_DIR/pulse PULSE_SERVER=unix:$XDG_RUNTIME_DIR/pulse/native
  export DBUS_SESSION_BUS_ADDRESS=unix:path=$XDG_RUNTIME_DIR/bus
  mkdir -m 700 "$XDG_RUNTIME_DIR" "$XDG_CONFIG_HOME"
  # Bluetooth asks for the seats of logind, and without them the session manager gives up.
  mkdir -p "$XDG_CONFIG_HOME/wireplumber/bluetooth.lua.d"
  echo 'bluez_monitor.enabled = false' >"$XDG_CONFIG_HOME/wireplumber/bluetooth.lua.d/51-off.lua"
  start dbus-daemon --session --nofork --address="$DBUS_SESSION_BUS_ADDRESS"
  start pipewire
  wait_until test -S "$XDG_RUNTIME_DIR/pipewire-0"
  start wireplumber
  start pipewire-pulse
  wait_until pactl info
  pactl load-module module-null-sink sink_name=speaker rate=48000 >/dev/null
  wait_until pactl set-default-sink speaker
}
