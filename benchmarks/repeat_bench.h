// SPDX-License-Identifier: MIT
/// @file
/// The geometry of the repeat, in nanoseconds a call.
#pragma once

namespace bench {

void measureRepeatGeometry();

}  // namespace bench
