/// @file
/// The kernels of the family: one row of a blend, for every combination that has a member. A combination that is not
/// listed does not compile; every level fills the list by itself.
#pragma once

#include "buffers/level.h"
#include "compositing/operands.h"

namespace omnar {

/// Blends pixels 0..n-1 of a row, n > 0.
template <class Destination, class Target, class Weight>
struct RowOf {
    using Pixel = typename Destination::Pixel;

    void (*row)(Pixel* dst, const Target& target, const Weight& weight, std::size_t n);
};

template <class... Row>
struct RowTable : Row... {
    template <class Destination, class Target, class Weight>
    auto of() const {
        return static_cast<const RowOf<Destination, Target, Weight>&>(*this).row;
    }
};

/// Fills a table with the instances of `Kernel::row`.
template <class Kernel, class... Row>
constexpr RowTable<Row...> filledBy(RowTable<Row...>) {
    constexpr auto entry = []<class D, class T, class W>(RowOf<D, T, W>) {
        return RowOf<D, T, W>{Kernel::template row<D, T, W>};
    };
    return {entry(Row{})...};
}

/// The scalar rule of a row, and the order that overlapping rows show.
struct ScalarKernel {
    template <class Destination, class Target, class Weight>
    static void row(typename Destination::Pixel* dst, const Target& target, const Weight& weight, std::size_t n) {
        for (std::size_t i = 0; i < n; ++i) {
            dst[i] = Destination::step(dst[i], target.at(i), weight, i);
        }
    }
};

// clang-format off
using TrueColourRows = RowTable<
    RowOf<Colour, From<TRC>, Scaled<OwnAlpha>>,
    RowOf<Colour, From<TRC>, Constant>,
    RowOf<Colour, From<TRC>, Scaled<Cover>>,
    RowOf<Colour, Flat, Constant>,
    RowOf<Colour, Flat, Scaled<Cover>>,
    RowOf<Colour, Flat, Scaled<Complement>>,
    RowOf<Colour, Flat, Scaled<Blue>>,
    RowOf<Colour, Flat, Binary<Cover>>,
    RowOf<Colour, Flat, Coverage16>,
    RowOf<Colour, Grey, Scaled<Cover>>,
    RowOf<Colour, LaidOn<Cover>, Binary<Cover>>,
    RowOf<Colour, LaidOn<Blue>, Binary<Blue>>,
    RowOf<ColourClearingAlpha, Flat, Scaled<Cover>>,
    RowOf<Whole<TRC>, Flat, Binary<Blue>>,
    RowOf<AlphaByte, Flat, Scaled<Cover>>>;

using GreyRows = RowTable<
    RowOf<Sample<L08>, From<L08>, Constant>,
    RowOf<Sample<L08>, From<L08>, Scaled<Cover>>,
    RowOf<Sample<L08>, From<L08>, Binary<Cover>>,
    RowOf<TwoLevel, From<L08>, Constant>,
    RowOf<TwoLevel, From<L08>, Scaled<Cover>>,
    RowOf<TwoLevel, From<L08>, Binary<Cover>>,
    RowOf<WhereInk<Sample<L08>>, From<L08>, Constant>,
    RowOf<WhereInk<Sample<L08>>, From<L08>, Scaled<Cover>>,
    RowOf<WhereInk<Sample<L08>>, From<L08>, Binary<Cover>>,
    RowOf<WhereInk<TwoLevel>, From<L08>, Constant>,
    RowOf<WhereInk<TwoLevel>, From<L08>, Scaled<Cover>>,
    RowOf<WhereInk<TwoLevel>, From<L08>, Binary<Cover>>,
    RowOf<Sample<L08>, Flat, Scaled<Cover>>,
    RowOf<Sample<L08>, Flat, Scaled<Complement>>,
    RowOf<Sample<L08>, Flat, Scaled<Blue>>,
    RowOf<Whole<L08>, Flat, Binary<Cover>>,
    RowOf<Whole<L08>, Flat, Binary<Clear>>,
    RowOf<Whole<L08>, Flat, Binary<Blue>>,
    RowOf<Whole<L08>, LaidOnNothing<Blue>, Binary<Blue>>,
    RowOf<Multiplied<L08>, Flat, Scaled<Cover>>,
    RowOf<Multiplied<L08>, Flat, Binary<Cover>>,
    RowOf<Multiplied<L08>, Flat, Binary<Full>>>;

using InkRows = RowTable<
    RowOf<Sample<L12>, Divided, Constant>,
    RowOf<Sample<L12>, Divided, Scaled<Cover>>,
    RowOf<Sample<L12>, Divided, Binary<Cover>>,
    RowOf<Sample<L12>, Divided, Binary<Inked>>,
    RowOf<WhereInk<Sample<L12>>, From<L12>, Scaled<Cover>>,
    RowOf<WhereInk<Sample<L12>>, From<L12>, Binary<Cover>>,
    RowOf<Raised, Divided, Constant>,
    RowOf<Raised, Divided, Scaled<Cover>>,
    RowOf<Raised, Divided, Binary<Cover>>,
    RowOf<Sample<L12>, Flat, Scaled<Cover>>,
    RowOf<Sample<L12>, Flat, Scaled<Complement>>,
    RowOf<Whole<L12>, Flat, Binary<Cover>>,
    RowOf<Multiplied<L12>, Flat, Scaled<Cover>>,
    RowOf<Multiplied<L12>, Flat, Binary<Full>>>;
// clang-format on

extern const Levels<TrueColourRows> trueColourRows;
extern const Levels<GreyRows> greyRows;
extern const Levels<InkRows> inkRows;

/// The rows that write pixels of a type.
inline const TrueColourRows& rowsInto(const Plane<TRC>&) { return trueColourRows.current(); }
inline const GreyRows& rowsInto(const Plane<L08>&) { return greyRows.current(); }
inline const InkRows& rowsInto(const Plane<L12>&) { return inkRows.current(); }

}  // namespace omnar
