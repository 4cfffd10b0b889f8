// SPDX-License-Identifier: MIT
/// @file
/// The grid of zoomed tiles: which tile a view position lies in, and which file pixel it shows.
#pragma once

#include <OmnarPattern.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace omnar::pattern {

/// The remainder of a floor division, 0..side - 1.
inline unsigned modulo(std::int64_t value, unsigned side) {
    const std::int64_t rest = value % side;
    return static_cast<unsigned>(rest < 0 ? rest + side : rest);
}

/// One axis of the grid.
struct Axis {
    Axis(unsigned fileSide, double viewPerFile)
        : side(fileSide),
          zoom(viewPerFile),
          viewSide(static_cast<unsigned>(std::max(std::trunc(fileSide * zoom), 1.0))) {}

    /// A view position: the tile, and the view pixel in it.
    struct Place {
        std::int64_t tile;
        unsigned offset;
    };
    Place placeOf(std::int64_t position) const {
        const unsigned offset = modulo(position, viewSide);
        return {(position - offset) / viewSide, offset};
    }

    /// The file pixel that a view pixel of the tile shows, before any drop.
    unsigned fileOf(unsigned offset) const {
        return static_cast<unsigned>(static_cast<std::int64_t>(offset / zoom) % side);
    }

    /// The first view pixel of the tile that shows file pixel `file` or one after it; viewSide if there is none.
    unsigned firstShowing(unsigned file) const {
        if (file >= side) return viewSide;
        auto first = static_cast<unsigned>(std::min(std::ceil(file * zoom), static_cast<double>(viewSide)));
        while (first > 0 && fileOf(first - 1) >= file) --first;
        while (first < viewSide && fileOf(first) < file) ++first;
        return first;
    }

    /// The view pixels of the tile that show some of the file pixels first..last - 1: one of them, or in a smooth view
    /// the mean of some.
    struct Span {
        unsigned first;
        unsigned last;
    };
    Span showing(unsigned first, unsigned last, bool isSmooth) const {
        if (!isSmooth) return {firstShowing(first), firstShowing(last)};
        const std::uint64_t end = std::uint64_t{last} * viewSide;
        return {static_cast<unsigned>(std::uint64_t{first} * viewSide / side),
                static_cast<unsigned>((end + side - 1) / side)};
    }

    /// The same for file pixels that a drop moves by `shift`, modulo the side: up to two spans apart, handed to visit(span).
    template <class Visit>
    void forShowing(unsigned first, unsigned count, unsigned shift, bool isSmooth, Visit visit) const {
        if (count == 0) return;
        const unsigned moved = modulo(std::int64_t{first} + shift, side);
        const unsigned beforeEdge = std::min(count, side - moved);
        const Span span = showing(moved, moved + beforeEdge, isSmooth);
        if (count == beforeEdge) return visit(span);
        const Span afterEdge = showing(0, count - beforeEdge, isSmooth);
        if (afterEdge.last > span.first) return visit(Span{0, viewSide});  // a smooth pixel may show both
        visit(span);
        visit(afterEdge);
    }

    unsigned side;      ///< of a tile in file pixels
    double zoom;        ///< view pixels per file pixel
    unsigned viewSide;  ///< of a tile in view pixels; an integer, so that tiles abut
};

/// A tile.
struct Tile {
    std::int64_t column;
    std::int64_t row;
};

/// The tiles of a pattern at one zoom.
struct Grid {
    Grid(const Repeat& repeat, double zoom)
        : x(repeat.width, zoom),
          y(repeat.height, zoom),
          dropX(repeat.layout == Layout::brick ? repeat.drop % repeat.width : 0),
          dropY(repeat.layout == Layout::halfDrop ? repeat.drop % repeat.height : 0) {}

    /// How far the file position of a tile's view pixels is moved back along either axis by the drop, in file pixels.
    unsigned shiftX(const Tile& tile) const { return modulo(dropX * modulo(tile.row, x.side), x.side); }
    unsigned shiftY(const Tile& tile) const { return modulo(dropY * modulo(tile.column, y.side), y.side); }

    Axis x, y;
    std::int64_t dropX;  ///< brick: of each tile row, in file pixels, less than a side
    std::int64_t dropY;  ///< half-drop: of each tile column
};

}  // namespace omnar::pattern
