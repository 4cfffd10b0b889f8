// SPDX-License-Identifier: MIT
/// @file
/// blend(), of which every member of the family is one call.
#pragma once

#include "buffers/inline.h"
#include "buffers/walk.h"
#include "compositing/blend_rows.h"

namespace omnar {

/// Blends a region that is already cut. Inlined, so that the caller stores its operands where the kernel loads them.
template <class Destination, class Target, class Weight>
OMNAR_ALWAYS_INLINE void blend(Region region, const Plane<typename Destination::Pixel>& dst, const Target& target,
                               const Weight& weight) {
    using Operation = Blend<Destination, Target, Weight>;
    Operation operation{target, weight};
    processInPlace(region, dst, operation, runningKernel<Operation>(levelsInto(dst)));
}

}  // namespace omnar
