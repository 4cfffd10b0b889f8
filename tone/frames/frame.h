// SPDX-License-Identifier: MIT
/// @file
/// A frame: which pixels are centres, and the disc that each of them draws.
#pragma once

#include <OmnarRaster.h>

#include <cstddef>
#include <cstdint>

#include "buffers/overlap.h"
#include "buffers/region.h"

namespace omnar {

/// The pixels around a centre whose distance, as a table tells it, is not above the reach.
struct Disc {
    const int* table;
    std::uint32_t tableRadius;
    std::uint32_t reach;

    /// The distances of a row, for dy from -reach to reach, from its middle on.
    const int* row(std::ptrdiff_t dy) const {
        const auto radius = static_cast<std::ptrdiff_t>(tableRadius);
        return table + (radius + dy) * (2 * radius + 1) + radius;
    }
    /// For dx and dy from -reach to reach.
    int distance(std::ptrdiff_t dx, std::ptrdiff_t dy) const { return row(dy)[dx]; }

    /// Half the width of a row of a round disc, dy from its middle: a whole number d is the rounded root of exactly the
    /// squares above d^2 - d and up to d^2 + d. `width` is the half width of a row no farther out.
    std::ptrdiff_t halfWidth(std::ptrdiff_t dy, std::ptrdiff_t width) const {
        const auto most = static_cast<std::ptrdiff_t>(reach);
        while (width * width + dy * dy > most * most + most) --width;
        return width;
    }

    /// True if the row that lies dy below the middle covers the pixels from -width to width and no others.
    bool covers(std::ptrdiff_t dy, std::ptrdiff_t width) const {
        const auto most = static_cast<int>(reach);
        const int* const distances = row(dy);
        bool differs = false;
        for (std::ptrdiff_t dx = -most; dx < -width; ++dx) differs |= distances[dx] <= most;
        for (std::ptrdiff_t dx = -width; dx <= width; ++dx) differs |= distances[dx] > most;
        for (std::ptrdiff_t dx = width + 1; dx <= most; ++dx) differs |= distances[dx] <= most;
        return !differs;
    }

    /// True if the row that lies dy below the middle has the distances of the plane, rounded, from -width to width.
    bool measures(std::ptrdiff_t dy, std::ptrdiff_t width) const {
        const int* const distances = row(dy);
        bool differs = false;
        for (auto dx = static_cast<int>(-width); dx <= static_cast<int>(width); ++dx) {
            const int d = distances[dx] < 0 ? 0 : distances[dx];  // no more than the reach, if the row covers it
            const int above = dx * dx + static_cast<int>(dy * dy) - d * d;
            differs |= distances[dx] < 0 || above > d || (above <= -d && d != 0);
        }
        return !differs;
    }

    /// True if the disc covers what a round one covers.
    bool isRound() const {
        return allRows([this](std::ptrdiff_t dy, std::ptrdiff_t width) { return covers(dy, width); });
    }
    /// True if it has the distances of a round one, too.
    bool isExact() const {
        return allRows(
            [this](std::ptrdiff_t dy, std::ptrdiff_t width) { return covers(dy, width) && measures(dy, width); });
    }

private:
    template <class Holds>
    bool allRows(Holds holds) const {
        auto width = static_cast<std::ptrdiff_t>(reach);
        for (std::ptrdiff_t dy = 0; dy <= static_cast<std::ptrdiff_t>(reach); ++dy) {
            width = halfWidth(dy, width);
            if (!holds(dy, width) || !holds(-dy, width)) return false;
        }
        return true;
    }
};

/// Centres are the edge pixels of the shape, or those of the ground around it: pixels of one kind with a pixel of the
/// other kind at one of their four sides. Centre (i, j) draws the square of 2 * reach + 1 pixels whose corner is pixel
/// (i, j) of `target`.
struct Frame {
    Region centres;            ///< the pixels that are looked at
    Plane<const L08> source;   ///< from the first of them
    Plane<const L08> carried;  ///< where their levels are read
    Plane<L08> target;
    Disc disc;

    template <bool ofShape>
    bool isCentre(std::ptrdiff_t i, std::ptrdiff_t j) const {
        return inShape(i, j) == ofShape && (inShape(i - 1, j) != ofShape || inShape(i + 1, j) != ofShape ||
                                            inShape(i, j - 1) != ofShape || inShape(i, j + 1) != ofShape);
    }

    /// True if nothing that is read is also written.
    bool separate() const {
        const std::size_t rim = 2 * std::size_t{disc.reach};
        const std::size_t above = disc.reach == 0 ? 0 : 1;  // a frame without a width begins at the buffer's edge
        return apart(source.row(-static_cast<std::ptrdiff_t>(above)),
                     (centres.rows + 2 * above - 1) * static_cast<std::size_t>(source.pitch()) + centres.cols,  //
                     target.row(),
                     (centres.rows + rim - 1) * static_cast<std::size_t>(target.pitch()) + centres.cols + rim);
    }

private:
    /// Only a frame without a width reaches the buffer's edge, and what lies behind it is no shape.
    bool inShape(std::ptrdiff_t i, std::ptrdiff_t j) const {
        if (disc.reach == 0 && (i < 0 || j < 0 || i >= static_cast<std::ptrdiff_t>(source.colsLeft()) ||
                                j >= static_cast<std::ptrdiff_t>(source.rowsLeft()))) {
            return false;
        }
        return source.row(j)[i] != 0;
    }
};

}  // namespace omnar
