// SPDX-License-Identifier: MIT
/// @file
/// Folding a position anywhere on the plane back into the one tile, on whole numbers and on doubles alike.
#pragma once

#include <OmnarRaster.h>

#include "numeric/integers.h"

namespace omnar {

/// By how many tiles a position before the tile is moved forward: far enough, and by one too many where it lies on a
/// tile's edge. Whole numbers divide without a sign, which makes a count of billions of a position that is not before
/// the tile.
constexpr Wrapping tilesBefore(Wrapping v, Wrapping size) { return (0 - v).bits() / size.bits() + 1; }
constexpr double tilesBefore(double v, double size) { return 1.0 - toInt(v / size); }

/// By how many tiles a position at or behind the tile is moved back.
constexpr Wrapping tilesBehind(Wrapping v, Wrapping size) { return v.bits() / size.bits(); }
constexpr double tilesBehind(double v, double size) { return toInt(v / size); }

/// Moves `along` by whole tiles, and `across` by the drop of each of them; `x` is one of the two. Both layouts, brick
/// too, ask for the sign of x: hosts rely on the positions that come of it.
template <class V, class Drop>
constexpr void crossTiles(const V& x, V& along, V size, V& across, Drop drop) {
    if (x < 0) {
        const V tiles = tilesBefore(along, size);
        along += tiles * size;
        across += drop(tiles);
    }
    if (x > 0) {
        const V tiles = tilesBehind(along, size);
        along -= tiles * size;
        across -= drop(tiles);
    }
}

/// Folds what crossTiles() left. In brick layout the last step takes the tiles of x off y, as hosts rely on.
template <class V>
constexpr void foldAcross(V& y, V& across, V acrossSize) {
    if (across < 0) across += tilesBefore(across, acrossSize) * acrossSize;
    if (y > 0) y -= tilesBehind(across, acrossSize) * acrossSize;
}

/// Places (x, y). `drop(n)` is the way that n tiles move a position along the other axis.
template <class V, class Drop>
constexpr void place(V& x, V& y, V width, V height, _EDropKind kind, Drop drop) {
    if (kind == eDropVertical) {
        crossTiles(x, x, width, y, drop);
        foldAcross(y, y, height);
    } else if (kind == eDropHorizontal) {
        crossTiles(x, y, height, x, drop);
        foldAcross(y, x, width);
    }
}

/// The drop in whole pixels.
constexpr auto wholeDrop(Wrapping drop) {
    return [drop](Wrapping tiles) { return tiles * drop; };
}

/// True if place() never divides by a size of 0.
template <class Drop>
constexpr bool placeable(Wrapping x, Wrapping y, Wrapping width, Wrapping height, _EDropKind kind, Drop drop) {
    if (kind != eDropVertical && kind != eDropHorizontal) return true;
    const bool halfDrop = kind == eDropVertical;
    Wrapping& across = halfDrop ? y : x;
    if (x != 0) {
        const Wrapping size = halfDrop ? width : height;
        if (size == 0) return false;
        crossTiles(x, halfDrop ? x : y, size, across, drop);
    }
    return (halfDrop ? height : width) != 0 || (across >= 0 && y <= 0);
}

}  // namespace omnar
