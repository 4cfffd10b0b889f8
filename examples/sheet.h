// SPDX-License-Identifier: MIT
/// @file
/// Inks drawn from formulas.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "point.h"

namespace example {

/// A set of points: true for those inside.
using Shape = std::function<bool(Point)>;

/// One ink of a square tile, sampled at 8 x 8 points per pixel. The ink of a pixel is the share of its points that are
/// inked. Shapes that cross an edge of the tile continue at the opposite edge.
class Sheet {
public:
    explicit Sheet(int side);

    /// Inks the points of `shape` in the square of side 2 * `halfSide` around `centre`.
    void paint(Point centre, double halfSide, const Shape& shape) { set(centre, halfSide, shape, true); }
    /// Removes the ink from them.
    void erase(Point centre, double halfSide, const Shape& shape) { set(centre, halfSide, shape, false); }

    bool isInked(Point p) const;

    /// Writes the sheet as a grey PNG: 255 for no ink, 0 for full ink.
    void write(const std::string& path) const;

private:
    void set(Point centre, double halfSide, const Shape& shape, bool inked);
    std::size_t index(int x, int y) const;
    int pixelInk(int x, int y) const;

    int side_;
    std::vector<char> points_;
};

}  // namespace example
