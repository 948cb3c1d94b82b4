#!/usr/bin/env bash
# hardening_test.sh FOLDER_OF_PROGRAMS [fortified]: every program was compiled and linked so that a
# fault in it stays a crash. "fortified" where the build checks calls of the C library too.
set -euo pipefail
# shellcheck source=tests/packaging/cases.sh
. "$(dirname "$0")/cases.sh"

# Addresses differ from start to start and no code is rewritten for it; those of other libraries are
# found at the start and then read-only; no stack is executable, and frames are guarded.
is_hardened() {
  local report pattern
  report=$(readelf --wide --file-header --dynamic --program-headers --dyn-syms "$1")
  for pattern in 'Type: +DYN' 'FLAGS_1.*\bPIE\b' 'GNU_RELRO' 'FLAGS.*\bNOW\b' \
    'GNU_STACK .* RW +0x' '\b__stack_chk_fail\b' ${2:+'\b__[a-z]+_chk\b'}; do
    grep -qE -- "$pattern" <<<"$report" || { echo "lacks $pattern"; return 1; }
  done
  ! grep -E 'TEXTREL|LOAD .* RWE +0x' <<<"$report"
}

for program in "$1"/*; do
  expect "$(basename "$program") is hardened" is_hardened "$program" "${2-}"
done
finish_cases
