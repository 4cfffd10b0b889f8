// SPDX-License-Identifier: MIT
/// @file
/// The layouts of tiles on the plane.
#pragma once

#include <OmnarRaster.h>

namespace omnar {

/// A kind of layout. Half-drop layout crosses tiles along x and shifts positions along y, brick layout crosses tiles
/// along y and shifts positions along x.
class Layout {
public:
    explicit constexpr Layout(_EDropKind kind) : kind_(kind) {}

    constexpr bool isHalfDrop() const { return kind_ == eDropVertical; }
    constexpr bool isBrick() const { return kind_ == eDropHorizontal; }
    constexpr bool isLayout() const { return isHalfDrop() || isBrick(); }  ///< false for any other kind

    /// The one of `x` and `y` that belongs to the axis along which tiles are crossed.
    template <class T>
    constexpr T& crossed(T& x, T& y) const {
        return isHalfDrop() ? x : y;
    }
    /// The one that belongs to the other axis, along which the drop shifts.
    template <class T>
    constexpr T& shifted(T& x, T& y) const {
        return isHalfDrop() ? y : x;
    }

private:
    _EDropKind kind_;
};

/// A layout and its drop. `Drop` gives the shift by a number of tiles.
template <class Drop>
class DropLayout : public Layout {
public:
    constexpr DropLayout(_EDropKind kind, Drop drop) : Layout(kind), drop_(drop) {}

    template <class Tiles>
    constexpr auto drop(Tiles tiles) const {
        return drop_(tiles);
    }

private:
    Drop drop_;
};

template <class Drop>
DropLayout(_EDropKind, Drop) -> DropLayout<Drop>;

}  // namespace omnar
