// SPDX-License-Identifier: MIT
/// @file
/// Outlines of objects: drawn from a mask, and as polygons.
#pragma once

namespace bench {

void measureOutlines();

}  // namespace bench
