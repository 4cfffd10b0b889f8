// SPDX-License-Identifier: MIT
/// @file
/// Splitting work, whole numbers, plane geometry, interpolation and curves, in nanoseconds a call.
#pragma once

namespace bench {

void measureNumbers();

}  // namespace bench
