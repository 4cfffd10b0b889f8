// SPDX-License-Identifier: MIT
/// @file
/// Blending into bitmaps of 24 and 32 bits.
#pragma once

#include "benchmarks/contest.h"

namespace bench {

void measureBitmaps(Bench& bench);

}  // namespace bench
