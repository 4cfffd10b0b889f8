/// @file
/// How bright a true-colour pixel is. The vector twin is in luminance-inl.h.
#pragma once

#include "buffers/weighting.h"

namespace omnar {

/// 0 for black to 255 for white.
constexpr unsigned luminance(TRC pixel) {
    return static_cast<unsigned>(59 * channel(pixel, 8) + 30 * channel(pixel, 16) + 11 * channel(pixel, 0)) / 100;
}

}  // namespace omnar
