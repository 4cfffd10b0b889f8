// SPDX-License-Identifier: MIT
/// @file
/// The operands that only markers, fills and copies have, and the table of their kernels.
#pragma once

#include <algorithm>

#include "buffers/value_set.h"
#include "buffers/walk.h"
#include "compositing/rows.h"
#include "tone/luminance.h"

namespace omnar {

/// A pixel becomes its target, whatever it was: fills and copies.
template <class Target>
struct Assign {
    using Pixel = TRC;

    Target target;

    TRC at(TRC /*old*/, std::size_t i) const { return target.at(i); }
    void eachPlane(auto&& visit) { target.eachPlane(visit); }
};
template <class Target>
Assign(Target) -> Assign<Target>;

// Coverage, which is 0 or 255.

/// 255 where a true-colour buffer differs from a key colour.
struct NotKeyColor {
    Plane<const TRC> plane;
    TRC key;

    unsigned at(std::size_t i, unsigned /*target*/) const { return plane[i] != key ? 255 : 0; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// 255 where the value is in a set.
struct ChosenValues {
    Plane<const L08> plane;
    ValueSet values;

    unsigned at(std::size_t i, unsigned /*target*/) const { return values.contains(plane[i]) ? 255 : 0; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// 255 where all of some layers are 0. The layers share one geometry; the region's position is kept as a plane of the
/// first one.
struct Background {
    const L08* const* layers;
    const int* indices;
    int count;
    Plane<const L08> first;

    const L08* layer(int k) const { return layers[indices[k]]; }

    /// From a layer's first pixel to the current row.
    std::ptrdiff_t offset() const { return first.row() - layer(0); }

    unsigned at(std::size_t i, unsigned /*target*/) const {
        for (int k = 0; k < count; ++k) {
            if (layer(k)[offset() + static_cast<std::ptrdiff_t>(i)] != 0) return 0;
        }
        return 255;
    }
    void eachPlane(auto&& visit) {
        for (int k = 1; k < count; ++k) {
            auto other = first.in(layer(k) + offset());
            visit(other);
        }
        if (count > 0) visit(first);
    }
};

/// 255 for non-zero values outside [low, high]. As a target: the alpha byte that marks which limit the value is beyond.
struct OutsideLimits {
    Plane<const L08> plane;
    L08 low, high;

    TRC at(std::size_t i) const {
        const L08 value = plane[i];
        if (value == 0) return 0;
        return value < low ? 0x80000000U : value > high ? 0x40000000U : 0U;
    }
    unsigned at(std::size_t i, unsigned /*target*/) const { return at(i) != 0 ? 255 : 0; }
    void eachPlane(auto&& visit) { visit(plane); }
};

// Targets.

/// A colour with the light and shade of another buffer: black gives the colour itself, white gives white.
struct Shaded {
    Plane<const TRC> source;
    TRC color;
    double contrast;    ///< scales the luminance about its middle, 127.5
    double brightness;  ///< is added to the result

    unsigned light(unsigned luminance) const {
        const double light = (luminance - 127.5) * contrast + brightness;
        return static_cast<unsigned>(std::clamp(light, 0.0, 255.0));
    }
    TRC at(std::size_t i) const { return colourToward(color, 0x00FFFFFFU, light(luminance(source[i]))); }
    void eachPlane(auto&& visit) { visit(source); }
};

// Destinations.

/// Blue, green and red move toward the target. Where the coverage is 255, all four bytes are overwritten.
struct ColourOrOverwrite {
    using Pixel = TRC;

    static TRC step(TRC old, TRC target, const auto& weight, std::size_t i) {
        if (weight.coverage.at(i, target) == 255) return target;
        return Colour::step(old, target, weight, i);
    }
};

// clang-format off
using MarkRows = RowTable<
    Assign<Flat>,
    Assign<From<TRC>>,
    Blend<Whole<TRC>, From<TRC>, Binary<NotKeyColor>>,
    Blend<Colour, Flat, Binary<Background>>,
    Blend<Colour, Flat, Binary<ChosenValues>>,
    Blend<AlphaByte, OutsideLimits, Binary<OutsideLimits>>,
    Blend<ColourOrOverwrite, Flat, Scaled<Complement>>,
    Blend<Colour, Shaded, Scaled<Cover>>>;
// clang-format on
extern const Levels<MarkRows> markRows;

/// Processes a region that is already cut.
template <class Destination, class Target, class Weight>
void mark(Region region, Plane<TRC> dst, Target target, Weight weight) {
    process(region, dst, Blend<Destination, Target, Weight>{target, weight}, markRows);
}

}  // namespace omnar
