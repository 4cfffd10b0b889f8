// SPDX-License-Identifier: MIT
/// @file
/// Regions, how they are cut, and planes, which compute the addresses of pixels.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace omnar {

/// A region after it is cut.
struct Region {
    std::size_t cols;
    std::size_t rows;

    constexpr bool empty() const { return cols == 0 || rows == 0; }
};

/// A buffer with the region's corner in it, where rows of the region begin.
template <class Px>
class Plane {
public:
    using Pixel = Px;

    /// Computes the address as an integer, since the corner of an empty region may be outside the buffer.
    Plane(Px* pixels, std::uint32_t width, std::uint32_t height, std::uint32_t x, std::uint32_t y)
        : row_(reinterpret_cast<Px*>(reinterpret_cast<std::uintptr_t>(pixels) +
                                     (std::uintptr_t{y} * width + x) * sizeof(Px))),
          pitch_(width),
          colsLeft_(left(width, x)),
          rowsLeft_(left(height, y)) {}

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

    /// The same rows, from their pixel `cols`.
    Plane columnsFrom(std::size_t cols) const {
        Plane columns = *this;
        columns.row_ += cols;
        return columns;
    }

    /// One row of pixels as rows of `cols` without gaps.
    Plane folded(std::size_t cols) const {
        Plane rows = *this;
        rows.pitch_ = static_cast<std::ptrdiff_t>(cols);
        return rows;
    }

    /// The same rows in reverse order, from row `rows` - 1 to row 0.
    Plane upwards(std::size_t rows) const {
        Plane reversed = *this;
        reversed.row_ = row(static_cast<std::ptrdiff_t>(rows) - 1);
        reversed.pitch_ = -pitch_;
        return reversed;
    }

    /// A plane of the same geometry whose current row is `row`.
    Plane withRow(Px* row) const {
        Plane other = *this;
        other.row_ = row;
        return other;
    }

    /// Moves down by `rows`; that row must exist.
    void advance(std::size_t rows = 1) { row_ += static_cast<std::ptrdiff_t>(rows) * pitch_; }

    /// True if rows of `cols` pixels have no gaps between them.
    bool dense(std::size_t cols) const { return pitch_ == static_cast<std::ptrdiff_t>(cols); }

private:
    template <class>
    friend class Plane;

    Plane(Px* row, std::ptrdiff_t pitch, std::size_t colsLeft, std::size_t rowsLeft)
        : row_(row), pitch_(pitch), colsLeft_(colsLeft), rowsLeft_(rowsLeft) {}

    /// 0 for a corner outside the buffer, a breach of the contract.
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

/// Cuts w x h pixels from each plane's corner at its right and bottom edges.
template <class... Px>
Region clip(std::uint32_t w, std::uint32_t h, const Plane<Px>&... planes) {
    return {std::min({std::size_t{w}, planes.colsLeft()...}), std::min({std::size_t{h}, planes.rowsLeft()...})};
}

}  // namespace omnar
