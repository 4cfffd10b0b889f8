// SPDX-License-Identifier: MIT
/// @file
/// Benchmarks of contours: drawn from a mask, and as polygons.
#pragma once

#include "benchmarks/contest.h"

namespace bench {

void measureOutlines(Bench& bench);

}  // namespace bench
