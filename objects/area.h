// SPDX-License-Identifier: MIT
/// @file
/// The rectangle that object analysis works in: given by signed numbers, moved into the buffer, its extent inclusive.
#pragma once

#include <algorithm>
#include <cstdint>

#include "buffers/region.h"

namespace omnar {

/// 0 to `last`; what lies outside goes to the nearer end.
constexpr int clampTo(int last, int value) { return std::clamp(value, 0, last); }

/// All four edges belong to it.
struct Area {
    int left, top, right, bottom;

    /// Of the area that a caller gives: an extent of w x h covers w + 1 columns and h + 1 rows.
    static constexpr Area within(int width, int height, int x, int y, int w, int h) {
        const int left = clampTo(width - 1, x);
        const int top = clampTo(height - 1, y);
        return {left, top, left + clampTo(width - 1 - left, w), top + clampTo(height - 1 - top, h)};
    }
};

/// A whole buffer, whose rows are reached in any order.
template <class Px>
struct Image {
    Px* pixels;
    int width, height;

    Px* at(int x, int y) const {
        const auto extent = [](int n) { return static_cast<std::uint32_t>(n); };
        return Plane<Px>(pixels, extent(width), extent(height), extent(x), extent(y)).row();
    }
};

}  // namespace omnar
