#!/usr/bin/env bash
# Runs the commands of the README, in their order, as a person would who copies them: every line of
# its indented blocks and every command that stands alone in its text, except the tests themselves
# and what needs this product's hardware.
set -uo pipefail
cd "$(dirname "$0")/../.."

# The commands build what is missing, but this test is no place to wait for that.
unset DISPLAY WAYLAND_DISPLAY
export TONALYX_BENCH_MIN_TIME=0.01
status=0

script=$(sed -n 's/^    //p' README.md | sed 's/ \{2,\}#.*//' | grep -v '^scripts/test$')
grep -q '`scripts/bench`' README.md && script+=$'\nscripts/bench'
# One resolution is enough here, and the committed pictures stay.
grep -q '`scripts/screenshots`' README.md &&
  script+=$'\nTONALYX_IMAGES=$PWD/build/readme-images scripts/screenshots 96'

while IFS= read -r command; do
  case $command in
    export\ *)
      eval "$command"
      continue
      ;;
  esac
  if output=$(eval "$command" 2>&1 </dev/null); then
    echo "PASS $command"
  else
    echo "FAIL $command: status $?"
    echo "$output" | tail -n 20
    status=1
  fi
done <<<"$script"

# A machine without a supported codec says so.
output=$(TONALYX_ROOT=$PWD/build/run/real TONALYX_LAPTOP='' scripts/run --real 2>&1 </dev/null)
case $?:$output in
  0:* | 67:*"not a supported model"*) echo "PASS scripts/run --real" ;;
  *)
    echo "FAIL scripts/run --real: $output"
    status=1
    ;;
esac
exit $status
