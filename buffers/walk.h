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
                typename RowOf<Operation>::Function vectorRow) {
    std::size_t stretch = n;
    operation.eachPlane([&](const auto& plane) { stretch = std::min(stretch, freeStretch(plane.row(), dst, n)); });
    if (stretch == n) return vectorRow(dst, operation, n);
    if (stretch < worthwhile) return ScalarKernel::row(dst, operation, n);
    Operation rest = operation;
    for (; n > stretch; n -= stretch, dst += stretch) {
        vectorRow(dst, rest, stretch);
        rest.eachPlane([&](auto& plane) { plane = plane.from(stretch); });
    }
    vectorRow(dst, rest, n);
}

/// Processes a region that was cut before, rows from the top, pixels from the left. Rows without gaps are joined into one.
template <class Operation>
void process(Region region, Plane<typename Operation::Pixel> dst, Operation operation,
             typename RowOf<Operation>::Function vectorRow) {
    if (region.empty()) return;

    bool dense = dst.dense(region.cols);
    operation.eachPlane([&](const auto& plane) { dense = dense && plane.dense(region.cols); });
    if (dense) region = {region.cols * region.rows, 1};

    for (;;) {
        processRow(dst.row(), operation, region.cols, vectorRow);
        if (--region.rows == 0) return;
        dst.advance();
        operation.eachPlane([](auto& plane) { plane.advance(); });
    }
}

/// The same by the operation's row at the level that runs.
template <class Operation, class Table>
void process(Region region, Plane<typename Operation::Pixel> dst, const Operation& operation,
             const Levels<Table>& rows) {
    process(region, dst, operation, rows.current().template of<Operation>());
}

}  // namespace omnar
