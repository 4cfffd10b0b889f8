// SPDX-License-Identifier: MIT
/// @file
/// Filling and labelling objects, in nanoseconds a pixel of the picture.
#pragma once

namespace bench {

void measureObjects();

}  // namespace bench
