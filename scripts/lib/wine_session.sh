#!/usr/bin/env bash
# wine_session.sh BIN PICTURES: in a Wine prefix that knows nothing yet, makes a virtual laptop with
# three layers, imports the sample tuning and plays the short session.
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
bin=$1
pictures=$2

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export TONALYX_LAPTOP=$work/laptop.json
wine "$bin/laptopctl.exe" "$TONALYX_LAPTOP" new layers
wine "$bin/vtdmake.exe" "$top/resources/samples/sample.json" "$bin/0.vtd"
wine "$bin/tonalyx.exe" /init
rm -f "$bin/0.vtd"
"$top/scripts/lib/session.sh" "$bin" "$pictures" wine
