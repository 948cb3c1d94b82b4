#!/usr/bin/env bash
# hardening_test.sh FOLDER_OF_PROGRAMS [fortified]: every program was compiled and linked so that a
# fault in it stays a crash. "fortified" where the build checks calls of the C library too.
set -euo pipefail
# shellcheck source=tests/packaging/cases.sh
. "$(dirname "$0")/cases.sh"

bin=$1
fortified=${2-}

# prints PATTERN READELF_ARGUMENT...: what the reader says has a line that matches.
prints() {
  local pattern=$1
  shift
  readelf --wide "$@" | grep -E -- "$pattern"
}

lacks() { ! prints "$@"; }

# Addresses differ from start to start, and no code is rewritten for it.
is_position_independent() {
  prints 'Type: +DYN' --file-header "$1"
  prints 'FLAGS_1.*\bPIE\b' --dynamic "$1"
  lacks 'TEXTREL' --dynamic "$1"
}

# All addresses of other libraries are found at the start and then read-only.
has_read_only_relocations() {
  prints 'GNU_RELRO' --program-headers "$1"
  prints 'FLAGS.*\bNOW\b' --dynamic "$1"
}

has_no_executable_stack() {
  prints 'GNU_STACK .* RW +0x' --program-headers "$1"
  lacks 'LOAD .* RWE +0x' --program-headers "$1"
}

guards_stack_frames() { prints '\b__stack_chk_fail\b' --dyn-syms "$1"; }

checks_library_calls() { prints '\b__[a-z]+_chk\b' --dyn-syms "$1"; }

for program in "$bin"/*; do
  name=$(basename "$program")
  expect "$name: position-independent" is_position_independent "$program"
  expect "$name: read-only relocations" has_read_only_relocations "$program"
  expect "$name: no executable stack" has_no_executable_stack "$program"
  expect "$name: guarded stack frames" guards_stack_frames "$program"
  [ "$fortified" != fortified ] || expect "$name: checked calls" checks_library_calls "$program"
done
finish_cases
