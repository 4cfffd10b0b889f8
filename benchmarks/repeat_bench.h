// SPDX-License-Identifier: MIT
/// @file
/// Benchmarks of the geometry of the repeat, in nanoseconds per call.
#pragma once

#include "benchmarks/contest.h"

namespace bench {

void measureRepeatGeometry(Bench& bench);

}  // namespace bench
