// SPDX-License-Identifier: MIT
/// @file
/// The geometry of the repeat, in nanoseconds a call.
#pragma once

#include "benchmarks/contest.h"

namespace bench {

void measureRepeatGeometry(Bench& bench);

}  // namespace bench
