#!/bin/sh
# SPDX-License-Identifier: MIT

# Draws every repeat in every layout, the measured objects of the leaves, and gradation curves. Prints the measures.
#
# usage: draw_pictures.sh PATTERN_VIEW OUT_DIR [X,Y,W,H]
#   PATTERN_VIEW  the program, in one folder with the other examples
#   OUT_DIR       the folder for pictures such as sprig-half-drop.png; created if it does not exist
#   X,Y,W,H       the visible rectangle (0,0,900,700)
set -eu

pattern_view=$1
out=$2
view=${3:-0,0,900,700}
artwork=$(dirname "$0")/artwork

# draw NAME OPTION...: draws one repeat, with inks and colours as options of pattern_view.
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
