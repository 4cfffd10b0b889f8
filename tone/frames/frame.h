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

/// The pixels around a centre whose distance in the table is at most the radius.
struct Disc {
    const int* table;
    std::uint32_t tableRadius;
    std::uint32_t radius;

    /// The distances of row dy, which is from -radius to radius, starting at its middle.
    const int* row(std::ptrdiff_t dy) const {
        const auto middle = static_cast<std::ptrdiff_t>(tableRadius);
        return table + (middle + dy) * (2 * middle + 1) + middle;
    }
    /// dx and dy are from -radius to radius.
    int distance(std::ptrdiff_t dx, std::ptrdiff_t dy) const { return row(dy)[dx]; }

    /// Half the width of row dy of a round disc. A distance rounds to d exactly if its square is above d^2 - d and at
    /// most d^2 + d. `width` is the half width of a row that is not farther from the middle.
    std::ptrdiff_t halfWidth(std::ptrdiff_t dy, std::ptrdiff_t width) const {
        const auto limit = static_cast<std::ptrdiff_t>(radius);
        while (width * width + dy * dy > limit * limit + limit) --width;
        return width;
    }

    /// True if row dy covers the pixels from -width to width and no others.
    bool isRoundRow(std::ptrdiff_t dy, std::ptrdiff_t width) const {
        const auto limit = static_cast<int>(radius);
        const int* const distances = row(dy);
        bool differs = false;
        for (std::ptrdiff_t dx = -limit; dx < -width; ++dx) differs |= distances[dx] <= limit;
        for (std::ptrdiff_t dx = -width; dx <= width; ++dx) differs |= distances[dx] > limit;
        for (std::ptrdiff_t dx = width + 1; dx <= limit; ++dx) differs |= distances[dx] <= limit;
        return !differs;
    }

    /// True if the distances of row dy from -width to width are the rounded Euclidean ones.
    bool isEuclideanRow(std::ptrdiff_t dy, std::ptrdiff_t width) const {
        const int* const distances = row(dy);
        bool differs = false;
        for (auto dx = static_cast<int>(-width); dx <= static_cast<int>(width); ++dx) {
            const int d = distances[dx] < 0 ? 0 : distances[dx];  // at most the radius if the row covers it
            const int above = dx * dx + static_cast<int>(dy * dy) - d * d;
            differs |= distances[dx] < 0 || above > d || (above <= -d && d != 0);
        }
        return !differs;
    }

    /// True if the disc covers the pixels of a round one.
    bool isRound() const {
        return allRows([this](std::ptrdiff_t dy, std::ptrdiff_t width) { return isRoundRow(dy, width); });
    }
    /// True if the disc also has the rounded Euclidean distances.
    bool isEuclidean() const {
        return allRows([this](std::ptrdiff_t dy, std::ptrdiff_t width) {
            return isRoundRow(dy, width) && isEuclideanRow(dy, width);
        });
    }

private:
    template <class Holds>
    bool allRows(Holds holds) const {
        auto width = static_cast<std::ptrdiff_t>(radius);
        for (std::ptrdiff_t dy = 0; dy <= static_cast<std::ptrdiff_t>(radius); ++dy) {
            width = halfWidth(dy, width);
            if (!holds(dy, width) || !holds(-dy, width)) return false;
        }
        return true;
    }
};

/// Centres are the edge pixels of the shape, or those of the ground around it: pixels of one kind with a pixel of the
/// other kind above, below, left or right of them. Centre (i, j) draws on the square of 2 * radius + 1 pixels whose top
/// left corner is pixel (i, j) of `destination`.
struct Frame {
    Region centres;           ///< the pixels that may be centres
    Plane<const L08> source;  ///< begins at the first of them
    Plane<const L08> values;  ///< where their values are read
    Plane<L08> destination;
    Disc disc;

    template <bool centresInShape>
    bool isCentre(std::ptrdiff_t i, std::ptrdiff_t j) const {
        return inShape(i, j) == centresInShape &&
               (inShape(i - 1, j) != centresInShape || inShape(i + 1, j) != centresInShape ||
                inShape(i, j - 1) != centresInShape || inShape(i, j + 1) != centresInShape);
    }

    /// True if no memory is both read and written.
    bool isDisjoint() const {
        const std::size_t diameter = 2 * std::size_t{disc.radius};
        const std::size_t above = disc.radius == 0 ? 0 : 1;  // a frame of width 0 begins at the buffer's edge
        return apart(
            source.row(-static_cast<std::ptrdiff_t>(above)),
            (centres.rows + 2 * above - 1) * static_cast<std::size_t>(source.pitch()) + centres.cols,  //
            destination.row(),
            (centres.rows + diameter - 1) * static_cast<std::size_t>(destination.pitch()) + centres.cols + diameter);
    }

private:
    /// Only a frame of width 0 touches the buffer's edge. Pixels outside the buffer are ground.
    bool inShape(std::ptrdiff_t i, std::ptrdiff_t j) const {
        if (disc.radius == 0 && (i < 0 || j < 0 || i >= static_cast<std::ptrdiff_t>(source.colsLeft()) ||
                                 j >= static_cast<std::ptrdiff_t>(source.rowsLeft()))) {
            return false;
        }
        return source.row(j)[i] != 0;
    }
};

}  // namespace omnar
