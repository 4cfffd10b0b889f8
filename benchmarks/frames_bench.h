// SPDX-License-Identifier: MIT
/// @file
/// Benchmarks of hard and soft frames around the shapes of a mask.
#pragma once

#include "benchmarks/contest.h"

namespace bench {

void measureFrames(Bench& bench);

}  // namespace bench
