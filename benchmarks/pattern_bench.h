// SPDX-License-Identifier: MIT
/// @file
/// Benchmarks of views of a pattern: panning and zooming.
#pragma once

#include "benchmarks/contest.h"

namespace bench {

void measurePatterns(Bench& bench);

}  // namespace bench
