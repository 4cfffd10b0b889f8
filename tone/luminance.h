// SPDX-License-Identifier: MIT
/// @file
/// How bright a true-colour pixel is. This is the law; the vector twin is luminance-inl.h.
#pragma once

#include "buffers/weighting.h"

namespace omnar {

/// 0 for black, and for the darkest colours such as blue up to 9, to 255 for white. That of a grey is its level.
constexpr unsigned luminance(TRC pixel) {
    return static_cast<unsigned>(59 * channel(pixel, 8) + 30 * channel(pixel, 16) + 11 * channel(pixel, 0)) / 100;
}

}  // namespace omnar
