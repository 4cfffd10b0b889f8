// SPDX-License-Identifier: MIT
/// @file
/// The operands that only transfers of tone have. The vector kernels are in transfer-inl.h.
#pragma once

#include <algorithm>

#include "buffers/level.h"
#include "buffers/value_set.h"
#include "compositing/rows.h"
#include "tone/luminance.h"

namespace omnar {

// Coverage.

/// The product of an amount of ink and the coverage under an opacity.
struct Tint {
    Plane<const L08> ink;
    Plane<const L08> plane;
    unsigned opacity;

    unsigned at(std::size_t i, unsigned /*target*/) const { return scaled(ink[i], scaled(plane[i], opacity)); }
    void eachPlane(auto&& visit) {
        visit(ink);
        visit(plane);
    }
};

/// The coverage of an alpha plane, and 0 where the source's value is protected.
struct Unprotected {
    Plane<const L08> plane;
    Plane<const L08> source;
    ValueSet protectedValues;

    unsigned at(std::size_t i, unsigned /*target*/) const { return protectedValues.contains(source[i]) ? 0 : plane[i]; }
    void eachPlane(auto&& visit) {
        visit(plane);
        visit(source);
    }
};

// Targets.

/// The grey of an amount of ink: 255 less the ink in each colour channel.
struct InkGrey {
    Plane<const L08> plane;

    TRC at(std::size_t i) const { return (255U - plane[i]) * 0x010101U; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// The amount of ink of a true-colour pixel: 255 less its luminance.
struct Darkness {
    Plane<const TRC> plane;

    unsigned at(std::size_t i) const { return 255 - luminance(plane[i]); }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// 255 where another target is above the limit, 0 elsewhere.
template <class Target, unsigned limit>
struct FullAbove {
    Target target;

    unsigned at(std::size_t i) const { return target.at(i) > limit ? 255 : 0; }
    void eachPlane(auto&& visit) { target.eachPlane(visit); }
};

// Destinations.

/// A sample plus the weighted target, at most 255.
struct SaturatedSum {
    using Pixel = L08;

    static L08 step(L08 old, unsigned target, const auto& weight, std::size_t i) {
        return static_cast<L08>(std::min(old + scaled(target, weight.at(i, target)), 255U));
    }
};

/// Where the target is 0, the sample is erased under any coverage above 0. Elsewhere `Base` applies.
template <class Base>
struct ErasedWithoutInk {
    using Pixel = L08;

    static L08 step(L08 old, unsigned target, const auto& weight, std::size_t i) {
        if (target != 0) return Base::step(old, target, weight, i);
        return weight.covers(i, target) ? L08{0} : old;
    }
};

/// A sample moves toward the target by an unsigned division, in 32 bits that wrap. Since 2^32 is 1 more than a multiple
/// of 255 * 256, a sample that moves down ends one higher than by a signed division: at full weight from 200 to 0 it
/// ends at 1.
struct UnsignedSample {
    using Pixel = L08;

    static L08 step(L08 old, unsigned target, const auto& weight, std::size_t i) {
        return static_cast<L08>(old + (target - old) * weight.at(i, target) / 255);
    }
};

// clang-format off
using TransferColourRows = RowTable<
    Blend<Colour, Flat, Scaled<Tint>>,
    Blend<Colour, InkGrey, Scaled<Cover>>>;

using TransferGreyRows = RowTable<
    Blend<WhereInk<Sample<L08>>, From<L08>, Scaled<Cover>>,
    Blend<ErasedWithoutInk<Sample<L08>>, From<L08>, Scaled<Cover>>,
    Blend<SaturatedSum, From<L08>, Scaled<Cover>>,
    Blend<ErasedWithoutInk<SaturatedSum>, From<L08>, Scaled<Cover>>,
    Blend<WhereInk<Whole<L08>>, FullAbove<From<L08>, 0>, Scaled<Cover>>,
    Blend<Whole<L08>, FullAbove<From<L08>, 0>, Scaled<Cover>>,
    Blend<Sample<L08>, Flat, Scaled<Cover>>,
    Blend<Whole<L08>, Flat, Scaled<Cover>>,
    Blend<Sample<L08>, Flat, Scaled<Unprotected>>,
    Blend<Whole<L08>, Flat, Scaled<Unprotected>>,
    Blend<UnsignedSample, From<L08>, Scaled<Cover>>,
    Blend<UnsignedSample, Flat, Scaled<Cover>>,
    Blend<Sample<L08>, Darkness, Scaled<Cover>>,
    Blend<WhereInk<Whole<L08>>, FullAbove<Darkness, 127>, Scaled<Cover>>>;
// clang-format on

extern const Levels<TransferColourRows> transferColourRows;
extern const Levels<TransferGreyRows> transferGreyRows;

/// The current kernel of an operation, from the table for its type of pixels.
template <class Operation>
auto transferRows(const Operation&) {
    if constexpr (std::is_same_v<typename Operation::Pixel, TRC>) {
        return runningKernel<Operation>(transferColourRows);
    } else {
        return runningKernel<Operation>(transferGreyRows);
    }
}

}  // namespace omnar
