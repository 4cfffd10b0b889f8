/// @file
/// How bright a true-colour pixel is. This is the law; the vector twin is luminance-inl.h.
#pragma once

#include "buffers/weighting.h"

namespace omnar {

/// 0 for black (and for the darkest colours, blue up to 9) to 255 for white. The grey of a level has that luminance.
constexpr int luminance(TRC pixel) {
    return (59 * channel(pixel, 8) + 30 * channel(pixel, 16) + 11 * channel(pixel, 0)) / 100;
}

}  // namespace omnar
