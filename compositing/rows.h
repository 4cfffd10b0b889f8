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

using TrueColourRows = RowTable<                      //
    RowOf<Colour, FromRow, Scaled<OwnAlpha>>,         //
    RowOf<Colour, FromRow, Constant>,                 //
    RowOf<Colour, FromRow, Scaled<Cover>>,            //
    RowOf<Colour, Flat, Constant>,                    //
    RowOf<Colour, Flat, Scaled<Cover>>,               //
    RowOf<Colour, Flat, Scaled<Complement>>,          //
    RowOf<Colour, Flat, Scaled<Blue>>,                //
    RowOf<Colour, Flat, Binary<Cover>>,               //
    RowOf<Colour, Flat, Coverage16>,                  //
    RowOf<Colour, Grey, Scaled<Cover>>,               //
    RowOf<Colour, LaidOn<Cover>, Binary<Cover>>,      //
    RowOf<Colour, LaidOn<Blue>, Binary<Blue>>,        //
    RowOf<ColourClearingAlpha, Flat, Scaled<Cover>>,  //
    RowOf<WholePixel, Flat, Binary<Blue>>,            //
    RowOf<AlphaByte, Flat, Scaled<Cover>>>;

extern const Levels<TrueColourRows> trueColourRows;

}  // namespace omnar
