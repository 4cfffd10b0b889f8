// SPDX-License-Identifier: MIT
/// @file
/// The reference: each centre in turn draws its disc, pixel by pixel.
///
/// The vector kernels draw in another order. Each mode takes the maximum (when erasing, the minimum) of all that the
/// centres draw on a pixel, so that the order only matters if source and destination overlap.
#pragma once

#include <algorithm>

#include "tone/frames/kernels.h"

namespace omnar {

/// Calls draw(pixel, value, distance) for each pixel of each centre's disc.
template <bool centresInShape, class Draw>
void walkFrame(const Frame& frame, Draw draw) {
    const auto radius = static_cast<int>(frame.disc.radius);
    for (std::size_t y = 0; y < frame.centres.rows; ++y) {
        const auto j = static_cast<std::ptrdiff_t>(y);
        for (std::size_t x = 0; x < frame.centres.cols; ++x) {
            const auto i = static_cast<std::ptrdiff_t>(x);
            if (!frame.isCentre<centresInShape>(i, j)) continue;
            const L08 value = frame.values.row(j)[i];
            for (int dy = -radius; dy <= radius; ++dy) {
                L08* const middle = frame.destination.row(j + radius + dy) + i + radius;
                for (int dx = -radius; dx <= radius; ++dx) {
                    const int distance = frame.disc.distance(dx, dy);
                    if (distance <= radius) draw(middle[dx], value, distance);
                }
            }
        }
    }
}

struct ReferenceFrames {
    static void solid(const Frame& frame) {
        walkFrame<true>(frame, [](L08& pixel, L08, int) { pixel = 255; });
    }
    static void erase(const Frame& frame) {
        walkFrame<false>(frame, [](L08& pixel, L08, int) { pixel = 0; });
    }
    static void values(const Frame& frame) {
        walkFrame<true>(frame, [](L08& pixel, L08 value, int) { pixel = std::max(pixel, value); });
    }
    static void soft(const Frame& frame) {
        walkFrame<true>(frame, [radius = frame.disc.radius](L08& pixel, L08 value, int distance) {
            pixel = std::max(pixel, softened(value, distance, radius));
        });
    }
};

}  // namespace omnar
