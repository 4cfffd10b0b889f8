// SPDX-License-Identifier: MIT
/// @file
/// Measuring objects and following their contours.
#pragma once

namespace bench {

void measureFeatures();

}  // namespace bench
