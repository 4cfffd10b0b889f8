// SPDX-License-Identifier: MIT
/// @file
/// The seam to the platform's graphics: filling the intersection of two polygons.
#pragma once

#include <OmnarRaster.h>

#include <cstddef>
#include <cstdint>
#include <span>

namespace omnar {

/// The outlines of a shape: closed polygons through the outermost pixels of its rows and of its columns. No coordinate
/// is negative.
struct Outlines {
    std::span<const CPoint> rowOutline;
    std::span<const CPoint> columnOutline;
};

/// One byte per pixel: 1 inside, 0 outside. Rows lie bottom-up, as in bitmaps of the platform.
struct Raster {
    std::uint8_t* pixels;
    int width;
    int height;

    std::size_t size() const { return static_cast<std::size_t>(width) * static_cast<std::size_t>(height); }
    std::uint8_t* row(int y) const { return pixels + static_cast<std::size_t>(y) * static_cast<std::size_t>(width); }
};

/// Fills the raster with the intersection of both outlines, each by the even-odd rule. Point (x, y) of an outline lies
/// at (x, height - y) of the display. A pixel is inside an outline if its top left corner is: left and top edges are
/// inside, right and bottom ones are not. Returns false if the graphics interface refuses.
using FillIntersection = bool(const Outlines& outlines, Raster raster) noexcept;

/// In integers. It never refuses.
FillIntersection fillIntersectionPortable;

#if defined(_WIN32)
/// By the system's graphics interface.
FillIntersection fillIntersectionWindows;
constexpr FillIntersection* fillIntersection = fillIntersectionWindows;
#else
constexpr FillIntersection* fillIntersection = fillIntersectionPortable;
#endif

}  // namespace omnar
