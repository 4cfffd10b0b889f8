// SPDX-License-Identifier: MIT
/// @file
/// Hard and soft frames around the shapes of a mask.
#pragma once

namespace bench {

void measureFrames();

}  // namespace bench
