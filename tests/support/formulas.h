// SPDX-License-Identifier: MIT
/// @file
/// The weighted step in floating point, where nothing is lost: a quotient of whole numbers below 2^53 that is not whole
/// is never rounded to a whole one.
#pragma once

#include <cmath>

#include "tests/support/member.h"

namespace support {

inline double moved(double from, double to, double weight) { return from + std::trunc((to - from) * weight / 255); }

/// An alpha value under the opacity of the call.
inline double weighed(const Inputs& in, std::uint32_t alpha) { return std::trunc(alpha * 1.0 * in.call.opacity / 255); }

}  // namespace support
