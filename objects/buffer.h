// SPDX-License-Identifier: MIT
/// @file
/// A buffer with signed geometry, whose pixels are accessed in any order.
#pragma once

#include <cstdint>

#include "buffers/host/contract.h"
#include "buffers/region.h"

namespace omnar {

template <class Px>
struct Buffer {
    Px* pixels;
    int width, height;

    Buffer(Px* first, int cols, int rows) : pixels(first), width(cols), height(rows) {}

    /// The plane whose corner is pixel (x, y).
    Plane<Px> plane(int x, int y) const {
        const auto size = [](int n) { return static_cast<std::uint32_t>(n); };
        return {pixels, size(width), size(height), size(x), size(y)};
    }

    Px* address(int x, int y) const { return plane(x, y).row(); }
};
template <class Px>
Buffer(Px*, int, int) -> Buffer<Px>;

}  // namespace omnar

/// The buffer described by the parameters `buffer`, width and height, checked.
#define OMNAR_BUFFER(buffer)                                                          \
    (OMNAR_EXPECT_NOT_NULL(buffer), OMNAR_EXPECT_AS(width, (width) > 0, "1 or more"), \
     OMNAR_EXPECT_AS(height, (height) > 0, "1 or more"), ::omnar::Buffer(buffer, width, height))
