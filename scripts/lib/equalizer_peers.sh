#!/usr/bin/env bash
# Ten bands over the same minute of noise, by this engine and by two others: the processor time of
# each whole process, in an audio session of its own.
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
bin=$top/build/bin
# shellcheck source=scripts/lib/audio_session.sh
. "$top/scripts/lib/audio_session.sh"
export TONALYX_ROOT=$work/state
seconds=${TONALYX_PEER_SECONDS-60}
frequencies=(31 63 125 250 500 1000 2000 4000 8000 16000)
sound=(--raw --format=s16le --rate=48000 --channels=2 --volume=6554)

# processor_time PROCESS: of all of its threads, in ns
processor_time() { cat "/proc/$1/task/"*/schedstat | awk '{ sum += $1 } END { printf "%.0f", sum }'; }

# measure NAME SINK: what was started last, while something plays to the sink.
measure() {
  local process=${started[-1]} before after begin end quantum
  start pacat --playback "${sound[@]}" --device="$2" "$work/noise"
  sleep 2
  for quantum in 1024 256; do
    pw-metadata -n settings 0 clock.force-quantum "$quantum" >/dev/null
    sleep 1
    begin=$(date +%s%N)
    before=$(processor_time "$process")
    sleep "$seconds"
    after=$(processor_time "$process")
    end=$(date +%s%N)
    awk -v name="$1" -v quantum="$quantum" -v spent=$((after - before)) \
      -v passed=$((end - begin)) -v seconds="$seconds" 'BEGIN {
        printf "%-32s %4d frames a cycle: %8.1f ms for %d s, %.2f %% of a core\n", name, quantum,
          spent / 1e6 * seconds * 1e9 / passed, seconds, 100 * spent / passed }'
  done
  stop
}

# set_parameter NUMBER HEX: four bytes of a float, of the set that a null sink's route plays
set_parameter() {
  "$bin/regtool" add "$settings\\1" /v "Param$1" /t REG_BINARY /d "$2" /f >/dev/null
}

measure_engine() {
  local band settings='HKLM\SOFTWARE\Norvane\Velsona\Parameters\{DFF21FE3-F70F-11D0-B917-00A0C9223196}\Settings'
  for band in {0..9}; do set_parameter $((121 + 5 * band)) 0000C03F; done # a gain of 1.5
  "$bin/regtool" add "$settings" /v ActiveSetting /t REG_SZ /d 1 /f >/dev/null
  start "$bin/tonalyx-engine"
  wait_until "$bin/tonalyx-engine" --status
  measure tonalyx-engine speaker
  stop
}

# PipeWire's own chain of filters.
measure_filter_chain() {
  local i
  {
    cat <<'END'
context.properties = { log.level = 0 }
context.spa-libs = {
  audio.convert.* = audioconvert/libspa-audioconvert
  support.* = support/libspa-support
}
context.modules = [
  { name = libpipewire-module-rt args = { } flags = [ ifexists nofail ] }
  { name = libpipewire-module-protocol-native }
  { name = libpipewire-module-client-node }
  { name = libpipewire-module-adapter }
  { name = libpipewire-module-filter-chain
    args = {
      node.description = "peer"
      filter.graph = { nodes = [
END
    for i in {0..9}; do
      echo "{ type = builtin name = b$i label = bq_peaking" \
        "control = { Freq = ${frequencies[i]}.0 Q = 1.0 Gain = 3.5 } }"
    done
    echo '] links = ['
    for i in {0..8}; do echo "{ output = \"b$i:Out\" input = \"b$((i + 1)):In\" }"; done
    cat <<'END'
      ] }
      audio.channels = 2
      audio.position = [ FL FR ]
      capture.props = { node.name = "peer" media.class = Audio/Sink }
      playback.props = { node.name = "peer.output" node.passive = true }
    } }
]
END
  } >"$work/chain.conf"
  start pipewire -c "$work/chain.conf"
  wait_until pactl get-sink-volume peer
  measure "PipeWire's filter chain" peer
  stop
}

has_equalizer() { pw-link -l | grep -q ee_soe_equalizer; }

measure_easyeffects() {
  local i band channel
  channel=
  for i in {0..9}; do
    band="\"band$i\": { \"frequency\": ${frequencies[i]}.0, \"gain\": 3.5, \"mode\": \"RLC (BT)\","
    band+=' "mute": false, "q": 1.0, "slope": "x1", "solo": false, "type": "Bell" }'
    channel+=${channel:+, }$band
  done
  mkdir -p "$XDG_CONFIG_HOME/easyeffects/output"
  cat >"$XDG_CONFIG_HOME/easyeffects/output/peer.json" <<END
{ "output": { "blocklist": [], "plugins_order": ["equalizer#0"],
  "equalizer#0": { "balance": 0.0, "bypass": false, "input-gain": 0.0, "output-gain": 0.0,
    "mode": "IIR", "num-bands": 10, "pitch-left": 0.0, "pitch-right": 0.0,
    "split-channels": false, "left": { $channel }, "right": { $channel } } } }
END
  GSETTINGS_BACKEND=keyfile start easyeffects --gapplication-service
  wait_until pactl get-sink-volume easyeffects_sink
  GSETTINGS_BACKEND=keyfile easyeffects --load-preset peer >>"$work/log" 2>&1 || true
  wait_until has_equalizer
  measure "EasyEffects' equalizer" easyeffects_sink
  stop
}

start_session
head -c $((48000 * 4 * (2 * seconds + 20))) /dev/urandom >"$work/noise"
measure_engine
measure_filter_chain
measure_easyeffects
