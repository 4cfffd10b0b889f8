// SPDX-License-Identifier: MIT
/// @file
/// Operations on pixels, and the tables of their kernels.
///
/// The reference of an operation is `Pixel at(Pixel old, std::size_t i)`, which gives the new value of pixel i of the
/// row. `eachPlane` visits the planes that the operation reads.
#pragma once

#include <algorithm>
#include <cstddef>

#include "buffers/level.h"
#include "buffers/region.h"

namespace omnar {

/// The kernel of an operation: processes a region that is not empty, rows from the top, pixels from the left.
template <class Operation>
struct RowsOf {
    using Function = void (*)(Region region, const Plane<typename Operation::Pixel>& dst, const Operation& operation);

    Function rows;
};

/// The kernels of the listed operations at one vector level. An operation that is not listed does not compile.
template <class... Operation>
struct RowTable : RowsOf<Operation>... {
    template <class Wanted>
    auto kernel() const {
        return static_cast<const RowsOf<Wanted>&>(*this).rows;
    }
};

/// Fills a table with the instances of `Kernel::rows`.
template <class Kernel, class... Operation>
constexpr RowTable<Operation...> filledBy(RowTable<Operation...>) {
    return {RowsOf<Operation>{Kernel::template rows<Operation>}...};
}

/// Runs an operation at the vector level that suits the length of its rows.
template <class Operation, class Table>
class RunningKernel {
public:
    using Pixel = typename Operation::Pixel;

    explicit RunningKernel(const Levels<Table>& levels) : levels_(levels) {}

    /// Processes rows in any order. A vector level runs rows that fill more than half a vector; shorter rows run at a
    /// narrower one, down to 16 bytes. Rows of 32-bit pixels of any length run at the masked level, since they cost
    /// only a mask.
    void operator()(Region region, const Plane<Pixel>& dst, const Operation& operation) const {
        const bool masked = sizeof(Pixel) == 4 && currentLevel() == maskedLevel;
        run(masked ? 64 : 2 * region.cols * sizeof(Pixel) - 1, region, dst, operation);
    }

    /// Processes rows that read what the row before wrote. Vectors are no wider than a row, and 32 bytes at most in rows
    /// below 128 bytes: loads stall on bytes stored by narrower stores, and longer on masked stores.
    void inPieces(Region region, const Plane<Pixel>& dst, const Operation& operation) const {
        const std::size_t bytes = region.cols * sizeof(Pixel);
        run(bytes < 128 ? std::min<std::size_t>(bytes, 32) : 64, region, dst, operation);
    }

    /// Processes one row pixel by pixel.
    void inOrder(const Plane<Pixel>& dst, const Operation& operation, std::size_t n) const {
        levels_.scalar().template kernel<Operation>()({n, 1}, dst, operation);
    }

private:
    void run(std::size_t vector, Region region, const Plane<Pixel>& dst, const Operation& operation) const {
        levels_.noWiderThan(vector).template kernel<Operation>()(region, dst, operation);
    }

    const Levels<Table>& levels_;
};

template <class Operation, class Table>
RunningKernel<Operation, Table> runningKernel(const Levels<Table>& levels) {
    return RunningKernel<Operation, Table>(levels);
}

/// The current row of a region that is not empty: the destination and the operation at that row.
template <class Operation>
struct RowCursor {
    Plane<typename Operation::Pixel> dst;
    Operation operation;
    std::size_t rowsLeft;

    /// Moves to the next row; returns false after the last row.
    bool next() {
        if (--rowsLeft == 0) return false;
        dst.advance();
        operation.eachPlane([](auto& plane) { plane.advance(); });
        return true;
    }
};

/// The reference, pixel by pixel; its order defines the result of overlapping rows.
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
