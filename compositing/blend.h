/// @file
/// How a blend walks its region. Every member of the family is one call of blend().
#pragma once

#include "buffers/overlap.h"
#include "buffers/region.h"
#include "compositing/rows.h"

namespace omnar {

/// Blends a region that was cut before. Rows without gaps are joined into one; rows that share memory in a way that
/// would show are processed by the scalar rule, pixel by pixel.
template <class Destination, class Target, class Weight>
void blend(Region region, Plane<typename Destination::Pixel> dst, Target target, Weight weight) {
    if (region.empty()) return;

    const auto eachPlane = [&](auto&& visit) {
        target.eachPlane(visit);
        weight.eachPlane(visit);
    };
    bool dense = dst.dense(region.cols);
    eachPlane([&](const auto& plane) { dense = dense && plane.dense(region.cols); });
    if (dense) region = {region.cols * region.rows, 1};

    const auto vectorRow = rowsInto(dst).template of<Destination, Target, Weight>();
    for (;;) {
        bool free = true;
        eachPlane([&](const auto& plane) { free = free && orderIsFree(plane.row(), dst.row(), region.cols); });
        const auto row = free ? vectorRow : ScalarKernel::row<Destination, Target, Weight>;
        row(dst.row(), target, weight, region.cols);

        if (--region.rows == 0) return;
        dst.advance();
        eachPlane([](auto& plane) { plane.advance(); });
    }
}

}  // namespace omnar
