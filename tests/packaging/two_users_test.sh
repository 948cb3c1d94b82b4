#!/usr/bin/env bash
# two_users_test.sh [FOLDER_OF_PROGRAMS]: users without rights, each with a umask that shares
# nothing, and a system service that runs as root work on one store. Needs root to become them.
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
# shellcheck source=tests/packaging/cases.sh
. "$top/tests/packaging/cases.sh"

[ "$(id -u)" = 0 ] || exec sudo --preserve-env=GTEST_OUTPUT "$0" "$@"

# Numbers are enough; no such accounts need to exist.
anna=64101
bert=64102
root=0

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
chmod 755 "$work"
# A copy that everybody reaches, whoever owns the tree.
cp -r "${1:-$top/build/bin}" "$work/bin"
chmod -R a+rX "$work/bin"

endpoint=00000000-0000-0000-0000-00000000000A
key='HKLM\SOFTWARE\Norvane\Velsona\Parameters\{DFF21CE1-F70F-11D0-B917-00A0C9223196}\Settings'

# become USER COMMAND...: this shell becomes that user's program, with nothing of the caller's
# environment.
become() {
  local user=$1
  shift
  umask 077
  exec setpriv --reuid="$user" --regid="$user" --clear-groups \
    env -i PATH="$work/bin:$PATH" TONALYX_ROOT="$TONALYX_ROOT" \
    ${TONALYX_LAPTOP:+TONALYX_LAPTOP="$TONALYX_LAPTOP"} "$@"
}

as() { (become "$@"); }

write() { as "$1" regtool add "$key\\2" /v "$2" /t REG_BINARY /d "$3" /f; }
read_back() { as "$1" regtool query "$key\\2" /v "$2" | awk '/REG_BINARY/ { print $3 }'; }

# Every one of them reads what every other wrote last.
everybody_edits() {
  local writer reader number=0
  for writer in "$@"; do
    number=$((number + 1))
    write "$writer" Param6 "0000003$number"
    for reader in "$@"; do
      is "0000003$number" "$(read_back "$reader" Param6)"
    done
  done
}

folder_is_open() {
  is 777 "$(stat -c %a "$TONALYX_ROOT")"
  local file
  for file in "$TONALYX_ROOT"/registry.*; do
    is "666 ${file##*/}" "$(stat -c %a "$file") ${file##*/}"
  done
}

# The panel's own start: the lock is each user's, the log everybody's.
both_start_the_panel() {
  as "$anna" tonalyx /init
  as "$bert" tonalyx /init
  is 666 "$(stat -c %a "$TONALYX_ROOT/Velsona.txt")"
  is 2 "$(grep -c 'was supported' "$TONALYX_ROOT/Velsona.txt")"
}

# new_trap NAME: a state folder of its own, as the package makes it, for what a user puts there.
new_trap() {
  export TONALYX_ROOT=$work/trap.$1
  mkdir "$TONALYX_ROOT"
  chmod 777 "$TONALYX_ROOT"
}

# ends COMMAND...: whether it gets its way is not the question.
ends() {
  local status=0
  as "$root" timeout 20 "$@" || status=$?
  [ "$status" != 124 ]
}

start_the_systems_programs() {
  ends tonalyx /init
  ends regtool add "$key\\2" /v Param6 /t REG_BINARY /d 00000030 /f
  ends enginemon --endpoint "{$endpoint}" --seconds 0
}

# runs_into_traps NAME TARGET: a user put a FIFO there, whose other end nobody waits for, and a link,
# which leads to what only the system may change. The programs do without the file, or make it anew,
# but leave the target alone.
runs_into_traps() {
  local name=$1 target=$2 before
  local state='%n %F %a %s %y'
  new_trap "fifo.$name"
  as "$bert" mkfifo "$TONALYX_ROOT/$name"
  start_the_systems_programs
  new_trap "$name"
  as "$bert" ln -s "$target" "$TONALYX_ROOT/$name"
  before=$(stat -c "$state" "$work/precious"{,/*})
  start_the_systems_programs
  is "$before" "$(stat -c "$state" "$work/precious"{,/*})"
}

# As the package makes it.
export TONALYX_ROOT=$work/machine
mkdir "$TONALYX_ROOT"
chmod 777 "$TONALYX_ROOT"
expect "two users and the system edit one store" everybody_edits $anna $bert $root
expect "folder and files are open to everyone" folder_is_open

export TONALYX_LAPTOP=$work/laptop.json
(umask 022 && "$work/bin/laptopctl" "$TONALYX_LAPTOP" new standard)
expect "both users start the program" both_start_the_panel

mkdir -m 755 "$work/precious"
: >"$work/precious/empty"
for name in registry.db registry.db-{wal,shm,journal} registry.changed Velsona.txt \
  Velsona-0.{lock,socket}; do
  expect "a link or a FIFO in the place of $name holds nobody up and leads nowhere" \
    runs_into_traps "$name" "$work/precious/empty"
done
expect "nor in the place of the events" runs_into_traps events "$work/precious"
unset TONALYX_LAPTOP

# Without a package: the first user makes the folder.
export TONALYX_ROOT=$work/shared/norvane/velsona
mkdir "$work/shared"
chmod 777 "$work/shared"
expect "two users share a store that one of them made" everybody_edits $anna $bert $root
expect "that folder and its files are open to everyone" folder_is_open
finish_cases
