# Sourced by the commands: installs what is missing and builds.
# shellcheck shell=bash

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

as_root() {
  if [ "$(id -u)" = 0 ]; then
    "$@"
  else
    sudo "$@"
  fi
}

# missing_packages KIND...: what packages.txt lists for these kinds and is not installed.
missing_packages() {
  local kind package installed
  installed=$(dpkg-query -W -f='${db:Status-Abbrev} ${Package}\n' | awk '/^ii/ { print $2 }')
  while read -r kind package; do
    case " $* " in *" $kind "*) ;; *) continue ;; esac
    grep -qxF -- "$package" <<<"$installed" || echo "$package"
  done < <(grep -v '^#' "$top/scripts/lib/packages.txt")
}

# install_packages KIND...: nothing when all are there.
install_packages() {
  local missing
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} = 0 ] && return 0
  echo "Installing: ${missing[*]}"
  as_root apt-get update -qq
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >/dev/null
}

# on_if_installed KIND...: what is configured only where its packages are.
on_if_installed() { if [ -z "$(missing_packages "$@")" ]; then echo ON; else echo OFF; fi; }

# build_preset PRESET [TARGET...]: who only runs the panel needs nothing that the tests need.
build_preset() {
  local preset=$1 folder="$top/build" log
  shift
  [ "$preset" = release ] || folder="$top/build/$preset"
  log=$(mktemp)
  if ! (cd "$top" && cmake --preset "$preset" \
    -DTONALYX_BUILD_TESTS="$(on_if_installed bench test)" \
    -DTONALYX_BUILD_BENCHMARKS="$(on_if_installed bench)" >"$log" 2>&1); then
    cat "$log"
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
  if [ $# = 0 ]; then
    cmake --build "$folder"
  else
    cmake --build "$folder" --target "$@"
  fi
}
