// SPDX-License-Identifier: MIT
/// @file
/// Every member of the family is one call of blend().
#pragma once

#include "buffers/inline.h"
#include "buffers/walk.h"
#include "compositing/rows.h"

namespace omnar {

/// Blends a region that was cut before. Inlined, so that the caller writes its operands where the kernel reads them.
template <class Destination, class Target, class Weight>
OMNAR_ALWAYS_INLINE void blend(Region region, const Plane<typename Destination::Pixel>& dst, const Target& target,
                               const Weight& weight) {
    using Operation = Blend<Destination, Target, Weight>;
    Operation operation{target, weight};
    processInPlace(region, dst, operation, runningKernel<Operation>(levelsInto(dst)));
}

}  // namespace omnar
