// SPDX-License-Identifier: MIT
/// @file
/// Views of a pattern: drawn again, panned and zoomed.
#pragma once

#include "benchmarks/contest.h"

namespace bench {

void measurePatterns(Bench& bench);

}  // namespace bench
