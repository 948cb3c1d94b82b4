#!/usr/bin/env bash
# package_test.sh: builds the package, then installs, upgrades, removes and purges it in clean roots
# that hold nothing but a minimal system and what the package depends on. Needs root to make them.
# TONALYX_CLEAN_ROOT names a folder that keeps such a system for the next time.
set -euo pipefail
# shellcheck source=scripts/lib/setup.sh
. "$(dirname "$0")/../../scripts/lib/setup.sh"
# shellcheck source=tests/packaging/cases.sh
. "$top/tests/packaging/cases.sh"

# The package is built as the user who calls; the rest takes root, in a name space of its own, so
# that no mount outlives the test.
if [ $# = 0 ]; then
  output=$("$top/scripts/package") || { echo "$output"; exit 1; }
  rights=()
  if [ "$(id -u)" != 0 ]; then
    rights=(sudo "--preserve-env=GTEST_OUTPUT,TONALYX_CLEAN_ROOT")
  fi
  exec "${rights[@]}" unshare --mount "$0" "$top/$(sed -n '$s/^Package: //p' <<<"$output")"
fi

package=$1
work=$(mktemp -d)
mounts=()
cleanup() {
  local i
  for ((i = ${#mounts[@]} - 1; i >= 0; i--)); do umount "${mounts[i]}"; done
  rm -rf --one-file-system "$work"
}
trap cleanup EXIT
chmod 755 "$work"

program=/usr/lib/tonalyx
state=/var/lib/norvane/velsona
key='HKLM\SOFTWARE\Norvane\Velsona'

# The machine.

# A minimal system with what the package depends on, and the standalone form of systemd-tmpfiles.
make_base() {
  local codename dependencies
  codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
  dependencies=$(dpkg-deb -f "$package" Depends | sed 's/ *([^)]*)//g; s/ *|[^,]*//g; s/ //g')
  mmdebstrap --quiet --mode=root --variant=minbase --dpkgopt=force-unsafe-io \
    --include="$dependencies,systemd-standalone-tmpfiles" "$codename" "$1"
}

# new_machine NAME: a fresh copy; $machine is its root from now on.
new_machine() {
  machine=$work/$1/root
  mkdir -p "$work/$1/changes" "$work/$1/scratch" "$machine"
  mount -t overlay overlay \
    -o "lowerdir=$base,upperdir=$work/$1/changes,workdir=$work/$1/scratch" "$machine"
  mounts+=("$machine")
  mount -t proc proc "$machine/proc"
  mounts+=("$machine/proc")
  mkdir "$machine/packages"
  cp "$package" "$machine/packages/new.deb"
  cp "$older_package" "$machine/packages/old.deb"
}

# The kernel's view of an HD Audio codec, of the model with that subsystem ID.
add_codec() {
  local codec=$machine/sys/bus/hdaudio/devices/hdaudioC0D0
  mkdir -p "$codec"
  echo 0x10ec0257 >"$codec/vendor_id"
  echo "$1" >"$codec/subsystem_id"
  echo 0x00100001 >"$codec/revision_id"
  echo 0x1 >"$codec/afg"
}

# inside COMMAND...: as root of that machine.
inside() { chroot "$machine" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 "$@"; }

# inside_as USER COMMAND...: as a user without rights, who shares nothing by default.
inside_as() {
  local user=$1
  shift
  (umask 077 && inside setpriv --reuid="$user" --regid="$user" --clear-groups "$@")
}

package_tool() { inside dpkg --force-unsafe-io "$@"; }

add_tuning() {
  "$top/build/bin/vtdmake" "$top/resources/samples/sample.json" "$machine$program/$1"
}

active_setting() {
  local speaker='{DFF21CE1-F70F-11D0-B917-00A0C9223196}'
  inside tonalyx-regtool query "$key\\Parameters\\$speaker\\Settings" /v ActiveSetting |
    awk '/REG_SZ/ { print $3 }'
}

# The package of a version before this one, with a file that is no longer in it.
make_older_package() {
  local tree=$work/older
  dpkg-deb -R "$package" "$tree"
  sed -i "s/^Version: .*/Version: $2/" "$tree/DEBIAN/control"
  echo gone >"$tree$program/gone"
  dpkg-deb --root-owner-group -b "$tree" "$1" >/dev/null
}

# The cases.

# shellcheck disable=SC2016
is_installed() {
  is "install ok installed $1" \
    "$(inside dpkg-query -W -f='${Status} ${Version}' tonalyx)"
  is "" "$(package_tool --audit)"
}

# Without a tuning file nothing is imported.
installs() {
  package_tool -i /packages/new.deb
  is_installed "$version"
  is "" "$(ls -A "$machine$state")"
  state_folder_is_open
}

state_folder_is_open() {
  is "777 root root" "$(inside stat -c '%a %U %G' "$state")"
  is "755 root root" "$(inside stat -c '%a %U %G' "$(dirname "$state")")"
}

commands_run() {
  local tool
  for tool in engine regtool enginemon laptopctl vtdmake; do inside "tonalyx-$tool" --help; done
  is /usr/lib/tonalyx/tonalyx "$(inside readlink -f /usr/bin/tonalyx)"
}

# There, and off: nothing but the user turns it on.
engine_is_off() {
  test -f "$machine/usr/lib/systemd/user/tonalyx-engine.service"
  is "" "$(find "$machine/etc/systemd/user" -name 'tonalyx*' 2>/dev/null)"
}

users_share_the_store() {
  inside_as 64101 tonalyx-regtool add "$key" /v HardwareOutputPath /t REG_DWORD /d 2 /f
  inside_as 64102 tonalyx-regtool add "$key" /v HardwareOutputPath /t REG_DWORD /d 3 /f
  inside_as 64101 tonalyx-regtool query "$key" /v HardwareOutputPath | grep -w 0x3
  inside tonalyx-regtool query "$key" /v HardwareOutputPath | grep -w 0x3
}

# Everything that the window needs is in what the package depends on; and the desktop finds the
# entry that belongs to the window.
window_opens() {
  mkdir -p /tmp/.X11-unix "$machine/tmp/.X11-unix"
  mount --bind /tmp/.X11-unix "$machine/tmp/.X11-unix"
  local settings=(TONALYX_ROOT=/tmp/panel TONALYX_LAPTOP=/tmp/laptop.json) class
  inside "${settings[@]}" tonalyx-laptopctl /tmp/laptop.json new layers
  class=$("$top/scripts/lib/with_display.sh" 96 "$top/tests/packaging/window_class.sh" \
    chroot "$machine" env "${settings[@]}" tonalyx)
  umount "$machine/tmp/.X11-unix"
  rm -rf "$machine"/tmp/*
  is "$(sed -n 's/^StartupWMClass=//p' "$machine/usr/share/applications/tonalyx.desktop")" "$class"
}

removal_keeps_the_state() {
  package_tool -r tonalyx
  test ! -e "$machine/usr/bin/tonalyx"
  test ! -e "$machine$program"
  test -s "$machine$state/registry.db"
}

# What the package manager itself writes down is no trace.
purge_leaves_no_trace() {
  package_tool -P tonalyx
  is "" "$(cd "$1" && find . -path ./var/lib/dpkg -prune -o -path ./var/log -prune -o \
    -path ./packages -prune -o -path ./sys -prune -o ! -type d -print)"
  test ! -e "$machine$(dirname "$state")"
}

# An older version in use: somebody has set something, and made the folder sticky.
older_version_in_use() {
  package_tool -i /packages/old.deb
  is_installed "$older_version"
  inside tonalyx-regtool add "$key" /v Kept /d yes
  inside chmod 1755 "$state"
}

upgrades() {
  package_tool -i /packages/new.deb
  is_installed "$version"
  test ! -e "$machine$program/gone"
  inside tonalyx-regtool query "$key" /v Kept | grep -w yes
  state_folder_is_open
}

imports_the_tuning() {
  add_codec 0x1a9e107d
  add_tuning 0.vtd
  local output
  output=$(chroot "$machine" env TONALYX_ROOT=/elsewhere dpkg --force-unsafe-io \
    -i /packages/new.deb 2>&1)
  is_installed "$version"
  grep -F "tonalyx: the tuning was handed to the import" <<<"$output"
  test ! -e "$machine$program/0.vtd"
  test ! -e "$machine/elsewhere"
  is 2 "$(active_setting)"
  users_share_the_store
}

unsupported_machine_is_a_message() {
  add_codec 0x10431234
  mkdir -p "$machine$program"
  add_tuning 0.VTD
  package_tool -i /packages/new.deb | tee "$work/output"
  is_installed "$version"
  grep -F "tonalyx: this machine is not a supported model" "$work/output"
  test -s "$machine$program/0.VTD"
}

# configures_with STATUS MESSAGE: whatever the program does, the package is configured.
configures_with() {
  rm -f "$machine$program/tonalyx"
  printf '#!/bin/sh\nexit %s\n' "$1" >"$machine$program/tonalyx"
  chmod 755 "$machine$program/tonalyx"
  inside sh /var/lib/dpkg/info/tonalyx.postinst configure "$version" | tee "$work/output"
  grep -F "tonalyx: $2" "$work/output"
}

version=$(dpkg-deb -f "$package" Version)
older_version=0.9
older_package=$work/older.deb
make_older_package "$older_package" "$older_version"

base=${TONALYX_CLEAN_ROOT:-$work/base}
[ -d "$base" ] || make_base "$base"

new_machine plain
package_tool -P systemd-standalone-tmpfiles >/dev/null
expect "installs without systemd-tmpfiles, the state folder open to everyone" installs
expect "the commands run" commands_run
expect "the engine is there, and off" engine_is_off
expect "users share the store" users_share_the_store
expect "the window opens, with the class of the desktop entry" window_opens
expect "removal keeps the state" removal_keeps_the_state

new_machine used
expect "an older version is in use" older_version_in_use
expect "upgrades, keeps the settings and repairs the folder's rights" upgrades
expect "a tuning beside the program is imported" imports_the_tuning
expect "purge leaves no trace, the imported state included" purge_leaves_no_trace "$work/used/changes"

new_machine unsupported
expect "an unsupported machine is a message" unsupported_machine_is_a_message
expect "a failing program is a message" \
  configures_with 5 "the tuning was not imported, tonalyx /init ended with status 5"
expect "a running program is a message" \
  configures_with 0 "the tuning was not imported, tonalyx is running"
finish_cases
