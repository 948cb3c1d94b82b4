#!/usr/bin/env bash
# with_wine.sh PREFIX PROGRAM.exe [ARGUMENT...]
#
# Runs the program under Wine in that prefix, which is made when it is missing; exits with its
# status. Neither the person's own prefix nor a desktop takes part. The prefix's server goes a
# minute after its last program.
set -eu

if [ $# -lt 2 ]; then
  echo "usage: $0 PREFIX PROGRAM.exe [ARGUMENT...]" >&2
  exit 2
fi
WINEPREFIX=$(realpath -m "$1")
shift
export WINEPREFIX WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'

make_prefix() {
  local fresh=$WINEPREFIX.fresh
  rm -rf "$fresh"
  WINEPREFIX=$fresh wineboot --init >/dev/null 2>&1
  # Wine's own, whose widths and heights are those of the fonts that dialogs are laid out for.
  ln -s /usr/share/wine/fonts/tahoma*.ttf "$fresh"/drive_c/windows/[Ff]onts/
  WINEPREFIX=$fresh wine regedit /S "$(dirname "$0")/wine_prefix.reg" >/dev/null 2>&1
  # Written down only when the server goes.
  WINEPREFIX=$fresh wineserver -k -w 2>/dev/null || WINEPREFIX=$fresh wineserver -w
  mv "$fresh" "$WINEPREFIX"
}

if [ ! -d "$WINEPREFIX" ]; then
  mkdir -p "$(dirname "$WINEPREFIX")"
  (
    flock 9
    [ -d "$WINEPREFIX" ] || make_prefix
  ) 9>"$WINEPREFIX.lock"
fi
if ! wineserver -k0 2>/dev/null; then
  # What the first program starts beside itself would keep waiting whoever reads our output.
  wineserver -p60 >/dev/null 2>&1 || true
  wine cmd /c exit >/dev/null 2>&1 || true
fi
exec wine "$@"
