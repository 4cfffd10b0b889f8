#!/bin/sh
# SPDX-License-Identifier: MIT

# Draws every repeat in every layout, what can be measured on the plate of leaves, and gradation curves; prints the measures.
#
# usage: draw_pictures.sh PATTERN_VIEW OUT_DIR [X,Y,W,H]
#   PATTERN_VIEW  the program; the other examples lie beside it
#   OUT_DIR       where the pictures go, such as OUT_DIR/sprig-half-drop.png; made if it is missing
#   X,Y,W,H       the visible rectangle (0,0,900,700)
set -eu

pattern_view=$1
out=$2
view=${3:-0,0,900,700}
artwork=$(dirname "$0")/artwork

# draw NAME OPTION...: one repeat, its inks and colours given as pattern_view takes them.
draw() {
    name=$1
    shift
    for layout in straight half-drop brick; do
        "$pattern_view" --layout "$layout" --view "$view" "$@" -o "$out/$name-$layout.png"
        echo "$out/$name-$layout.png"
    done
}

mkdir -p "$out"
draw sprig --paper f4ecdc --color 3f5d4a "$artwork/sprig-leaf.png" --color c0564b "$artwork/sprig-blossom.png"
draw fans --paper 14213d --color d96c4f "$artwork/fans-jewel.png" --color e5c07b "$artwork/fans-gold.png"
"$(dirname "$pattern_view")/measure_objects" "$artwork/leaves.png" "$out/leaves-objects.png"
echo "$out/leaves-objects.png"
"$(dirname "$pattern_view")/gradation_curve" "$out/gradation-curve.png"
echo "$out/gradation-curve.png"
