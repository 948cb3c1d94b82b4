# Sourced: runs the registered tests of a build folder and counts their cases.
# shellcheck shell=bash

# Cases passed and failed, from the reports that the test programs left in folder $1 and the list
# "name status" of programs on standard input. A program without a report counts as one case.
count_cases() {
  local results=$1 passed=0 failed=0 name status report tests failures skipped
  while read -r name status; do
    report="$results/$name.xml"
    tests=0 failures=0 skipped=0
    if [ -s "$report" ]; then
      read -r tests failures skipped < <(sed -n \
        's/^<testsuites tests="\([0-9]*\)" failures="\([0-9]*\)" disabled="\([0-9]*\)".*/\1 \2 \3/p' \
        "$report")
    elif [ "$status" = run ]; then
      tests=1
    fi
    if [ "$status" != run ] && [ "$failures" = 0 ]; then
      tests=$((tests + 1)) failures=1
    fi
    passed=$((passed + tests - failures - skipped))
    failed=$((failed + failures))
  done
  echo "$passed passed, $failed failed"
  [ "$failed" = 0 ] && [ "$passed" -gt 0 ]
}

# run_tests BUILD_FOLDER [CTEST ARGUMENT...]
run_tests() {
  local folder=$1 results="$1/test-results"
  shift
  rm -rf "$results"
  mkdir -p "$results"
  GTEST_OUTPUT="xml:$results/" ctest --test-dir "$folder" --output-on-failure \
    --output-junit "$results/ctest.junit" "$@" || true
  sed -n 's/^[[:space:]]*<testcase name="\([^"]*\)".*status="\([^"]*\)".*/\1 \2/p' \
    "$results/ctest.junit" | count_cases "$results" | tee "$results/summary.txt"
}
