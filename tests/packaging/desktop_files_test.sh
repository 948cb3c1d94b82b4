#!/usr/bin/env bash
# desktop_files_test.sh [BUILD_FOLDER]: what is installed for people and their desktops: entry,
# icons, metadata, man pages. Needs no rights; installs into a folder of its own.
set -euo pipefail
# shellcheck source=scripts/lib/setup.sh
. "$(dirname "$0")/../../scripts/lib/setup.sh"
# shellcheck source=tests/packaging/cases.sh
. "$top/tests/packaging/cases.sh"

install_packages package
build=${1:-$top/build}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
tree=$work/tree
DESTDIR=$tree cmake --install "$build" --prefix /usr >"$work/install.log" ||
  { cat "$work/install.log"; exit 1; }
usr=$tree/usr
desktop=$usr/share/applications/tonalyx.desktop
metainfo=$usr/share/metainfo/example.norvane.tonalyx.metainfo.xml

entry() { sed -n "s/^$1=//p" "$desktop"; }

entry_and_metadata_are_valid() {
  desktop-file-validate "$desktop"
  test -x "$usr/bin/$(entry Exec)"
  is "$(entry Exec)" "$(entry TryExec)"
  test -s "$usr/share/icons/hicolor/scalable/apps/$(entry Icon).svg"
  appstreamcli validate-tree --no-net "$tree"
  appstreamcli validate --no-net "$metainfo"
  local version
  version=$(sed -n 's/^CMAKE_PROJECT_VERSION:.*=//p' "$build/CMakeCache.txt")
  is "$version" "$(sed -n '0,/<release /s/.*<release version="\([^"]*\)".*/\1/p' "$metainfo")"
}

icons_have_their_size() {
  local size
  for size in 16 24 32 48 64 128 256; do
    is "$size $size" \
      "$(identify -format '%w %h' "$usr/share/icons/hicolor/${size}x$size/apps/tonalyx.png")"
  done
}

every_command_has_a_clean_page() {
  local command
  for command in "$usr"/bin/*; do
    is "" "$(mandoc -Tlint -Wwarning "$usr/share/man/man1/$(basename "$command").1" 2>&1)"
  done
}

# The tuning lies beside the program, not beside the link that was started.
link_finds_the_tuning() {
  export TONALYX_ROOT=$work/state TONALYX_LAPTOP=$work/laptop.json
  "$usr/bin/tonalyx-laptopctl" "$TONALYX_LAPTOP" new standard
  "$usr/bin/tonalyx-vtdmake" "$usr/share/doc/tonalyx/examples/sample.json" "$usr/lib/tonalyx/0.vtd"
  "$usr/bin/tonalyx" /init
  test ! -e "$usr/lib/tonalyx/0.vtd"
  "$usr/bin/tonalyx-regtool" query 'HKLM\SOFTWARE\Norvane\Velsona\Parameters' /v ActiveSetting /s
}

expect "entry, metadata, icon and program are valid and fit together" entry_and_metadata_are_valid
expect "every icon has the size of its folder" icons_have_their_size
expect "every command has a clean man page" every_command_has_a_clean_page
expect "the program finds its own folder through a link" link_finds_the_tuning
finish_cases
