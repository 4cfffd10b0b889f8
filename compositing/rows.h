// SPDX-License-Identifier: MIT
/// @file
/// The kernels of the family: one row of a blend, for every combination that has a member.
#pragma once

#include "buffers/level.h"
#include "buffers/rows.h"
#include "compositing/operands.h"

namespace omnar {

/// A blend: the pixel moves from its old value toward the target by the weight, into what the destination makes of it.
template <class Destination, class Target, class Weight>
struct Blend {
    using Pixel = typename Destination::Pixel;

    Target target;
    Weight weight;

    Pixel at(Pixel old, std::size_t i) const { return Destination::step(old, target.at(i), weight, i); }
    void eachPlane(auto&& visit) {
        target.eachPlane(visit);
        weight.eachPlane(visit);
    }
};

// clang-format off
using TrueColourRows = RowTable<
    Blend<Colour, From<TRC>, Scaled<OwnAlpha>>,
    Blend<Colour, From<TRC>, Constant>,
    Blend<Colour, From<TRC>, Scaled<Cover>>,
    Blend<Colour, Flat, Constant>,
    Blend<Colour, Flat, Scaled<Cover>>,
    Blend<Colour, Flat, Scaled<Complement>>,
    Blend<Colour, Flat, Scaled<Blue>>,
    Blend<Colour, Flat, Binary<Cover>>,
    Blend<Colour, Flat, Coverage16>,
    Blend<Colour, Grey, Scaled<Cover>>,
    Blend<Colour, LaidOn<Cover>, Binary<Cover>>,
    Blend<Colour, LaidOn<Blue>, Binary<Blue>>,
    Blend<ColourClearingAlpha, Flat, Scaled<Cover>>,
    Blend<Whole<TRC>, Flat, Binary<Blue>>,
    Blend<AlphaByte, Flat, Scaled<Cover>>>;

using GreyRows = RowTable<
    Blend<Sample<L08>, From<L08>, Constant>,
    Blend<Sample<L08>, From<L08>, Scaled<Cover>>,
    Blend<Sample<L08>, From<L08>, Binary<Cover>>,
    Blend<TwoLevel<L08>, From<L08>, Constant>,
    Blend<TwoLevel<L08>, From<L08>, Scaled<Cover>>,
    Blend<TwoLevel<L08>, From<L08>, Binary<Cover>>,
    Blend<WhereInk<Sample<L08>>, From<L08>, Constant>,
    Blend<WhereInk<Sample<L08>>, From<L08>, Scaled<Cover>>,
    Blend<WhereInk<Sample<L08>>, From<L08>, Binary<Cover>>,
    Blend<WhereInk<TwoLevel<L08>>, From<L08>, Constant>,
    Blend<WhereInk<TwoLevel<L08>>, From<L08>, Scaled<Cover>>,
    Blend<WhereInk<TwoLevel<L08>>, From<L08>, Binary<Cover>>,
    Blend<Sample<L08>, Flat, Scaled<Cover>>,
    Blend<Sample<L08>, Flat, Scaled<Complement>>,
    Blend<Sample<L08>, Flat, Scaled<Blue>>,
    Blend<Whole<L08>, Flat, Binary<Cover>>,
    Blend<Whole<L08>, Flat, Binary<Clear>>,
    Blend<Whole<L08>, Flat, Binary<Blue>>,
    Blend<Whole<L08>, LaidOnNothing<Blue>, Binary<Blue>>,
    Blend<Multiplied<L08>, Flat, Scaled<Cover>>,
    Blend<Multiplied<L08>, Flat, Binary<Cover>>,
    Blend<Multiplied<L08>, Flat, Binary<Full>>>;

using InkRows = RowTable<
    Blend<Sample<L12>, From<L12>, Scaled<Cover>>,
    Blend<TwoLevel<L12>, From<L12>, Scaled<Cover>>,
    Blend<Sample<L12>, Divided, Constant>,
    Blend<Sample<L12>, Divided, Scaled<Cover>>,
    Blend<Sample<L12>, Divided, Binary<Cover>>,
    Blend<Sample<L12>, Divided, Binary<Inked>>,
    Blend<WhereInk<Sample<L12>>, From<L12>, Scaled<Cover>>,
    Blend<WhereInk<Sample<L12>>, From<L12>, Binary<Cover>>,
    Blend<Raised, Divided, Constant>,
    Blend<Raised, Divided, Scaled<Cover>>,
    Blend<Raised, Divided, Binary<Cover>>,
    Blend<Sample<L12>, Flat, Scaled<Cover>>,
    Blend<Sample<L12>, Flat, Scaled<Complement>>,
    Blend<Whole<L12>, Flat, Binary<Cover>>,
    Blend<Multiplied<L12>, Flat, Scaled<Cover>>,
    Blend<Multiplied<L12>, Flat, Binary<Full>>>;
// clang-format on

extern const Levels<TrueColourRows> trueColourRows;
extern const Levels<GreyRows> greyRows;
extern const Levels<InkRows> inkRows;

/// The kernels that write pixels of a type.
inline const Levels<TrueColourRows>& levelsInto(const Plane<TRC>&) { return trueColourRows; }
inline const Levels<GreyRows>& levelsInto(const Plane<L08>&) { return greyRows; }
inline const Levels<InkRows>& levelsInto(const Plane<L12>&) { return inkRows; }

}  // namespace omnar
