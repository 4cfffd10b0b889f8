// SPDX-License-Identifier: MIT
/// @file
/// What a transfer of tone is made of, beside the operands of every blend. The vector twins are in transfer-inl.h.
#pragma once

#include "buffers/level.h"
#include "buffers/value_set.h"
#include "compositing/rows.h"
#include "tone/luminance.h"

namespace omnar {

// Coverage.

/// As much of an alpha plane under an opacity as there is ink.
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

/// An alpha plane without its pixels where the value of a source is protected.
struct Unprotected {
    Plane<const L08> plane;
    Plane<const L08> source;
    ValueSet kept;

    unsigned at(std::size_t i, unsigned /*target*/) const { return kept.contains(source[i]) ? 0 : plane[i]; }
    void eachPlane(auto&& visit) {
        visit(plane);
        visit(source);
    }
};

// Targets.

/// The grey that an amount of ink is seen as.
struct InkGrey {
    Plane<const L08> plane;

    TRC at(std::size_t i) const { return (255U - plane[i]) * 0x010101U; }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// The amount of ink that a true-colour pixel looks like.
struct Darkness {
    Plane<const TRC> plane;

    unsigned at(std::size_t i) const { return 255 - luminance(plane[i]); }
    void eachPlane(auto&& visit) { visit(plane); }
};

/// Full where another target is above a limit, empty elsewhere.
template <class Target, unsigned limit>
struct FullAbove {
    Target target;

    unsigned at(std::size_t i) const { return target.at(i) > limit ? 255 : 0; }
    void eachPlane(auto&& visit) { target.eachPlane(visit); }
};

// Destinations.

/// A sample gains as much of the target as the weight says.
struct SaturatedSum {
    using Pixel = L08;

    static L08 step(L08 old, unsigned target, const auto& weight, std::size_t i) {
        return static_cast<L08>(std::min(old + scaled(target, weight.at(i, target)), 255U));
    }
};

/// Where the target is empty the sample is cleared under any coverage; elsewhere it becomes what it becomes in `Base`.
template <class Base>
struct ErasedWithoutInk {
    using Pixel = L08;

    static L08 step(L08 old, unsigned target, const auto& weight, std::size_t i) {
        if (target != 0) return Base::step(old, target, weight, i);
        return weight.covers(i, target) ? L08{0} : old;
    }
};

/// A sample moves, but the division is done without regard to sign, in 32 bits that wrap. Since 2^32 is 1 more than a
/// multiple of 255 * 256, a sample that goes down stops one above where others stop: what is drawn in full from 200 to 0
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

/// The kernel of an operation at the level that runs, by the type of its pixels.
template <class Operation>
auto transferRows(const Operation&) {
    if constexpr (std::is_same_v<typename Operation::Pixel, TRC>) {
        return runningKernel<Operation>(transferColourRows);
    } else {
        return runningKernel<Operation>(transferGreyRows);
    }
}

}  // namespace omnar
