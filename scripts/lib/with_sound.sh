#!/usr/bin/env bash
# with_sound.sh DESCRIPTION COMMAND [ARGUMENT...]
#
# Runs the command beside an audio server of its own. The server's only sink, "speaker", is described
# like that and plays to nowhere.
set -eu
# shellcheck source=scripts/lib/audio_session.sh
. "$(dirname "$0")/audio_session.sh"
description=$1
shift

export PULSE_RUNTIME_PATH=$work PULSE_STATE_PATH=$work PULSE_SERVER=unix:$work/native
start env HOME="$work" DISPLAY='' DBUS_SESSION_BUS_ADDRESS='' pulseaudio -n --daemonize=no \
  --exit-idle-time=-1 --use-pid-file=no --disable-shm=yes --log-level=error \
  --load="module-null-sink sink_name=speaker sink_properties=\"device.description='$description'\"" \
  --load="module-native-protocol-unix auth-anonymous=1 socket=$work/native"
wait_until pactl info
"$@"
