#!/usr/bin/env bash
# with_own_wine.sh DPI PREFIX COMMAND [ARGUMENT...]
#
# Runs the command, which may start programs with "wine", in a copy of that prefix that belongs to
# this display and has its resolution. Ends what it left running, and exits with its status.
set -u

# shellcheck source=scripts/lib/wine_prefix.sh
. "$(dirname "$0")/wine_prefix.sh"
dpi=$1
use_prefix "$2"
shift 2

work=$(mktemp -d "$WINEPREFIX-XXXXXX")
cleanup() {
  wineserver -k -w 2>/dev/null
  rm -rf "$work"
}
trap cleanup EXIT

# Only what nobody changes is shared. The registry is not, for the server writes a file that has more
# than one name in its place.
mkdir "$work/prefix"
cp -al "$WINEPREFIX"/{.update-timestamp,dosdevices,drive_c} "$work/prefix"
cp "$WINEPREFIX"/*.reg "$work/prefix"
export WINEPREFIX=$work/prefix
{
  printf '\n[Control Panel\\\\Desktop]\n"LogPixels"=dword:%08x\n' "$dpi"
  case $dpi in
    120 | 144)
      # Here another font than the usual stand-in has the widths and heights of the dialogs' own.
      printf '\n[Software\\\\Wine\\\\Fonts\\\\Replacements]\n"Microsoft Sans Serif"="URW Gothic"\n'
      ;;
  esac
} >>"$WINEPREFIX/user.reg"
wake_server -p

"$@"
exit $?
