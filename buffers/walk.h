// SPDX-License-Identifier: MIT
/// @file
/// How an operation walks its region.
#pragma once

#include <OmnarRaster.h>

#include <algorithm>

#include "buffers/inline.h"
#include "buffers/level.h"
#include "buffers/overlap.h"
#include "buffers/region.h"
#include "buffers/rows.h"

namespace omnar {

/// Pieces of rows that are shorter than this are left to the scalar rule. A piece waits for what the one before it stored,
/// which costs as much as several pixels.
template <class Px>
inline constexpr std::size_t worthwhile = sizeof(Px) == sizeof(TRC) ? 3 : 7;

/// Processes one row. If overlap would make the result differ from pixel order, works in pieces no longer than the overlap
/// distance, which are the rows of a narrow region, else pixel by pixel.
template <class Operation, class Kernel>
void processRow(const Plane<typename Operation::Pixel>& dst, const Operation& operation, std::size_t n,
                const Kernel& vectorRows) {
    Operation piecewise = operation;
    std::size_t stretch = n;
    piecewise.eachPlane(
        [&](const auto& plane) { stretch = std::min(stretch, freeStretch(plane.row(), dst.row(), n)); });
    if (stretch == n) return vectorRows({n, 1}, dst, operation);
    if (stretch < worthwhile<typename Operation::Pixel>) return vectorRows.inOrder(dst, operation, n);
    const std::size_t pieces = n / stretch;
    piecewise.eachPlane([&](auto& plane) { plane = plane.folded(stretch); });
    vectorRows.inPieces({stretch, pieces}, dst.folded(stretch), piecewise);
    if (const std::size_t done = pieces * stretch; done < n) {
        piecewise.eachPlane([&](auto& plane) { plane = plane.from(done); });
        vectorRows({n - done, 1}, dst.from(done), piecewise);
    }
}

/// Processes a region whose rows are not free of order.
template <class Operation, class Kernel>
OMNAR_NEVER_INLINE void processInOrder(Region region, const Plane<typename Operation::Pixel>& dst,
                                       const Operation& operation, const Kernel& vectorRows) {
    RowCursor<Operation> at{dst, operation, region.rows};
    do processRow(at.dst, at.operation, region.cols, vectorRows);
    while (at.next());
}

/// Processes a region, whose corners were cut before, rows from the top, pixels from the left. Rows without gaps are joined
/// into one. The operation is not copied: a copy reloads fields just written with another width, which defeats store
/// forwarding.
template <class Operation, class Kernel>
OMNAR_ALWAYS_INLINE void processInPlace(Region region, const Plane<typename Operation::Pixel>& dst,
                                        Operation& operation, const Kernel& vectorRows) {
    if (region.empty()) return;

    bool dense = dst.dense(region.cols);
    operation.eachPlane([&](const auto& plane) { dense = dense && plane.dense(region.cols); });
    if (dense) region = {region.cols * region.rows, 1};

    bool free = true;
    operation.eachPlane([&](const auto& plane) { free = free && orderIsFree(plane, dst, region); });
    free ? vectorRows(region, dst, operation) : processInOrder(region, dst, operation, vectorRows);
}

template <class Operation, class Kernel>
void process(Region region, const Plane<typename Operation::Pixel>& dst, Operation operation,
             const Kernel& vectorRows) {
    processInPlace(region, dst, operation, vectorRows);
}

/// The same by the operation's kernel at the level that runs.
template <class Operation, class Table>
void process(Region region, const Plane<typename Operation::Pixel>& dst, Operation operation,
             const Levels<Table>& levels) {
    processInPlace(region, dst, operation, runningKernel<Operation>(levels));
}

}  // namespace omnar
