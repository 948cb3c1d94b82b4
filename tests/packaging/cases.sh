# Sourced by the tests of this folder: runs cases and says PASS or FAIL for each.
# shellcheck shell=bash

passed=0
failed=0

# expect NAME COMMAND...: the command, a function mostly, runs in a shell of its own that ends with
# its first failing command. What it printed is shown when it failed.
expect() {
  local name=$1 output status
  shift
  set +e
  output=$(set -e; "$@" 2>&1)
  status=$?
  set -e
  if [ "$status" = 0 ]; then
    passed=$((passed + 1))
    echo "PASS $name"
  else
    failed=$((failed + 1))
    echo "FAIL $name (status $status)"
    printf '%s\n' "$output" | sed 's/^/     /'
  fi
}

# is WANTED GOT: for use inside a case.
is() {
  [ "$1" = "$2" ] || { printf 'wanted: %s\ngot:    %s\n' "$1" "$2"; return 1; }
}

# Sums up; leaves the counts where the runner of all tests reads them.
finish_cases() {
  local report=${GTEST_OUTPUT-}
  case $report in
    xml:*/) report+=$(basename "$0" .sh).xml ;;
  esac
  case $report in
    xml:*)
      mkdir -p "$(dirname "${report#xml:}")"
      printf '<testsuites tests="%s" failures="%s" disabled="0"></testsuites>\n' \
        $((passed + failed)) "$failed" >"${report#xml:}"
      ;;
  esac
  echo "$passed passed, $failed failed"
  [ "$failed" = 0 ]
}
