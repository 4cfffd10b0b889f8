// SPDX-License-Identifier: MIT
/// @file
/// The brush of a move of tone, which no blend expresses: its alpha advances from pixel to pixel across row ends, and
/// the hard brush reads two samples a pixel. The reference and the table of kernels for each vector level, which
/// brush_rows.cpp defines.
#pragma once

#include <OmnarRaster.h>

#include <cstddef>

#include "buffers/level.h"
#include "buffers/value_set.h"
#include "buffers/weighting.h"

namespace omnar {

/// The part of an alpha plane from a position to the plane's end. Coverage past the end is 0.
struct AlphaStretch {
    const L08* row;
    std::size_t left;

    unsigned operator[](std::size_t i) const { return i < left ? row[i] : 0; }
};

/// The most pixels of one call of SpreadAlpha.
inline constexpr std::size_t spreadBlock = 512;

/// Gives each of n pixels its coverage, by a position in the alpha plane that does not advance at protected values.
/// `reached` gets the coverage under every value, `taken` the same with 0 at protected ones. Returns how far the
/// position has advanced. Reads no coverage that no pixel gets.
using SpreadAlpha = std::size_t (*)(const L08* values, std::size_t n, AlphaStretch alpha,
                                    const ValueSet& protectedValues, L08* reached, L08* taken);

inline std::size_t spreadAlpha(const L08* values, std::size_t n, AlphaStretch alpha, const ValueSet& protectedValues,
                               L08* reached, L08* taken) {
    std::size_t used = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const bool isProtected = protectedValues.contains(values[i]);
        reached[i] = static_cast<L08>(alpha[used]);
        taken[i] = isProtected ? L08{0} : reached[i];
        used += isProtected ? 0 : 1;
    }
    return used;
}

/// Stamps n pixels of the hard brush. Sample 2i of the source decides whether destination pixel i becomes 255. Sample
/// 2i + 1 is erased under any coverage unless its value is protected. The source has 2n samples.
using StampRow = void (*)(L08* dst, L08* src, const L08* alpha, std::size_t n, unsigned opacity,
                          const ValueSet& protectedValues);

inline void stampRow(L08* dst, L08* src, const L08* alpha, std::size_t n, unsigned opacity,
                     const ValueSet& protectedValues) {
    for (std::size_t i = 0; i < n; ++i) {
        if (scaled(src[2 * i], scaled(alpha[i], opacity)) != 0) dst[i] = 255;
        if (!protectedValues.contains(src[2 * i + 1])) src[2 * i + 1] = 0;
    }
}

struct BrushKernels {
    SpreadAlpha spread;
    StampRow stamp;
};
extern const Levels<BrushKernels> brushKernels;

}  // namespace omnar
