/// @file
/// What a blend is made of: where a pixel's coverage, its weight and its target come from, and which bytes of the
/// destination move. Each says in one line what holds for pixel i of a row. The vector twins are in operands-inl.h.
///
/// An operand that reads memory hands its planes to `eachPlane`, which is all that row walking and overlap need to know.
#pragma once

#include "buffers/region.h"
#include "buffers/weighting.h"

namespace omnar {

// Coverage: one byte a pixel. `target` is the pixel that the blend aims at.

/// An alpha plane.
struct Cover {
    Plane<const L08> plane;

    unsigned at(std::size_t i, TRC /*target*/) const { return plane[i]; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// The complement of an alpha plane.
struct Complement {
    Plane<const L08> plane;

    unsigned at(std::size_t i, TRC /*target*/) const { return 255U - plane[i]; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// The blue bytes of a true-colour buffer.
struct Blue {
    Plane<const TRC> plane;

    unsigned at(std::size_t i, TRC /*target*/) const { return plane[i] & 255U; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// The alpha bytes of the target itself.
struct OwnAlpha {
    unsigned at(std::size_t /*i*/, TRC target) const { return target >> 24; }
    void eachPlane(auto&&) {}
};

// Weights.

/// The same for every pixel.
struct Constant {
    unsigned opacity;

    unsigned at(std::size_t /*i*/, TRC /*target*/) const { return opacity; }
    void eachPlane(auto&&) {}
};

/// The coverage under the opacity of the whole.
template <class Coverage>
struct Scaled {
    Coverage coverage;
    unsigned opacity;

    unsigned at(std::size_t i, TRC target) const { return scaled(coverage.at(i, target), opacity); }
    bool covers(std::size_t i, TRC target) const { return coverage.at(i, target) != 0; }
    void eachPlane(auto&& visit) { coverage.eachPlane(visit); }
};
template <class Coverage>
Scaled(Coverage, unsigned) -> Scaled<Coverage>;

/// The opacity wherever there is any coverage.
template <class Coverage>
struct Binary {
    Coverage coverage;
    unsigned opacity;

    unsigned at(std::size_t i, TRC target) const { return coverage.at(i, target) != 0 ? opacity : 0; }
    void eachPlane(auto&& visit) { coverage.eachPlane(visit); }
};
template <class Coverage>
Binary(Coverage, unsigned) -> Binary<Coverage>;

/// A 16-bit coverage, divided by 255 as if it were a product: weights up to 257.
struct Coverage16 {
    Plane<const L12> plane;
    unsigned opacity;

    unsigned at(std::size_t i, TRC /*target*/) const { return scaled(plane[i] / 255U, opacity); }
    void eachPlane(auto&& visit) { visit(plane); }
};

// Targets.

/// The pixels of a true-colour buffer.
struct FromRow {
    Plane<const TRC> plane;

    TRC at(std::size_t i) const { return plane[i]; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// One colour.
struct Flat {
    TRC color;

    TRC at(std::size_t /*i*/) const { return color; }
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
struct WholePixel {
    using Pixel = TRC;

    static TRC step(TRC old, TRC target, const auto& weight, std::size_t i) {
        return weight.at(i, target) != 0 ? target : old;
    }
};

}  // namespace omnar
