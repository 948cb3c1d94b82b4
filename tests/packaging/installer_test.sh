#!/usr/bin/env bash
# installer_test.sh: makes the installer for Windows, then installs, updates and removes the product
# on virtual laptops. Needs a display with Wine at its hand.
set -euo pipefail
# shellcheck source=scripts/lib/setup.sh
. "$(dirname "$0")/../../scripts/lib/setup.sh"
# shellcheck source=tests/packaging/cases.sh
. "$top/tests/packaging/cases.sh"

output=$("$top/scripts/package" --windows) || { echo "$output"; exit 1; }
package=$top/$(sed -n '$s/^Package: //p' <<<"$output")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$package" "$work/setup.exe"

drive=$WINEPREFIX/drive_c
program="$drive/Program Files (x86)/Norvane/Tonalyx"
shortcut="$drive/ProgramData/Microsoft/Windows/Start Menu/Programs/Tonalyx.lnk"
entry='HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Tonalyx'
sets='HKLM\SOFTWARE\Norvane\Velsona\Parameters'
tools=$top/build/windows/package
export TONALYX_LAPTOP=Z:$work/laptop.json

# Programs beside the temporary files of the installer itself.
installed() { (cd "$drive" && find . -ipath '*norvane*' -o -iname '*tonalyx*') | sort; }
query() { wine "$tools/regtool.exe" query "$@" | tr -d '\r'; }
laptop() { wine "$tools/laptopctl.exe" "$TONALYX_LAPTOP" new "$1"; }
add_tuning() { wine "$tools/vtdmake.exe" "Z:$top/resources/samples/sample.json" "Z:$work/0.vtd"; }
set_up() { wine "$work/setup.exe" /S; }
has_no() { ! query "$1" >/dev/null 2>&1 || { echo "there is still $1"; return 1; }; }
# The uninstaller goes on in a copy of itself.
remove() {
  wine "$program/uninstall.exe" /S
  local tries
  for ((tries = 0; tries < 100; tries++)); do
    [ -e "$program" ] || return 0
    sleep 0.1
  done
  find "$program"
  return 1
}

unsupported_leaves_nothing() {
  laptop unsupported
  add_tuning
  local before status=0
  before=$(installed)
  set_up || status=$?
  is $((1603 & 255)) "$status"
  is "$before" "$(installed)"
  has_no "$entry"
  has_no "$sets"
}

# Through the pages, of which the last starts the panel.
supported_is_set_up() {
  laptop layers
  add_tuning
  # The panel will outlive it, and must not keep what reads our output waiting.
  wine "$work/setup.exe" >/dev/null 2>&1 &
  local pages=$! _
  for _ in {1..60}; do
    sleep 1
    kill -0 $pages 2>/dev/null || break
    xdotool key Return
  done
  wait $pages
  is "enginemon.exe laptopctl.exe regtool.exe tonalyx.exe uninstall.exe Velsona.txt vtdmake.exe" \
    "$(find "$program" -type f -printf '%f\n' | sort -f | xargs)"
  [ -f "$shortcut" ]
  query "$entry" /v DisplayVersion | grep -F "$(sed -n 's/^.*tonalyx-\(.*\)-setup.*/\1/p' <<<"$package")"
  query "$sets" /s | grep -F "    Param117    "
}

running_panel_stops_it() {
  local status=0
  timeout 30 xdotool search --sync --onlyvisible --name '^Tonalyx$'
  set_up || status=$?
  wine taskkill /f /im tonalyx.exe
  is $((1618 & 255)) "$status"
}

update_keeps_what_is_set() {
  local key
  key=$(query "$sets" /s | grep -F '\1' | head -n 1)
  wine "$tools/regtool.exe" add "$key" /v Kept /t REG_SZ /d kept /f
  rm "$work/0.vtd"
  set_up
  query "$key" /v Kept
}

removal_keeps_settings_alone() {
  remove
  is "" "$(installed)"
  has_no "$entry"
  query "$sets" /s | grep -F Kept
}

wine "$tools/regtool.exe" delete 'HKLM\SOFTWARE\Norvane' /f >/dev/null 2>&1 || true
expect "an unsupported computer is left as it was" unsupported_leaves_nothing
expect "a supported computer gets all of it" supported_is_set_up
expect "a running panel stops the installation" running_panel_stops_it
expect "an update keeps what is set" update_keeps_what_is_set
expect "removal leaves the settings alone" removal_keeps_settings_alone
finish_cases
