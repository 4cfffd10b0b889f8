/// @file
/// How bright a true-colour pixel is, and how it is brought to another brightness.
#pragma once

#include <algorithm>

#include "buffers/weighting.h"

namespace omnar {

/// 0 for black (and for the darkest colours, blue up to 9) to 255 for white. The grey of a level has that luminance.
constexpr int luminance(TRC pixel) {
    return (59 * channel(pixel, 8) + 30 * channel(pixel, 16) + 11 * channel(pixel, 0)) / 100;
}

/// Brings a pixel from its luminance to another by scaling its channels, as far as they go. Where there is nothing to
/// scale it becomes a grey. The alpha byte stays.
constexpr TRC relit(TRC pixel, int from, int to) {
    const TRC alpha = pixel & 0xFF000000U;
    if (from == 0) return alpha | static_cast<TRC>(to) * 0x010101U;
    const auto scaledTo = [=](int shift) {
        return static_cast<TRC>(std::min(channel(pixel, shift) * to / from, 255)) << shift;
    };
    return alpha | scaledTo(16) | scaledTo(8) | scaledTo(0);
}

}  // namespace omnar
