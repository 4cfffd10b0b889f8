// SPDX-License-Identifier: MIT
/// @file
/// Benchmarks of partitions, integers, plane geometry, interpolation and curves, in nanoseconds per call.
#pragma once

#include "benchmarks/contest.h"

namespace bench {

void measureNumbers(Bench& bench);

}  // namespace bench
