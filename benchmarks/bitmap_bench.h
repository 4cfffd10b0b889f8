// SPDX-License-Identifier: MIT
/// @file
/// Blending into bitmaps of 24 and 32 bits.
#pragma once

namespace bench {

void measureBitmaps();

}  // namespace bench
