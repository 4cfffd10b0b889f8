// SPDX-License-Identifier: MIT
/// @file
/// Division of a value by the alpha that it was multiplied with: the operation, and its kernels for every level. The
/// vector kernel is in restored_rows.cpp.
#pragma once

#include <OmnarRaster.h>

#include <array>

#include "buffers/level.h"
#include "buffers/region.h"
#include "buffers/rows.h"

namespace omnar {

/// 255.0 / alpha. The entry of alpha 0 is not used.
inline constexpr std::array<double, 256> alphaQuotients = [] {
    std::array<double, 256> quotients{};
    for (unsigned alpha = 1; alpha < 256; ++alpha) quotients[alpha] = 255.0 / alpha;
    return quotients;
}();

/// A value that was multiplied by its alpha, divided by it again. The arithmetic is that of doubles: a quotient that is a
/// whole number may come out just below it. What it raises by less than one is raised by one.
inline L08 restored(unsigned value, unsigned alpha) {
    if (alpha == 0 || alpha == 255) return static_cast<L08>(value);
    double quotient = alphaQuotients[alpha] * value;
    if (quotient - value < 1.0) quotient += 1.0;
    return static_cast<L08>(quotient < 255.0 ? quotient : 255.0);
}

struct Restored {
    using Pixel = L08;

    Plane<const L08> cover;

    L08 at(L08 old, std::size_t i) const { return restored(old, cover[i]); }
    void eachPlane(auto&& visit) { visit(cover); }
};

using RestoredRows = RowTable<Restored>;
extern const Levels<RestoredRows> restoredRows;

}  // namespace omnar
