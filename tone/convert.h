// SPDX-License-Identifier: MIT
/// @file
/// Conversions between formats and thresholds: the operations and the table of their kernels.
#pragma once

#include <OmnarRaster.h>

#include "buffers/level.h"
#include "buffers/region.h"
#include "buffers/rows.h"

namespace omnar {

/// The upper eight of twelve bits.
struct Narrowed {
    using Pixel = L08;

    Plane<const L12> source;

    L08 at(L08 /*old*/, std::size_t i) const { return static_cast<L08>(source[i] >> 4); }
    void eachPlane(auto&& visit) { visit(source); }
};

/// `full` where the source is at least the threshold, 0 elsewhere.
template <class Source, class Px>
struct TwoLevels {
    using Pixel = Px;

    Plane<const Source> source;
    Source threshold;
    Px full;

    Px at(Px /*old*/, std::size_t i) const { return source[i] >= threshold ? full : Px{0}; }
    void eachPlane(auto&& visit) { visit(source); }
};

/// A true-colour pixel without its alpha byte.
struct Bgr {
    L08 blue, green, red;
};

/// True colour packed into three bytes a pixel.
struct Packed {
    using Pixel = Bgr;

    Plane<const TRC> source;

    Bgr at(Bgr /*old*/, std::size_t i) const {
        const TRC pixel = source[i];
        return {static_cast<L08>(pixel), static_cast<L08>(pixel >> 8), static_cast<L08>(pixel >> 16)};
    }
    void eachPlane(auto&& visit) { visit(source); }
};

using ConversionRows = RowTable<Narrowed, TwoLevels<L08, L08>, TwoLevels<L12, L08>, TwoLevels<L12, L12>, Packed>;
extern const Levels<ConversionRows> conversionRows;

}  // namespace omnar
