// SPDX-License-Identifier: MIT
/// @file
/// Placing positions on the plane into the repeat, in whole pixels and in doubles.
#pragma once

#include "buffers/host/contract.h"
#include "numeric/integers.h"
#include "repeat/layout.h"

namespace omnar {

/// The number of tiles that moves a position below 0 to 0 or above. It is one more than needed for a position on the
/// edge of a tile. Whole numbers divide unsigned: the count of a positive position is that of a distance near 2^32.
constexpr Wrapping tilesForward(Wrapping position, Wrapping size) { return (0 - position).bits() / size.bits() + 1; }
constexpr double tilesForward(double position, double size) { return 1.0 - toInt(position / size); }

/// The number of tiles that moves a position of 0 or above into tile 0.
constexpr Wrapping tilesBack(Wrapping position, Wrapping size) { return position.bits() / size.bits(); }
constexpr double tilesBack(double position, double size) { return toInt(position / size); }

/// Moves `crossed` by whole tiles, and `shifted` by their drop. The sign of x decides in both layouts, although brick
/// layout crosses tiles along y: hosts rely on the results.
template <class V, class Drop>
constexpr void crossTiles(const V& x, V& crossed, V size, V& shifted, const DropLayout<Drop>& layout) {
    if (x < 0) {
        const V tiles = tilesForward(crossed, size);
        crossed += tiles * size;
        shifted += layout.drop(tiles);
    }
    if (x > 0) {
        const V tiles = tilesBack(crossed, size);
        crossed -= tiles * size;
        shifted -= layout.drop(tiles);
    }
}

/// Folds `shifted` into the tile. In brick layout the last step takes the tiles of x off y: hosts rely on the results.
template <class V>
constexpr void foldShifted(V& y, V& shifted, V size) {
    if (shifted < 0) shifted += tilesForward(shifted, size) * size;
    if (y > 0) y -= tilesBack(shifted, size) * size;
}

/// Places (x, y). A kind that is no layout leaves the position as it is.
template <class V, class Drop>
constexpr void place(V& x, V& y, V width, V height, const DropLayout<Drop>& layout) {
    if (layout.isHalfDrop()) {
        crossTiles(x, x, width, y, layout);
        foldShifted(y, y, height);
    } else if (layout.isBrick()) {
        crossTiles(x, y, height, x, layout);
        foldShifted(y, x, width);
    }
}

/// The drop in whole pixels.
struct WholeDrop {
    Wrapping pixels;

    constexpr Wrapping operator()(Wrapping tiles) const { return tiles * pixels; }
};

/// True if place() never divides by a size of 0.
template <class Drop>
constexpr bool isPlaceable(Wrapping x, Wrapping y, Wrapping width, Wrapping height, const DropLayout<Drop>& layout) {
    if (!layout.isLayout()) return true;
    Wrapping& shifted = layout.shifted(x, y);
    if (x != 0) {
        const Wrapping size = layout.crossed(width, height);
        if (size == 0) return false;
        crossTiles(x, layout.crossed(x, y), size, shifted, layout);
    }
    return layout.shifted(width, height) != 0 || (shifted >= 0 && y <= 0);
}

}  // namespace omnar

/// Checks that placing (x, y) never divides by a size of 0.
#define OMNAR_EXPECT_PLACEABLE(x, y, width, height, layout)                                     \
    OMNAR_EXPECT_AS(width, (width) != 0 || ::omnar::isPlaceable(x, y, width, height, layout),   \
                    "not 0, unless placing never divides by it");                               \
    OMNAR_EXPECT_AS(height, (height) != 0 || ::omnar::isPlaceable(x, y, width, height, layout), \
                    "not 0, unless placing never divides by it")
