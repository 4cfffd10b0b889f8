// SPDX-License-Identifier: MIT
/// @file
/// The weighted step of every blend. This is the reference; the vector kernels are in weighting-inl.h.
#pragma once

#include <OmnarRaster.h>

namespace omnar {

/// The weight of a pixel: its alpha or coverage under the opacity.
constexpr unsigned scaled(unsigned alpha, unsigned opacity) { return alpha * opacity / 255; }

/// Moves `old` toward `target`. The quotient truncates toward zero, so weights up to 255 never overshoot.
constexpr int toward(int old, int target, int weight) { return old + (target - old) * weight / 255; }

/// One byte of a true-colour pixel.
constexpr int channel(TRC pixel, int shift) { return static_cast<int>(pixel >> shift & 255U); }

/// One byte of a true-colour pixel, moved toward the same byte of another. The low 8 bits of the sum are kept.
constexpr TRC channelToward(TRC old, TRC target, unsigned weight, int shift) {
    const int moved = toward(channel(old, shift), channel(target, shift), static_cast<int>(weight));
    return (static_cast<TRC>(moved) & 255U) << shift;
}

/// Moves blue, green and red; the alpha byte stays.
constexpr TRC colorToward(TRC old, TRC target, unsigned weight) {
    return (old & 0xFF000000U) | channelToward(old, target, weight, 16) | channelToward(old, target, weight, 8) |
           channelToward(old, target, weight, 0);
}

/// Moves the alpha byte; blue, green and red stay.
constexpr TRC alphaToward(TRC old, TRC target, unsigned weight) {
    return (old & 0x00FFFFFFU) | channelToward(old, target, weight, 24);
}

}  // namespace omnar
