// SPDX-License-Identifier: MIT
/// @file
/// Smooth lines: coverage for the library's blends.
#pragma once

#include <OmnarRaster.h>

#include <string>
#include <vector>

#include "sheet.h"

namespace example {

/// An alpha plane that lines are drawn on. Positions are in pixels; a pixel's centre lies at half.
class Strokes {
public:
    Strokes(unsigned int width, unsigned int height);

    /// A line with round ends; a pixel is covered by how far it lies inside.
    void line(Point from, Point to, double thickness);
    /// Every other piece of a closed line, each of `dash` of its points.
    void dashes(const std::vector<Point>& closed, std::size_t dash, double thickness);
    /// A number whose foot is centred at `foot`.
    void number(unsigned int value, Point foot, double height, double thickness);

    /// Lays a colour through the lines over a picture of the same size, and clears them.
    void blendOver(TRC* picture, TRC color, unsigned char opacity);

private:
    unsigned int width_;
    unsigned int height_;
    std::vector<L08> coverage_;
};

}  // namespace example
