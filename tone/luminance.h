/// @file
/// How bright a colour is. This is the law; the vector twin is luminance-inl.h.
#pragma once

#include "buffers/weighting.h"

namespace omnar {

/// 0 to 255.
constexpr unsigned luminance(TRC pixel) {
    const auto byte = [pixel](int shift) { return static_cast<unsigned>(channel(pixel, shift)); };
    return (59 * byte(8) + 30 * byte(16) + 11 * byte(0)) / 100;
}

}  // namespace omnar
