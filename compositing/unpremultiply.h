// SPDX-License-Identifier: MIT
/// @file
/// Division of a value by the alpha that it was multiplied with. The vector kernel is in unpremultiply_rows.cpp.
#pragma once

#include <OmnarRaster.h>

#include <algorithm>
#include <array>

#include "buffers/level.h"
#include "buffers/region.h"
#include "buffers/rows.h"

namespace omnar {

/// 255.0 / alpha, and 1.0 for alpha 0, which leaves values unchanged.
inline constexpr std::array<double, 256> alphaQuotients = [] {
    std::array<double, 256> quotients{1.0};
    for (unsigned alpha = 1; alpha < 256; ++alpha) quotients[alpha] = 255.0 / alpha;
    return quotients;
}();

/// value * 255 / alpha, truncated and at most 255. The arithmetic is double precision: an exact quotient may round to
/// just below the integer. Any alpha but 0 and 255 raises the value by at least 1.
constexpr L08 unpremultiplied(unsigned value, unsigned alpha) {
    const auto quotient = static_cast<int>(alphaQuotients[alpha] * value);
    const int least = static_cast<int>(value) + (alpha != 0 && alpha != 255 ? 1 : 0);
    return static_cast<L08>(std::min(std::max(quotient, least), 255));
}

/// unpremultiplied(value, alpha) as [alpha][value].
extern const std::array<std::array<L08, 256>, 256> unpremultipliedValues;

struct Unpremultiplied {
    using Pixel = L08;

    Plane<const L08> cover;

    L08 at(L08 old, std::size_t i) const { return unpremultipliedValues[cover[i]][old]; }
    void eachPlane(auto&& visit) { visit(cover); }
};

using UnpremultiplyRows = RowTable<Unpremultiplied>;
extern const Levels<UnpremultiplyRows> unpremultiplyRows;

}  // namespace omnar
