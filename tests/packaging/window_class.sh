#!/usr/bin/env bash
# window_class.sh COMMAND...: starts the panel on the current display, waits for its window and
# prints the class that desktops know it by.
set -euo pipefail

"$@" >&2 &
panel=$!
trap 'kill "$panel" 2>/dev/null || true; wait "$panel" || true' EXIT

for _ in $(seq 400); do
  window=$(xdotool search --onlyvisible --name '^Tonalyx$' 2>/dev/null | tail -n 1) || true
  [ -n "$window" ] && break
  sleep 0.05
done
[ -n "$window" ] || { echo "no window appeared" >&2; exit 1; }
xprop -id "$window" WM_CLASS | sed 's/.*"\(.*\)"$/\1/'
