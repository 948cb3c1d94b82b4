#!/usr/bin/env bash
# Checks the committed pictures: the stored sizes that the layout relies on,
# the alpha at their borders, and that they are all that the sources give and
# nothing else. One line per check; exit status 1 when any fails.
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

declare -A width height shape
while read -r id w h s _; do
    [[ -z $id || $id == \#* ]] && continue
    width[$id]=$w height[$id]=$h shape[$id]=$s
done < "$art/manifest.txt"
ids=$(printf '%s\n' "${!width[@]}" | sort -n)

stored_size() { # FILE -> "W H", from the PNG header
    od -An -j16 -N8 -tu1 "$1" | awk '{print $3 * 256 + $4, $7 * 256 + $8}'
}

# Draws BODY on a canvas of W x H; in BODY, the picture is #art.
draw() { # ID W H BODY OUTPUT [OPTION]...
    local id=$1 w=$2 h=$3 body=$4 output=$5
    shift 5
    {
        echo "<svg xmlns='http://www.w3.org/2000/svg' width='$w' height='$h'><defs>"
        printf "<image id='art' width='%s' height='%s' href='data:image/png;base64," \
            "${width[$id]}" "${height[$id]}"
        base64 -w0 "$png/$id.png"
        echo "'/></defs>$body</svg>"
    } | rsvg-convert --unlimited "$@" --output "$output"
}

# The four corner pixels side by side must be empty.
corners_are_clear() {
    local id=$1 x=$((width[$1] - 1)) y=$((height[$1] - 1)) body='' at=0 corner
    for corner in "0 0" "-$x 0" "0 -$y" "-$x -$y"; do
        read -r dx dy <<< "$corner"
        body+="<svg x='$at' width='1' height='1' overflow='hidden'><use href='#art' x='$dx' y='$dy'/></svg>"
        at=$((at + 1))
    done
    draw "$id" 4 1 "$body" "$work/corners.png"
    draw "$id" 4 1 '' "$work/empty.png"
    cmp -s "$work/corners.png" "$work/empty.png"
}

# A soft shadow or glow that is still visible in the outermost row or column
# would end in a hard line. Alpha up to 4/255 counts as invisible.
border_is_clear() {
    local id=$1 w=${width[$1]} h=${height[$1]}
    local frame="M0 0H${w}V${h}H0ZM1 1V$((h - 1))H$((w - 1))V1Z"
    local visible="<filter id='v' x='0' y='0' width='$w' height='$h' filterUnits='userSpaceOnUse'><feComponentTransfer><feFuncA type='linear' slope='255' intercept='-4'/></feComponentTransfer></filter>"
    draw "$id" "$w" "$h" "$visible<clipPath id='c'><path clip-rule='evenodd' d='$frame'/></clipPath><g clip-path='url(#c)'><use href='#art' filter='url(#v)'/></g>" "$work/border.png"
    draw "$id" "$w" "$h" '' "$work/empty.png"
    cmp -s "$work/border.png" "$work/empty.png"
}

is_opaque() {
    local id=$1 w=${width[$1]} h=${height[$1]}
    draw "$id" "$w" "$h" "<use href='#art'/>" "$work/on_black.png" --background-color=black
    draw "$id" "$w" "$h" "<use href='#art'/>" "$work/on_white.png" --background-color=white
    cmp -s "$work/on_black.png" "$work/on_white.png"
}

outline() { # ID OUTPUT: the picture's alpha in black
    draw "$1" "${width[$1]}" "${height[$1]}" "<filter id='f'><feColorMatrix values='0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 1 0'/></filter><use href='#art' filter='url(#f)'/>" "$2"
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

# Alpha.
wrong=()
for id in $ids; do
    case ${shape[$id]} in
        cut) corners_are_clear "$id" || wrong+=("$id has a filled corner") ;;
        full) is_opaque "$id" || wrong+=("$id is not opaque") ;;
        *) wrong+=("$id has an unknown shape") ;;
    esac
done
report "corners are clear, the tile is opaque" ${wrong[@]+"${wrong[@]}"}

wrong=()
for id in 149 200 {150..167} {201..218}; do
    border_is_clear "$id" || wrong+=("$id")
done
report "no shadow or glow is cut off" ${wrong[@]+"${wrong[@]}"}

outline 141 "$work/grey.png"
wrong=()
for id in 142 190; do
    outline "$id" "$work/outline.png"
    cmp -s "$work/grey.png" "$work/outline.png" || wrong+=("$id")
done
report "grey, cyan and red dots share one outline" ${wrong[@]+"${wrong[@]}"}

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
