// SPDX-License-Identifier: MIT
/// @file
/// Where a region lies: how it is cut, and the only place where pixel addresses are computed.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace omnar {

/// What is left of a region after it was cut.
struct Region {
    std::size_t cols;
    std::size_t rows;

    constexpr bool empty() const { return cols == 0 || rows == 0; }
};

/// A buffer as the caller passes it, seen from the region's corner: its rows, one after the other.
template <class Px>
class Plane {
public:
    using Pixel = Px;

    /// The address is formed as a number, since the corner of an empty region need not lie in memory.
    Plane(Px* pixels, std::uint32_t width, std::uint32_t height, std::uint32_t x, std::uint32_t y)
        : row_(reinterpret_cast<Px*>(reinterpret_cast<std::uintptr_t>(pixels) +
                                     (std::uintptr_t{y} * width + x) * sizeof(Px))),
          pitch_(width),
          colsLeft_(left(width, x)),
          rowsLeft_(left(height, y)) {}

    /// What may be written may be read.
    operator Plane<const Px>() const requires(!std::is_const_v<Px>) {
        return Plane<const Px>(row_, pitch_, colsLeft_, rowsLeft_);
    }

    /// A single row of pixels.
    Plane(Px* row, std::size_t cols)
        : row_(row), pitch_(static_cast<std::ptrdiff_t>(cols)), colsLeft_(cols), rowsLeft_(1) {}

    std::size_t colsLeft() const { return colsLeft_; }  ///< from the corner to the right edge
    std::size_t rowsLeft() const { return rowsLeft_; }  ///< from the corner to the bottom edge

    Px* row() const { return row_; }
    Px& operator[](std::size_t i) const { return row_[i]; }

    /// The row that lies `rows` below this one, which must exist.
    Px* row(std::ptrdiff_t rows) const { return row_ + rows * pitch_; }
    std::ptrdiff_t pitch() const { return pitch_; }

    /// The same rows from pixel `cols` of each on.
    Plane from(std::size_t cols) const {
        Plane rest = *this;
        rest.row_ += cols;
        return rest;
    }

    /// One row of pixels cut into rows of `cols`, which follow one another without a gap.
    Plane folded(std::size_t cols) const {
        Plane rows = *this;
        rows.pitch_ = static_cast<std::ptrdiff_t>(cols);
        return rows;
    }

    /// The same rows from number `rows` - 1 up to the first.
    Plane upwards(std::size_t rows) const {
        Plane reversed = *this;
        reversed.row_ = row(static_cast<std::ptrdiff_t>(rows) - 1);
        reversed.pitch_ = -pitch_;
        return reversed;
    }

    /// The same rows in another buffer of this geometry, where `row` is the current one.
    Plane in(Px* row) const {
        Plane other = *this;
        other.row_ = row;
        return other;
    }

    /// Goes on to the next row, or by more rows; that row must exist.
    void advance(std::size_t rows = 1) { row_ += static_cast<std::ptrdiff_t>(rows) * pitch_; }

    /// True if rows of `cols` pixels follow one another without a gap.
    bool dense(std::size_t cols) const { return pitch_ == static_cast<std::ptrdiff_t>(cols); }

private:
    template <class>
    friend class Plane;

    Plane(Px* row, std::ptrdiff_t pitch, std::size_t colsLeft, std::size_t rowsLeft)
        : row_(row), pitch_(pitch), colsLeft_(colsLeft), rowsLeft_(rowsLeft) {}

    /// None for a corner outside the buffer, which is the caller's fault.
    static constexpr std::uint32_t left(std::uint32_t extent, std::uint32_t corner) {
        return extent > corner ? extent - corner : 0;
    }

    Px* row_;
    std::ptrdiff_t pitch_;
    std::size_t colsLeft_;
    std::size_t rowsLeft_;
};

template <class Px>
Plane(Px*, std::size_t) -> Plane<Px>;

/// Cuts w x h pixels at the right and bottom edges of every plane, measured from the plane's own corner.
template <class... Px>
Region clip(std::uint32_t w, std::uint32_t h, const Plane<Px>&... planes) {
    return {std::min({std::size_t{w}, planes.colsLeft()...}), std::min({std::size_t{h}, planes.rowsLeft()...})};
}

}  // namespace omnar
