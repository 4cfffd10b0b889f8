// SPDX-License-Identifier: MIT
/// @file
/// The weighted step in floating point. It is exact: below 2^53 a quotient of integers that is no integer never rounds to
/// one.
#pragma once

#include <cmath>

#include "tests/support/member.h"

namespace support {

/// `old`, moved toward `target` by weight / 255.
inline double moved(double old, double target, double weight) {
    return old + std::trunc((target - old) * weight / 255);
}

/// The weight of a coverage under the opacity of the call.
inline double weightOf(const Inputs& in, std::uint32_t coverage) {
    return std::trunc(coverage * 1.0 * in.call.opacity / 255);
}

}  // namespace support
