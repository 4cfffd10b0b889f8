// SPDX-License-Identifier: MIT
/// @file
/// The seam to the platform's graphics: filling what lies inside two outlines at once.
#pragma once

#include <OmnarRaster.h>

#include <cstddef>
#include <cstdint>
#include <span>

namespace omnar {

/// Two closed polygons. No coordinate is negative.
struct Outlines {
    std::span<const CPoint> ofRows;
    std::span<const CPoint> ofColumns;
};

/// A picture of one byte a pixel: 1 inside, 0 outside. Its rows follow one another from the bottom of the display up, the
/// way bitmaps lie in memory.
struct Raster {
    std::uint8_t* pixels;
    int width;
    int height;

    std::size_t size() const { return static_cast<std::size_t>(width) * static_cast<std::size_t>(height); }
    std::uint8_t* row(int y) const { return pixels + static_cast<std::size_t>(y) * static_cast<std::size_t>(width); }
};

/// Fills the raster with the overlap of both outlines, each by the even-odd rule. In the display's coordinates, where
/// point (x, y) of an outline lies at (x, height - y), a pixel belongs to an outline if its corner (X, Y) lies inside:
/// left and top edges belong to it, right and bottom ones do not. False if the graphics interface refuses.
using FillOverlap = bool(const Outlines& outlines, Raster raster) noexcept;

/// The rule in whole numbers. It never refuses.
FillOverlap fillOverlapByRule;

#if defined(_WIN32)
/// The same by the system's graphics interface.
FillOverlap fillOverlapBySystem;
constexpr FillOverlap* fillOverlap = fillOverlapBySystem;
#else
constexpr FillOverlap* fillOverlap = fillOverlapByRule;
#endif

}  // namespace omnar
