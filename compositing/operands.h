// SPDX-License-Identifier: MIT
/// @file
/// The operands of a blend: coverage, weight, target and destination. Each defines pixel i of a row in one line. The
/// vector kernels are in truecolour-inl.h for true colour and in samples-inl.h for single channels.
///
/// `eachPlane` visits the planes that an operand reads; row walking and overlap checks use nothing else.
#pragma once

#include "buffers/region.h"
#include "buffers/weighting.h"

namespace omnar {

// Coverage, 0..255 for each pixel. `target` is the pixel that the blend moves toward.

/// The values of an alpha plane.
struct Cover {
    Plane<const L08> plane;

    unsigned at(std::size_t i, unsigned /*target*/) const { return plane[i]; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// 255 minus the values of an alpha plane.
struct Complement {
    Plane<const L08> plane;

    unsigned at(std::size_t i, unsigned /*target*/) const { return 255U - plane[i]; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// The blue bytes of a true-colour buffer.
struct Blue {
    Plane<const TRC> plane;

    unsigned at(std::size_t i, unsigned /*target*/) const { return plane[i] & 255U; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// 255 where the alpha plane holds `value`, 0 elsewhere.
template <unsigned value>
struct AlphaIs {
    Plane<const L08> plane;

    unsigned at(std::size_t i, unsigned /*target*/) const { return plane[i] == value ? 255 : 0; }
    void eachPlane(auto&& visit) { visit(plane); }
};
using Transparent = AlphaIs<0>;
using FullyCovered = AlphaIs<255>;

/// 255 where a 12-bit plane is not 0, 0 elsewhere.
struct Inked {
    Plane<const L12> plane;

    unsigned at(std::size_t i, unsigned /*target*/) const { return plane[i] != 0 ? 255 : 0; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// The alpha bytes of the target.
struct OwnAlpha {
    unsigned at(std::size_t /*i*/, unsigned target) const { return target >> 24; }
    void eachPlane(auto&&) {}
};

// Weights, 0..255 unless stated otherwise.

/// The opacity, for every pixel.
struct Constant {
    unsigned opacity;

    unsigned at(std::size_t /*i*/, unsigned /*target*/) const { return opacity; }
    void eachPlane(auto&&) {}
};

/// Coverage times opacity / 255.
template <class Coverage>
struct Scaled {
    Coverage coverage;
    unsigned opacity;

    unsigned at(std::size_t i, unsigned target) const { return scaled(coverage.at(i, target), opacity); }
    bool covers(std::size_t i, unsigned target) const { return coverage.at(i, target) != 0; }
    void eachPlane(auto&& visit) { coverage.eachPlane(visit); }
};
template <class Coverage>
Scaled(Coverage, unsigned) -> Scaled<Coverage>;

/// The opacity where the coverage is not 0, 0 elsewhere.
template <class Coverage>
struct Binary {
    Coverage coverage;
    unsigned opacity;

    unsigned at(std::size_t i, unsigned target) const { return coverage.at(i, target) != 0 ? opacity : 0; }
    void eachPlane(auto&& visit) { coverage.eachPlane(visit); }
};
template <class Coverage>
Binary(Coverage, unsigned) -> Binary<Coverage>;

/// 16-bit ink divided by 255, then times opacity / 255: weights of 0..257.
struct InkWeight {
    Plane<const L12> plane;
    unsigned opacity;

    unsigned at(std::size_t i, unsigned /*target*/) const { return scaled(plane[i] / 255U, opacity); }
    void eachPlane(auto&& visit) { visit(plane); }
};

// Targets.

/// The pixels of the source.
template <class Px>
struct SourcePixels {
    Plane<const Px> plane;

    unsigned at(std::size_t i) const { return plane[i]; }
    void eachPlane(auto&& visit) { visit(plane); }
};
template <class Px>
SourcePixels(Plane<const Px>) -> SourcePixels<Px>;

/// The 12-bit samples of the source divided by 255.
struct DividedPixels {
    Plane<const L12> plane;

    unsigned at(std::size_t i) const { return plane[i] / 255U; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// One colour or value for every pixel.
struct Flat {
    unsigned value;

    unsigned at(std::size_t /*i*/) const { return value; }
    void eachPlane(auto&&) {}
};

/// Grey values, each for blue, green and red; alpha is 0.
struct Grey {
    Plane<const L08> plane;

    TRC at(std::size_t i) const { return plane[i] * 0x010101U; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// `background` moved toward `color` by the coverage.
template <class Coverage>
struct ColorOnBackground {
    TRC background;
    TRC color;
    Coverage coverage;

    TRC at(std::size_t i) const { return colorToward(background, color, coverage.at(i, color)); }
    void eachPlane(auto&& visit) { coverage.eachPlane(visit); }
};
template <class Coverage>
ColorOnBackground(TRC, TRC, Coverage) -> ColorOnBackground<Coverage>;

/// `value` times coverage / 255, which is 0 moved toward `value` by the coverage.
template <class Coverage>
struct ValueOnZero {
    unsigned value;
    Coverage coverage;

    unsigned at(std::size_t i) const { return scaled(value, coverage.at(i, value)); }
    void eachPlane(auto&& visit) { coverage.eachPlane(visit); }
};
template <class Coverage>
ValueOnZero(unsigned, Coverage) -> ValueOnZero<Coverage>;

// Destinations: `step` gives the new value of a pixel.

/// Blue, green and red move; the alpha byte stays.
struct Color {
    using Pixel = TRC;

    static TRC step(TRC old, TRC target, const auto& weight, std::size_t i) {
        return colorToward(old, target, weight.at(i, target));
    }
};

/// Blue, green and red move; the alpha byte becomes 0 where the coverage is not 0, even if the weight is 0.
struct ColorErasingAlpha {
    using Pixel = TRC;

    static TRC step(TRC old, TRC target, const auto& weight, std::size_t i) {
        const TRC kept = weight.covers(i, target) ? 0x00FFFFFFU : 0xFFFFFFFFU;
        return colorToward(old, target, weight.at(i, target)) & kept;
    }
};

/// The alpha byte moves; blue, green and red stay.
struct AlphaByte {
    using Pixel = TRC;

    static TRC step(TRC old, TRC target, const auto& weight, std::size_t i) {
        return alphaToward(old, target, weight.at(i, target));
    }
};

/// The pixel becomes the target where the weight is not 0.
template <class Px>
struct Overwrite {
    using Pixel = Px;

    static Px step(Px old, unsigned target, const auto& weight, std::size_t i) {
        return weight.at(i, target) != 0 ? static_cast<Px>(target) : old;
    }
};

/// The value of full ink.
template <class Px>
inline constexpr Px fullOf = sizeof(Px) == 1 ? 255 : 4095;

/// A sample moves.
template <class Px>
struct Sample {
    using Pixel = Px;

    static Px step(Px old, unsigned target, const auto& weight, std::size_t i) {
        const auto weightHere = static_cast<int>(weight.at(i, target));
        return static_cast<Px>(toward(old, static_cast<int>(target), weightHere));
    }
};

/// A sample moves, then becomes full ink unless it is 0.
template <class Px>
struct TwoLevel {
    using Pixel = Px;

    static Px step(Px old, unsigned target, const auto& weight, std::size_t i) {
        return Sample<Px>::step(old, target, weight, i) != 0 ? fullOf<Px> : Px{0};
    }
};

/// A 12-bit sample becomes full ink unless it is 0, then moves.
struct FilledFirst {
    using Pixel = L12;

    static L12 filled(L12 old) { return old != 0 ? fullOf<L12> : L12{0}; }
    static L12 step(L12 old, unsigned target, const auto& weight, std::size_t i) {
        return Sample<L12>::step(filled(old), target, weight, i);
    }
};

/// A pixel whose target is 0 stays; others take the step of `Base`.
template <class Base>
struct WhereInk {
    using Pixel = typename Base::Pixel;

    static Pixel step(Pixel old, unsigned target, const auto& weight, std::size_t i) {
        return target == 0 ? old : Base::step(old, target, weight, i);
    }
};

/// A sample is multiplied by weight / 255; the target is not used.
template <class Px>
struct Multiplied {
    using Pixel = Px;

    static Px step(Px old, unsigned target, const auto& weight, std::size_t i) {
        return static_cast<Px>(scaled(old, weight.at(i, target)));
    }
};

}  // namespace omnar
