# Sourced: runs the registered tests of a build folder and counts their cases.
# shellcheck shell=bash

# sum_attribute NAME FILE...: over the first lines of GoogleTest reports.
sum_attribute() {
  local name=$1
  shift
  cat /dev/null "$@" | sed -n "s/^<testsuites .*\\b$name=\"\\([0-9]*\\)\".*/\\1/p" |
    awk '{ sum += $1 } END { print sum + 0 }'
}

# count_cases RESULTS: cases passed and failed. A program that left no report, because it is no
# GoogleTest program or because it died, counts as one case.
count_cases() {
  local results=$1 reports bad ok run fail skipped failed passed
  shopt -s nullglob
  reports=("$results"/*.xml)
  shopt -u nullglob
  bad=$(cat /dev/null "${reports[@]}" | grep -c '^<testsuites .*failures="[1-9]' || true)
  ok=$((${#reports[@]} - bad))
  skipped=$(cat /dev/null "${reports[@]}" | grep -c '<testcase .*result="skipped"' || true)
  run=$(grep -c '<testcase .*status="run"' "$results/ctest.junit" || true)
  fail=$(grep -c '<testcase .*status="fail"' "$results/ctest.junit" || true)

  failed=$(sum_attribute failures "${reports[@]}")
  passed=$(($(sum_attribute tests "${reports[@]}") - failed - \
    $(sum_attribute disabled "${reports[@]}") - skipped))
  if [ "$run" -gt "$ok" ]; then passed=$((passed + run - ok)); fi
  if [ "$fail" -gt "$bad" ]; then failed=$((failed + fail - bad)); fi
  echo "$passed passed, $failed failed"
  [ "$failed" = 0 ] && [ "$passed" -gt 0 ]
}

# run_tests BUILD_FOLDER [CTEST ARGUMENT...]
run_tests() {
  local folder results
  folder=$(cd "$1" && pwd)
  results=$folder/test-results
  shift
  rm -rf "$results"
  mkdir -p "$results"
  GTEST_OUTPUT="xml:$results/" ctest --test-dir "$folder" --output-on-failure \
    --output-junit "$results/ctest.junit" "$@" || true
  count_cases "$results" | tee "$results/summary.txt"
}
