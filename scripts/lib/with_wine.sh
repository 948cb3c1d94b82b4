#!/usr/bin/env bash
# with_wine.sh PREFIX PROGRAM.exe [ARGUMENT...]
#
# Runs the program under Wine in that prefix, which is made when it is missing; exits with its
# status. The prefix's server goes a minute after its last program.
set -eu

if [ $# -lt 2 ]; then
  echo "usage: $0 PREFIX PROGRAM.exe [ARGUMENT...]" >&2
  exit 2
fi
# shellcheck source=scripts/lib/wine_prefix.sh
. "$(dirname "$0")/wine_prefix.sh"
use_prefix "$1"
shift
wake_server -p60
# A path without a drive is one below the current folder there.
case ${GTEST_OUTPUT-} in
  xml:/*) export GTEST_OUTPUT=xml:Z:${GTEST_OUTPUT#xml:} ;;
esac
exec wine "$@"
