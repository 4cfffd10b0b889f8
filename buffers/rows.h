// SPDX-License-Identifier: MIT
/// @file
/// What raster functions are made of: operations on pixels, and a table of their kernels for each level.
///
/// An operation says what becomes of a pixel, `Pixel at(Pixel old, std::size_t i)` for pixel i of the row, and hands the
/// planes that it reads to `eachPlane`, which is all that the walk over a region needs to know of it.
#pragma once

#include <algorithm>
#include <cstddef>

#include "buffers/level.h"
#include "buffers/region.h"

namespace omnar {

/// Processes a region that is not empty, from the top row on, from the left.
template <class Operation>
struct RowsOf {
    using Function = void (*)(Region region, const Plane<typename Operation::Pixel>& dst, const Operation& operation);

    Function rows;
};

/// The operations that exist. One that is not listed does not compile; every level fills the list by itself.
template <class... Operation>
struct RowTable : RowsOf<Operation>... {
    template <class Wanted>
    auto of() const {
        return static_cast<const RowsOf<Wanted>&>(*this).rows;
    }
};

/// Fills a table with the instances of `Kernel::rows`.
template <class Kernel, class... Operation>
constexpr RowTable<Operation...> filledBy(RowTable<Operation...>) {
    return {RowsOf<Operation>{Kernel::template rows<Operation>}...};
}

/// The kernels of an operation at the level that runs and at the narrower ones.
template <class Operation, class Table>
class RunningKernel {
public:
    using Pixel = typename Operation::Pixel;

    explicit RunningKernel(const Levels<Table>& levels) : levels_(levels) {}

    /// Rows in any order. Vectors are worth their width if a row fills more than half of one. Shorter rows are left to a narrower level,
    /// down to vectors of 16 bytes, which take rows of any length; so do the widest ones if a pixel is a 32-bit lane, since
    /// that costs a mask alone.
    void operator()(Region region, const Plane<Pixel>& dst, const Operation& operation) const {
        const bool masked = sizeof(Pixel) == 4 && currentLevel() == maskedLevel;
        run(masked ? 64 : 2 * region.cols * sizeof(Pixel) - 1, region, dst, operation);
    }

    /// Rows that read what the one before has written. A vector waits for the narrower ones that wrote its bytes, and for a
    /// masked store even longer.
    void inPieces(Region region, const Plane<Pixel>& dst, const Operation& operation) const {
        const std::size_t bytes = region.cols * sizeof(Pixel);
        run(bytes < 128 ? std::min<std::size_t>(bytes, 32) : 64, region, dst, operation);
    }

    /// One row, pixel by pixel.
    void inOrder(const Plane<Pixel>& dst, const Operation& operation, std::size_t n) const {
        levels_.scalar().template of<Operation>()({n, 1}, dst, operation);
    }

private:
    void run(std::size_t vector, Region region, const Plane<Pixel>& dst, const Operation& operation) const {
        levels_.noWiderThan(vector).template of<Operation>()(region, dst, operation);
    }

    const Levels<Table>& levels_;
};

template <class Operation, class Table>
RunningKernel<Operation, Table> runningKernel(const Levels<Table>& levels) {
    return RunningKernel<Operation, Table>(levels);
}

/// Goes through the rows of a region that is not empty, from the top: a row of the destination, and the operation there.
template <class Operation>
struct RowCursor {
    Plane<typename Operation::Pixel> dst;
    Operation operation;
    std::size_t rowsLeft;

    /// False behind the last row.
    bool next() {
        if (--rowsLeft == 0) return false;
        dst.advance();
        operation.eachPlane([](auto& plane) { plane.advance(); });
        return true;
    }
};

/// The scalar rule, and the order that overlapping rows show.
struct ScalarKernel {
    template <class Operation>
    static void row(typename Operation::Pixel* dst, const Operation& operation, std::size_t n) {
        for (std::size_t i = 0; i < n; ++i) dst[i] = operation.at(dst[i], i);
    }

    template <class Operation>
    static void rows(Region region, const Plane<typename Operation::Pixel>& dst, const Operation& operation) {
        RowCursor<Operation> at{dst, operation, region.rows};
        do row(at.dst.row(), at.operation, region.cols);
        while (at.next());
    }
};

}  // namespace omnar
