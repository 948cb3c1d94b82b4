#!/usr/bin/env bash
# with_listener.sh COMMAND [ARGUMENT...]
#
# Runs the command where assistive technology can listen: in a message bus session of its own with
# the desktop's accessibility bus.
set -eu

export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
# The bus ends with the session, and its launcher with the bus.
# shellcheck disable=SC2016 # The inner shell expands it.
exec dbus-run-session -- bash -c '
  /usr/libexec/at-spi-bus-launcher --launch-immediately &
  launcher=$!
  "$@"
  status=$?
  kill "$launcher"
  wait "$launcher"
  exit "$status"' with_listener "$@"
