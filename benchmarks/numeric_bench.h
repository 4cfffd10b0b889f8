// SPDX-License-Identifier: MIT
/// @file
/// Splitting work, whole numbers, plane geometry, interpolation and curves, in nanoseconds a call.
#pragma once

#include "benchmarks/contest.h"

namespace bench {

void measureNumbers(Bench& bench);

}  // namespace bench
