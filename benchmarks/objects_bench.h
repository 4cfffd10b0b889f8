// SPDX-License-Identifier: MIT
/// @file
/// Benchmarks of flood fill and connected-component labelling, in nanoseconds per pixel.
#pragma once

#include "benchmarks/contest.h"

namespace bench {

void measureObjects(Bench& bench);

}  // namespace bench
