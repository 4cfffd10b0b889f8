// SPDX-License-Identifier: MIT
/// @file
/// Benchmarks of blending into 24-bit and 32-bit bitmaps.
#pragma once

#include "benchmarks/contest.h"

namespace bench {

void measureBitmaps(Bench& bench);

}  // namespace bench
