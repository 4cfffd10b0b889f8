// SPDX-License-Identifier: MIT
/// @file
/// The inclusive rectangle that object analysis works in, given by signed numbers.
#pragma once

#include <algorithm>

namespace omnar {

/// Clamps to 0..last.
constexpr int clampTo(int last, int value) { return std::clamp(value, 0, last); }

/// All four edges are part of the area.
struct Area {
    int left, top, right, bottom;

    /// Moves a caller's area into a buffer. An extent of w x h covers w + 1 columns and h + 1 rows.
    static constexpr Area within(int width, int height, int x, int y, int w, int h) {
        const int left = clampTo(width - 1, x);
        const int top = clampTo(height - 1, y);
        return {left, top, left + clampTo(width - 1 - left, w), top + clampTo(height - 1 - top, h)};
    }

    constexpr int cols() const { return right - left + 1; }
    constexpr int rows() const { return bottom - top + 1; }
};

}  // namespace omnar
