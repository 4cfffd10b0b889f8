// SPDX-License-Identifier: MIT
/// @file
/// Division of a value by the alpha that it was multiplied with: the operation, and its kernels for every level. The
/// vector kernel is in restored_rows.cpp.
#pragma once

#include <OmnarRaster.h>

#include <algorithm>
#include <array>

#include "buffers/level.h"
#include "buffers/region.h"
#include "buffers/rows.h"

namespace omnar {

/// 255.0 / alpha; under alpha 0 a value stays as it is.
inline constexpr std::array<double, 256> alphaQuotients = [] {
    std::array<double, 256> quotients{1.0};
    for (unsigned alpha = 1; alpha < 256; ++alpha) quotients[alpha] = 255.0 / alpha;
    return quotients;
}();

/// A value that was multiplied by its alpha, divided by it again and truncated. The arithmetic is that of doubles: a quotient
/// that is a whole number may come out just below it. Under any alpha but 0 and 255 the value is raised by one at least.
constexpr L08 restored(unsigned value, unsigned alpha) {
    const auto quotient = static_cast<int>(alphaQuotients[alpha] * value);
    const int least = static_cast<int>(value) + (alpha != 0 && alpha != 255 ? 1 : 0);
    return static_cast<L08>(std::min(std::max(quotient, least), 255));
}

/// restored() of every value, for each alpha.
extern const std::array<std::array<L08, 256>, 256> restoredValues;

struct Restored {
    using Pixel = L08;

    Plane<const L08> cover;

    L08 at(L08 old, std::size_t i) const { return restoredValues[cover[i]][old]; }
    void eachPlane(auto&& visit) { visit(cover); }
};

using RestoredRows = RowTable<Restored>;
extern const Levels<RestoredRows> restoredRows;

}  // namespace omnar
