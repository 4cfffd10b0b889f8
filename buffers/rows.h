// SPDX-License-Identifier: MIT
/// @file
/// What raster functions are made of: operations on pixels, and a table of their kernels for each level.
///
/// An operation says what becomes of a pixel, `Pixel at(Pixel old, std::size_t i)` for pixel i of the row, and hands the
/// planes that it reads to `eachPlane`, which is all that the walk over a region needs to know of it.
#pragma once

#include <cstddef>

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
