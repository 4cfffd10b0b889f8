// SPDX-License-Identifier: MIT
/// @file
/// Weighted sums of pixels, and their mean.
#pragma once

#include <OmnarRaster.h>

#include <cstdint>

namespace omnar::pattern {

template <class Px>
struct Sum;

/// Of coverage. 64 bits hold the sum of a tile that fits in memory.
template <>
struct Sum<L08> {
    std::uint64_t value = 0;

    void add(L08 sample, std::uint64_t weight) { value += sample * weight; }
    void add(const Sum& other, std::uint64_t weight) { value += other.value * weight; }

    /// The mean under a total weight, rounded to the nearest.
    L08 mean(std::uint64_t total) const { return static_cast<L08>((value + total / 2) / total); }
};

/// Of true colour. Colours count as much as they are opaque.
template <>
struct Sum<TRC> {
    std::uint64_t alpha = 0;
    std::uint64_t channels[3] = {};  ///< blue, green, red, multiplied by alpha

    void add(TRC pixel, std::uint64_t weight) {
        const std::uint64_t opaque = (pixel >> 24) * weight;
        alpha += opaque;
        for (unsigned k = 0; k < 3; ++k) channels[k] += (pixel >> 8 * k & 255U) * opaque;
    }
    void add(const Sum& other, std::uint64_t weight) {
        alpha += other.alpha * weight;
        for (unsigned k = 0; k < 3; ++k) channels[k] += other.channels[k] * weight;
    }

    /// The mean under a total weight, each channel rounded to the nearest; 0 where nothing is opaque.
    TRC mean(std::uint64_t total) const {
        if (alpha == 0) return 0;
        TRC pixel = static_cast<TRC>((alpha + total / 2) / total) << 24;
        for (unsigned k = 0; k < 3; ++k) pixel |= static_cast<TRC>((channels[k] + alpha / 2) / alpha) << 8 * k;
        return pixel;
    }
};

}  // namespace omnar::pattern
