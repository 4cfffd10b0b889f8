// SPDX-License-Identifier: MIT
/// @file
/// Anti-aliased lines, drawn as coverage and blended by the library.
#pragma once

#include <OmnarRaster.h>

#include <cstddef>
#include <vector>

#include "point.h"

namespace example {

/// An alpha plane that lines are drawn on. Positions are in pixels; the centre of a pixel is at half.
class Strokes {
public:
    Strokes(unsigned int width, unsigned int height);

    /// Draws a line with round ends. The coverage of a pixel is that of its centre's distance from the edge.
    void drawLine(Point start, Point end, double thickness);
    /// Draws a disc.
    void drawDisc(Point centre, double diameter) { drawLine(centre, centre, diameter); }
    /// Draws a closed line in dashes of `dash` points, with gaps of the same length.
    void drawDashes(const std::vector<Point>& closed, std::size_t dash, double thickness);
    /// Draws a number, its bottom centred at `bottom`.
    void drawNumber(unsigned int value, Point bottom, double height, double thickness);

    /// Blends a colour through the lines into a buffer of the same size, and erases them.
    void blendOver(TRC* pixels, TRC color, unsigned char opacity);

private:
    unsigned int width_;
    unsigned int height_;
    std::vector<L08> coverage_;
};

}  // namespace example
