// SPDX-License-Identifier: MIT
/// @file
/// The luminance of a true-colour pixel. The vector kernel is in luminance-inl.h.
#pragma once

#include "buffers/weighting.h"

namespace omnar {

/// From 0 for black to 255 for white, truncated. The luminance of a grey is its value.
constexpr unsigned luminance(TRC pixel) {
    return static_cast<unsigned>(59 * channel(pixel, 8) + 30 * channel(pixel, 16) + 11 * channel(pixel, 0)) / 100;
}

}  // namespace omnar
