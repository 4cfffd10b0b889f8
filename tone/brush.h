// SPDX-License-Identifier: MIT
/// @file
/// Moves of tone whose alpha runs on, or whose source is read at twice the pace: what a blend cannot express, and the
/// kernels for every level. The vector kernels are in brush_rows.cpp.
#pragma once

#include <OmnarRaster.h>

#include <algorithm>

#include "buffers/level.h"
#include "buffers/value_set.h"
#include "buffers/weighting.h"

namespace omnar {

/// A stretch of an alpha plane. Past its end there is no alpha.
struct AlphaStretch {
    const L08* row;
    std::size_t left;

    unsigned operator[](std::size_t i) const { return i < left ? row[i] : 0; }
};

/// Pixels that are spread at once, at most, and what `reached` and `taken` have room for.
inline constexpr std::size_t spreadBlock = 512;

/// The alpha that each pixel gets if the brush does not move at protected values: `reached` under any value, `taken` where
/// the value is not protected. Returns how far the brush has moved. Reads no alpha that no pixel gets.
using SpreadAlpha = std::size_t (*)(const L08* values, std::size_t n, AlphaStretch alpha, const ValueSet& kept,
                                    L08* reached, L08* taken);

inline std::size_t spreadAlpha(const L08* values, std::size_t n, AlphaStretch alpha, const ValueSet& kept, L08* reached,
                               L08* taken) {
    std::size_t used = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const bool isKept = kept.contains(values[i]);
        reached[i] = static_cast<L08>(alpha[used]);
        taken[i] = isKept ? L08{0} : reached[i];
        used += isKept ? 0 : 1;
    }
    return used;
}

/// The hard brush goes through the source at twice the pace: sample 2i decides whether destination pixel i is filled, the
/// sample after it is emptied under any alpha unless its value is protected. The source has 2n samples.
using StampRow = void (*)(L08* dst, L08* src, const L08* alpha, std::size_t n, unsigned opacity, const ValueSet& kept);

inline void stampRow(L08* dst, L08* src, const L08* alpha, std::size_t n, unsigned opacity, const ValueSet& kept) {
    for (std::size_t i = 0; i < n; ++i) {
        if (scaled(src[2 * i], scaled(alpha[i], opacity)) != 0) dst[i] = 255;
        if (!kept.contains(src[2 * i + 1])) src[2 * i + 1] = 0;
    }
}

struct BrushKernels {
    SpreadAlpha spread;
    StampRow stamp;
};
extern const Levels<BrushKernels> brushKernels;

}  // namespace omnar
