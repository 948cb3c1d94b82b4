#!/usr/bin/env bash
# PipeWire in the audio server's place, with all of its parts in $XDG_RUNTIME_DIR, where clients find
# it as $PULSE_RUNTIME_PATH/native. This process becomes the part that clients talk to; the others go
# with it.
set -eu

# The part that decides about defaults does not work without a bus.
export DBUS_SESSION_BUS_ADDRESS=unix:path=$XDG_RUNTIME_DIR/bus
setpriv --pdeathsig KILL dbus-daemon --session --nofork --address="$DBUS_SESSION_BUS_ADDRESS" &
setpriv --pdeathsig KILL pipewire &
for ((tries = 0; tries < 100; tries++)); do
  [ -S "$XDG_RUNTIME_DIR/pipewire-0" ] && [ -S "$XDG_RUNTIME_DIR/bus" ] && break
  sleep 0.02
done
setpriv --pdeathsig KILL wireplumber &
echo $! >"$XDG_RUNTIME_DIR/wireplumber.pid"
exec pipewire-pulse
