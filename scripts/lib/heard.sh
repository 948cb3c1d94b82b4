#!/usr/bin/env bash
# Plays a sweep through the engine in every mode of the sample tuning, in an audio session of its
# own that nobody hears, and leaves build/screenshots/heard.png: what the panel draws and what was
# heard. Wants the virtual laptop and the imported tuning that scripts/run makes.
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
bin=$top/build/bin
pictures=$top/build/screenshots
mkdir -p "$pictures"
modes=(Off Music Movie Recording Gaming Speech)
# The virtual laptop plays through its speaker.
route='{DFF21CE1-F70F-11D0-B917-00A0C9223196}'
settings='HKLM\SOFTWARE\Norvane\Velsona\Parameters\'$route'\Settings'

# shellcheck source=scripts/lib/audio_session.sh
. "$top/scripts/lib/audio_session.sh"
# The store of the panel stays as it is.
cp -r "$TONALYX_ROOT" "$work/state"
export TONALYX_ROOT=$work/state

format=(--raw --format=float32le --rate=48000 --channels=2)

# record FILE: what arrives at the sink while the sweep is played. With buffers so long that a machine
# which sleeps between two cycles loses little, and once more where it has lost something.
record() {
  local try
  for try in 1 2 3 4 5; do
    record_once "$1"
    "$bin/heard" check "$1" && return 0
    echo "A piece of the sweep was lost, try $try of 5." >&2
  done
  return 1
}

record_once() {
  local recorder
  rm -f "$1"
  parec "${format[@]}" --latency-msec=500 --device=speaker.monitor "$1" &
  recorder=$!
  # The recorder gets sound, and silence is sound, once it is there.
  wait_until test -s "$1"
  pacat --playback "${format[@]}" --latency-msec=500 "$work/sweep"
  sleep 0.8
  kill "$recorder"
  wait "$recorder" 2>/dev/null || true
}

engine_tells() { "$bin/tonalyx-engine" --status --json | grep -q "$1"; }

# set_parameter SETTING NUMBER HEX: four bytes of a float
set_parameter() { "$bin/regtool" add "$settings\\$1" /v "Param$2" /t REG_BINARY /d "$3" /f; }

# activate SETTING: and lets the engine look again.
activate() {
  "$bin/regtool" add "$settings" /v ActiveSetting /t REG_SZ /d "$1" /f
  wait_until engine_tells "\"setting\": *\"$1\""
  sleep 0.3
}

# Bass and treble in the middle, widener and loudness off.
knobs_at_rest() {
  set_parameter "$1" 232 0000003F
  set_parameter "$1" 250 0000003F
  set_parameter "$1" 5 00000000
  set_parameter "$1" 221 00000000
}

start_session
start "$bin/tonalyx-engine"
wait_until "$bin/tonalyx-engine" --status
"$bin/heard" sweep "$work/sweep"
plots=()
for number in 1 2 3 4 5 6; do
  activate "$number"
  record "$work/whole-$number"
done
for number in 1 2 3 4 5 6; do
  knobs_at_rest "$number"
  activate "$(((number % 6) + 1))"
  activate "$number"
  record "$work/equalizer-$number"
  plots+=("${modes[number - 1]}:$number:$work/equalizer-$number:$work/whole-$number")
done
echo "-- heard of the equalizer, farthest from what the panel says"
QT_QPA_PLATFORM=offscreen "$bin/heard" picture "$work/heard.ppm" "$route" "${plots[@]}"
convert "$work/heard.ppm" -define png:compression-level=9 "$pictures/heard.png"
echo "Picture: build/screenshots/heard.png"
