# Sourced: Wine in a prefix of its own. Neither the person's prefix nor a desktop takes part.
# shellcheck shell=bash
export WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'

make_prefix() {
  local fresh=$WINEPREFIX.fresh
  rm -rf "$fresh"
  WINEPREFIX=$fresh wineboot --init >/dev/null 2>&1
  # Wine's own, whose widths and heights are those of the fonts that dialogs are laid out for.
  ln -s /usr/share/wine/fonts/tahoma*.ttf "$fresh"/drive_c/windows/[Ff]onts/
  WINEPREFIX=$fresh wine regedit /S "$(dirname "${BASH_SOURCE[0]}")/wine_prefix.reg" >/dev/null 2>&1
  # Written down only when the server goes.
  WINEPREFIX=$fresh wineserver -k -w 2>/dev/null || WINEPREFIX=$fresh wineserver -w
  mv "$fresh" "$WINEPREFIX"
}

# use_prefix FOLDER: makes it when it is missing; programs run there from now on.
use_prefix() {
  WINEPREFIX=$(realpath -m "$1")
  export WINEPREFIX
  [ ! -d "$WINEPREFIX" ] || return 0
  mkdir -p "$(dirname "$WINEPREFIX")"
  (
    flock 9
    [ -d "$WINEPREFIX" ] || make_prefix
  ) 9>"$WINEPREFIX.lock"
}

# wake_server -pSECONDS: the prefix's server and what it needs, if they do not run; the server goes
# that long after its last program.
wake_server() {
  ! wineserver -k0 2>/dev/null || return 0
  # What the first program starts beside itself would keep waiting whoever reads our output.
  wineserver "$1" >/dev/null 2>&1 || true
  wine cmd /c exit >/dev/null 2>&1 || true
}
