// SPDX-License-Identifier: MIT
/// @file
/// The tables of blends: every combination of operands that a member uses.
#pragma once

#include "buffers/level.h"
#include "buffers/rows.h"
#include "compositing/operands.h"

namespace omnar {

/// Each pixel takes the step of `Destination` toward the target by the weight.
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
using TrueColorRows = RowTable<
    Blend<Color, SourcePixels<TRC>, Scaled<OwnAlpha>>,
    Blend<Color, SourcePixels<TRC>, Constant>,
    Blend<Color, SourcePixels<TRC>, Scaled<Cover>>,
    Blend<Color, Flat, Constant>,
    Blend<Color, Flat, Scaled<Cover>>,
    Blend<Color, Flat, Scaled<Complement>>,
    Blend<Color, Flat, Scaled<Blue>>,
    Blend<Color, Flat, Binary<Cover>>,
    Blend<Color, Flat, InkWeight>,
    Blend<Color, Grey, Scaled<Cover>>,
    Blend<Color, ColorOnBackground<Cover>, Binary<Cover>>,
    Blend<Color, ColorOnBackground<Blue>, Binary<Blue>>,
    Blend<ColorErasingAlpha, Flat, Scaled<Cover>>,
    Blend<Overwrite<TRC>, Flat, Binary<Blue>>,
    Blend<AlphaByte, Flat, Scaled<Cover>>>;

using GreyRows = RowTable<
    Blend<Sample<L08>, SourcePixels<L08>, Constant>,
    Blend<Sample<L08>, SourcePixels<L08>, Scaled<Cover>>,
    Blend<Sample<L08>, SourcePixels<L08>, Binary<Cover>>,
    Blend<TwoLevel<L08>, SourcePixels<L08>, Constant>,
    Blend<TwoLevel<L08>, SourcePixels<L08>, Scaled<Cover>>,
    Blend<TwoLevel<L08>, SourcePixels<L08>, Binary<Cover>>,
    Blend<WhereInk<Sample<L08>>, SourcePixels<L08>, Constant>,
    Blend<WhereInk<Sample<L08>>, SourcePixels<L08>, Scaled<Cover>>,
    Blend<WhereInk<Sample<L08>>, SourcePixels<L08>, Binary<Cover>>,
    Blend<WhereInk<TwoLevel<L08>>, SourcePixels<L08>, Constant>,
    Blend<WhereInk<TwoLevel<L08>>, SourcePixels<L08>, Scaled<Cover>>,
    Blend<WhereInk<TwoLevel<L08>>, SourcePixels<L08>, Binary<Cover>>,
    Blend<Sample<L08>, Flat, Scaled<Cover>>,
    Blend<Sample<L08>, Flat, Scaled<Complement>>,
    Blend<Sample<L08>, Flat, Scaled<Blue>>,
    Blend<Overwrite<L08>, Flat, Binary<Cover>>,
    Blend<Overwrite<L08>, Flat, Binary<Transparent>>,
    Blend<Overwrite<L08>, Flat, Binary<Blue>>,
    Blend<Overwrite<L08>, ValueOnZero<Blue>, Binary<Blue>>,
    Blend<Multiplied<L08>, Flat, Scaled<Cover>>,
    Blend<Multiplied<L08>, Flat, Binary<Cover>>,
    Blend<Multiplied<L08>, Flat, Binary<FullyCovered>>>;

using InkRows = RowTable<
    Blend<Sample<L12>, SourcePixels<L12>, Scaled<Cover>>,
    Blend<TwoLevel<L12>, SourcePixels<L12>, Scaled<Cover>>,
    Blend<Sample<L12>, DividedPixels, Constant>,
    Blend<Sample<L12>, DividedPixels, Scaled<Cover>>,
    Blend<Sample<L12>, DividedPixels, Binary<Cover>>,
    Blend<Sample<L12>, DividedPixels, Binary<Inked>>,
    Blend<WhereInk<Sample<L12>>, SourcePixels<L12>, Scaled<Cover>>,
    Blend<WhereInk<Sample<L12>>, SourcePixels<L12>, Binary<Cover>>,
    Blend<FilledFirst, DividedPixels, Constant>,
    Blend<FilledFirst, DividedPixels, Scaled<Cover>>,
    Blend<FilledFirst, DividedPixels, Binary<Cover>>,
    Blend<Sample<L12>, Flat, Scaled<Cover>>,
    Blend<Sample<L12>, Flat, Scaled<Complement>>,
    Blend<Overwrite<L12>, Flat, Binary<Cover>>,
    Blend<Multiplied<L12>, Flat, Scaled<Cover>>,
    Blend<Multiplied<L12>, Flat, Binary<FullyCovered>>>;
// clang-format on

extern const Levels<TrueColorRows> trueColorRows;
extern const Levels<GreyRows> greyRows;
extern const Levels<InkRows> inkRows;

/// The kernels for a destination.
inline const Levels<TrueColorRows>& levelsInto(const Plane<TRC>&) { return trueColorRows; }
inline const Levels<GreyRows>& levelsInto(const Plane<L08>&) { return greyRows; }
inline const Levels<InkRows>& levelsInto(const Plane<L12>&) { return inkRows; }

}  // namespace omnar
