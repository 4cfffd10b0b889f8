// SPDX-License-Identifier: MIT
/// @file
/// Benchmarks of measuring objects and following their contours.
#pragma once

#include "benchmarks/contest.h"

namespace bench {

void measureFeatures(Bench& bench);

}  // namespace bench
