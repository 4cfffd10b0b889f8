// SPDX-License-Identifier: MIT
/// @file
/// Every member of the family is one call of blend().
#pragma once

#include "buffers/walk.h"
#include "compositing/rows.h"

namespace omnar {

/// Blends a region that was cut before.
template <class Destination, class Target, class Weight>
void blend(Region region, Plane<typename Destination::Pixel> dst, Target target, Weight weight) {
    using Operation = Blend<Destination, Target, Weight>;
    process(region, dst, Operation{target, weight}, rowsInto(dst).template of<Operation>());
}

}  // namespace omnar
