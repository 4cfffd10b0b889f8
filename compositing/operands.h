// SPDX-License-Identifier: MIT
/// @file
/// What a blend is made of: where a pixel's coverage, its weight and its target come from, and what becomes of the
/// destination. Each says in one line what holds for pixel i of a row. The vector twins are in truecolour-inl.h for true
/// colour, in samples-inl.h for single channels.
///
/// An operand that reads memory hands its planes to `eachPlane`, which is all that row walking and overlap need to know.
#pragma once

#include "buffers/region.h"
#include "buffers/weighting.h"

namespace omnar {

// Coverage: 0 to 255 for each pixel. `target` is the pixel that the blend aims at.

/// An alpha plane.
struct Cover {
    Plane<const L08> plane;

    unsigned at(std::size_t i, unsigned /*target*/) const { return plane[i]; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// The complement of an alpha plane.
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

/// Full where an alpha plane has one value, and nowhere else.
template <unsigned value>
struct Only {
    Plane<const L08> plane;

    unsigned at(std::size_t i, unsigned /*target*/) const { return plane[i] == value ? 255 : 0; }
    void eachPlane(auto&& visit) { visit(plane); }
};
using Clear = Only<0>;
using Full = Only<255>;

/// Full wherever a 12-bit plane holds any ink.
struct Inked {
    Plane<const L12> plane;

    unsigned at(std::size_t i, unsigned /*target*/) const { return plane[i] != 0 ? 255 : 0; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// The alpha bytes of the target itself.
struct OwnAlpha {
    unsigned at(std::size_t /*i*/, unsigned target) const { return target >> 24; }
    void eachPlane(auto&&) {}
};

// Weights.

/// The same for every pixel.
struct Constant {
    unsigned opacity;

    unsigned at(std::size_t /*i*/, unsigned /*target*/) const { return opacity; }
    void eachPlane(auto&&) {}
};

/// The coverage under the opacity of the whole.
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

/// The opacity wherever there is any coverage.
template <class Coverage>
struct Binary {
    Coverage coverage;
    unsigned opacity;

    unsigned at(std::size_t i, unsigned target) const { return coverage.at(i, target) != 0 ? opacity : 0; }
    void eachPlane(auto&& visit) { coverage.eachPlane(visit); }
};
template <class Coverage>
Binary(Coverage, unsigned) -> Binary<Coverage>;

/// A 16-bit coverage, divided by 255 as if it were a product: weights up to 257.
struct Coverage16 {
    Plane<const L12> plane;
    unsigned opacity;

    unsigned at(std::size_t i, unsigned /*target*/) const { return scaled(plane[i] / 255U, opacity); }
    void eachPlane(auto&& visit) { visit(plane); }
};

// Targets.

/// The pixels of another buffer.
template <class Px>
struct From {
    Plane<const Px> plane;

    unsigned at(std::size_t i) const { return plane[i]; }
    void eachPlane(auto&& visit) { visit(plane); }
};
template <class Px>
From(Plane<const Px>) -> From<Px>;

/// The samples of a 12-bit buffer divided by 255.
struct Divided {
    Plane<const L12> plane;

    unsigned at(std::size_t i) const { return plane[i] / 255U; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// One colour, or one level.
struct Flat {
    unsigned value;

    unsigned at(std::size_t /*i*/) const { return value; }
    void eachPlane(auto&&) {}
};

/// A grey level for blue, green and red alike.
struct Grey {
    Plane<const L08> plane;

    TRC at(std::size_t i) const { return plane[i] * 0x010101U; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// A colour laid over a ground by its coverage.
template <class Coverage>
struct LaidOn {
    TRC ground;
    TRC color;
    Coverage coverage;

    TRC at(std::size_t i) const { return colourToward(ground, color, coverage.at(i, color)); }
    void eachPlane(auto&& visit) { coverage.eachPlane(visit); }
};
template <class Coverage>
LaidOn(TRC, TRC, Coverage) -> LaidOn<Coverage>;

/// A level as far as its coverage goes, which is the level laid over 0.
template <class Coverage>
struct LaidOnNothing {
    unsigned level;
    Coverage coverage;

    unsigned at(std::size_t i) const { return scaled(level, coverage.at(i, level)); }
    void eachPlane(auto&& visit) { coverage.eachPlane(visit); }
};
template <class Coverage>
LaidOnNothing(unsigned, Coverage) -> LaidOnNothing<Coverage>;

// Destinations: what becomes of a pixel.

/// Blue, green and red move; the alpha byte stays.
struct Colour {
    using Pixel = TRC;

    static TRC step(TRC old, TRC target, const auto& weight, std::size_t i) {
        return colourToward(old, target, weight.at(i, target));
    }
};

/// Blue, green and red move; the alpha byte is cleared wherever there is coverage, even if its weight comes out as 0.
struct ColourClearingAlpha {
    using Pixel = TRC;

    static TRC step(TRC old, TRC target, const auto& weight, std::size_t i) {
        const TRC kept = weight.covers(i, target) ? 0x00FFFFFFU : 0xFFFFFFFFU;
        return colourToward(old, target, weight.at(i, target)) & kept;
    }
};

/// Only the alpha byte moves.
struct AlphaByte {
    using Pixel = TRC;

    static TRC step(TRC old, TRC target, const auto& weight, std::size_t i) {
        return alphaToward(old, target, weight.at(i, target));
    }
};

/// The whole pixel is overwritten where the weight is not 0.
template <class Px>
struct Whole {
    using Pixel = Px;

    static Px step(Px old, unsigned target, const auto& weight, std::size_t i) {
        return weight.at(i, target) != 0 ? static_cast<Px>(target) : old;
    }
};

/// The level of a sample that is full of ink.
template <class Px>
inline constexpr Px fullOf = sizeof(Px) == 1 ? 255 : 4095;

/// A sample moves.
template <class Px>
struct Sample {
    using Pixel = Px;

    static Px step(Px old, unsigned target, const auto& weight, std::size_t i) {
        const auto by = static_cast<int>(weight.at(i, target));
        return static_cast<Px>(toward(old, static_cast<int>(target), by));
    }
};

/// A sample moves and becomes full, unless that leaves it empty.
template <class Px>
struct TwoLevel {
    using Pixel = Px;

    static Px step(Px old, unsigned target, const auto& weight, std::size_t i) {
        return Sample<Px>::step(old, target, weight, i) != 0 ? fullOf<Px> : Px{0};
    }
};

/// A 12-bit sample that is not empty is first made full, then moves.
struct Raised {
    using Pixel = L12;

    static L12 raised(L12 old) { return old != 0 ? fullOf<L12> : L12{0}; }
    static L12 step(L12 old, unsigned target, const auto& weight, std::size_t i) {
        return Sample<L12>::step(raised(old), target, weight, i);
    }
};

/// Where the target is empty the pixel stays; elsewhere it becomes what it becomes in `Base`.
template <class Base>
struct WhereInk {
    using Pixel = typename Base::Pixel;

    static Pixel step(Pixel old, unsigned target, const auto& weight, std::size_t i) {
        return target == 0 ? old : Base::step(old, target, weight, i);
    }
};

/// A sample is multiplied by its weight.
template <class Px>
struct Multiplied {
    using Pixel = Px;

    static Px step(Px old, unsigned target, const auto& weight, std::size_t i) {
        return static_cast<Px>(scaled(old, weight.at(i, target)));
    }
};

}  // namespace omnar
