// SPDX-License-Identifier: MIT
/// @file
/// Filling and labelling objects, in nanoseconds a pixel of the picture.
#pragma once

#include "benchmarks/contest.h"

namespace bench {

void measureObjects(Bench& bench);

}  // namespace bench
