#!/usr/bin/env bash
# Who may include what: the contract knows the standard library alone, toolkit and system headers
# stay in the backends (tests, benchmarks and tools may talk to the system directly).
set -uo pipefail
cd "$(dirname "$0")/../.."
status=0

# check NAME PATTERN PATHSPEC...: no #include in these files may match.
check() {
  local name=$1 pattern=$2 found
  shift 2
  found=$(git grep --no-index -nE "^ *# *include +$pattern" -- "$@")
  if [ -z "$found" ]; then
    echo "PASS $name"
  else
    echo "FAIL $name:"
    echo "$found"
    status=1
  fi
}

system='[<"](Q[A-Za-z]|q[a-z]+\.h|sqlite3\.h|pulse/|X11/|xcb/|wayland|windows\.h|gdiplus|pipewire/|spa/|nlohmann/)'
posix='<(unistd|fcntl|poll|signal|pwd|dirent|dlfcn|sys/[a-z]+|linux/[a-z]+)\.h>'

check "the contract includes the standard library only" '([<"][^>"]*\.h>|"[^p]|"p[^l])' ':(glob)platform/*.h'
check "no toolkit header outside the backends" "$system" \
  'app/*.cpp' 'app/*.h' 'dsp/*' 'store/*' 'endpoints/*' 'engine_link/*' 'ui/*' 'resources/*.h' 'resources/*.cpp' \
  'platform/fake/*' ':(glob)platform/*.cpp' ':(glob)engine/*.h'
check "no system header outside the backends" "$posix" \
  'app/*' 'dsp/*' 'store/*' 'endpoints/*' 'engine_link/*' ':(glob)engine/*' 'ui/*' 'resources/*' 'platform/fake/*' \
  'platform/virtual/*' ':!*.txt'
check "the mathematics leans on nothing" '"(platform|store|endpoints|ui|app|resources)/' 'dsp/*'
check "the store leans on the mathematics alone" '"(endpoints|engine_link|ui|app)/' 'store/*'
check "the endpoints lean on the store alone" '"(engine_link|ui|app)/' 'endpoints/*'
check "what wakes the engine knows no windows" '"(ui|app)/' 'engine_link/*'
check "the engine knows no windows" '"(ui|app)/' 'engine/*'
check "the controls know no store" '"(store|endpoints|engine_link|app)/' 'ui/controls/*' 'ui/images/*'
exit $status
