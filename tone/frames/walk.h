// SPDX-License-Identifier: MIT
/// @file
/// The plain walk: every centre in turn draws its disc, pixel by pixel. This is the law; the twins are in the -inl
/// files.
///
/// The order of the centres shows only where source and target share memory: each kind of drawing gives a pixel the
/// greatest (or, clearing, the least) of all that its centres draw there. The twins rest on that.
#pragma once

#include <algorithm>

#include "tone/frames/frame.h"

namespace omnar {

/// `draw(pixel, level, distance)` draws one pixel for a centre of a level.
template <bool ofShape, class Draw>
void walkFrame(const Frame& frame, Draw draw) {
    const auto reach = static_cast<int>(frame.disc.reach);
    for (std::size_t y = 0; y < frame.centres.rows; ++y) {
        const auto j = static_cast<std::ptrdiff_t>(y);
        for (std::size_t x = 0; x < frame.centres.cols; ++x) {
            const auto i = static_cast<std::ptrdiff_t>(x);
            if (!frame.isCentre<ofShape>(i, j)) continue;
            const L08 level = frame.carried.row(j)[i];
            for (int dy = -reach; dy <= reach; ++dy) {
                L08* const middle = frame.target.row(j + reach + dy) + i + reach;
                for (int dx = -reach; dx <= reach; ++dx) {
                    const int distance = frame.disc.distance(dx, dy);
                    if (distance <= reach) draw(middle[dx], level, distance);
                }
            }
        }
    }
}

struct PlainWalk {
    static void solid(const Frame& frame) {
        walkFrame<true>(frame, [](L08& pixel, L08, int) { pixel = 255; });
    }
    static void clear(const Frame& frame) {
        walkFrame<false>(frame, [](L08& pixel, L08, int) { pixel = 0; });
    }
    static void levels(const Frame& frame) {
        walkFrame<true>(frame, [](L08& pixel, L08 level, int) { pixel = std::max(pixel, level); });
    }
    static void soft(const Frame& frame) {
        walkFrame<true>(frame, [reach = frame.disc.reach](L08& pixel, L08 level, int distance) {
            pixel = std::max(pixel, softened(level, distance, reach));
        });
    }
};

}  // namespace omnar
