#!/usr/bin/env bash
# Checks the committed pictures: the stored sizes that the layout relies on, and
# that they are all that the sources give and nothing else. One line per check; exit status 1 when any fails.
set -uo pipefail
export LC_ALL=C

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
art=$root/resources/art
png=$root/resources/png
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0

report() { # NAME [COMPLAINT]...
    local name=$1
    shift
    if (($# == 0)); then
        echo "PASS $name"
    else
        echo "FAIL $name: $*"
        status=1
    fi
}

stored_size() { # FILE -> "W H", from the PNG header
    od -An -j16 -N8 -tu1 "$1" | awk '{print $3 * 256 + $4, $7 * 256 + $8}'
}

# Sizes that layout and controls rely on.
wrong=()
while read -r first last w h; do
    for ((id = first; id <= last; id++)); do
        [[ -f $png/$id.png && $(stored_size "$png/$id.png") == "$w $h" ]] || wrong+=("$id")
    done
done << 'END'
149 149 651 454
150 167 196 109
168 169 89 31
170 173 25 25
174 174 20 20
178 179 55 28
200 200 1802 1118
201 218 511 315
221 226 77 77
138 138 20 20
139 140 74 28
144 144 20 20
141 142 19 19
146 146 19 19
190 190 19 19
END
report "pictures have the sizes that the layout expects" ${wrong[@]+"${wrong[@]}"}

# States must differ, and so must the six modes.
twins=$(cd "$png" && sha256sum {150..173}.png {178..179}.png {201..218}.png {221..226}.png \
    {138..144}.png 190.png | sort | uniq -D -w64 | awk '{print $2}')
report "no two buttons or states look alike" $twins

# Sources: pictures are drawn, never pasted; letters are outlines.
report "sources hold neither text nor bitmaps" \
    $(cd "$art" && grep -rlE '<(text|tspan|image)\b|data:image' --include='*.svg' .)

if "$root/scripts/make-art" "$work/fresh"; then
    report "pictures are what the sources give (else run scripts/make-art)" \
        $(diff -rq "$work/fresh/png" "$png") $(diff -rq "$work/fresh/icons" "$root/resources/icons")
else
    report "pictures are what the sources give" "scripts/make-art failed"
fi
exit $status
