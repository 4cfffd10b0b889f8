// SPDX-License-Identifier: MIT
/// @file
/// How an operation walks its region.
#pragma once

#include <algorithm>

#include "buffers/level.h"
#include "buffers/overlap.h"
#include "buffers/region.h"
#include "buffers/rows.h"

namespace omnar {

/// Stretches of rows that are shorter than this are left to the scalar rule.
inline constexpr std::size_t worthwhile = 16;

/// Processes one row. Where its buffers share memory in a way that would show, it is cut into stretches which are too
/// short to show it, or, if there are none, processed by the scalar rule, pixel by pixel.
template <class Operation>
void processRow(typename Operation::Pixel* dst, Operation& operation, std::size_t n,
                typename RowsOf<Operation>::Function vectorRows) {
    std::size_t stretch = n;
    operation.eachPlane([&](const auto& plane) { stretch = std::min(stretch, freeStretch(plane.row(), dst, n)); });
    if (stretch < n && stretch < worthwhile) return ScalarKernel::row(dst, operation, n);
    Operation rest = operation;
    for (; n > stretch; n -= stretch, dst += stretch) {
        vectorRows({stretch, 1}, {dst, stretch}, rest);
        rest.eachPlane([&](auto& plane) { plane = plane.from(stretch); });
    }
    vectorRows({n, 1}, {dst, n}, rest);
}

/// Processes a region that was cut before, rows from the top, pixels from the left. Rows without gaps are joined into one.
template <class Operation>
void process(Region region, const Plane<typename Operation::Pixel>& dst, Operation operation,
             typename RowsOf<Operation>::Function vectorRows) {
    if (region.empty()) return;

    bool dense = dst.dense(region.cols);
    operation.eachPlane([&](const auto& plane) { dense = dense && plane.dense(region.cols); });
    if (dense) region = {region.cols * region.rows, 1};

    bool free = true;
    operation.eachPlane([&](const auto& plane) { free = free && orderIsFree(plane, dst, region); });
    if (free) return vectorRows(region, dst, operation);
    RowCursor<Operation> at{dst, operation, region.rows};
    do processRow(at.dst.row(), at.operation, region.cols, vectorRows);
    while (at.next());
}

/// The same by the operation's rows at the level that runs.
template <class Operation, class Table>
void process(Region region, const Plane<typename Operation::Pixel>& dst, const Operation& operation,
             const Levels<Table>& rows) {
    process(region, dst, operation, rows.current().template of<Operation>());
}

}  // namespace omnar
