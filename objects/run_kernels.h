// SPDX-License-Identifier: MIT
/// @file
/// Kernels over one row of pixels: searches for a value, and the labels of objects.
#pragma once

#include <cstddef>
#include <cstdint>

#include "buffers/level.h"
#include "hwy/base.h"

namespace omnar {

/// The labels of consecutive objects.
template <class Px>
struct ObjectLabels {
    Px first;
    std::uint32_t step;    ///< 1, or 2^32 - 1 for labels that count down
    std::uint32_t usable;  ///< objects that have a label; at most 2^31 - 1
    Px unlabelled;         ///< the value of all others

    /// `node` is ~object, or a value from 0 on without an object. That is not usable either, since ~node is at least
    /// 2^31.
    HWY_INLINE Px label(std::int32_t node) const {
        const std::uint32_t object = ~static_cast<std::uint32_t>(node);
        return object < usable ? static_cast<Px>(static_cast<std::uint32_t>(first) + object * step) : unlabelled;
    }
};

/// RunKernels::label at every vector level. Compilers vectorise it.
template <class Px>
HWY_INLINE bool writeLabels(const std::int32_t* nodes, std::size_t n, ObjectLabels<Px> objects,
                            Px* HWY_RESTRICT labels) {
    std::uint32_t difference = 0;
    for (std::size_t i = 0; i < n; ++i) {
        labels[i] = objects.label(nodes[i]);
        difference |= static_cast<std::uint32_t>(labels[i] ^ objects.unlabelled);
    }
    return difference != 0;
}

/// `n` may be 0.
template <class Px>
struct RunKernels {
    /// How many of the n pixels from `row` on hold the value before the first that does not.
    std::size_t (*countEqual)(const Px* row, std::size_t n, Px value);
    /// How many of them do not hold the value before the first that does.
    std::size_t (*countDifferent)(const Px* row, std::size_t n, Px value);
    /// How many of the n pixels before `end` hold the value after the last that does not.
    std::size_t (*countEqualBefore)(const Px* end, std::size_t n, Px value);
    /// Sets bit i of `words` where pixel i holds the value, and resets all other bits of the n / 64 + 1 words.
    void (*mark)(const Px* row, std::size_t n, Px value, std::uint64_t* words);
    /// Writes the labels of the n runs of a row. Returns false if all of them are `objects.unlabelled`.
    bool (*label)(const std::int32_t* nodes, std::size_t n, const ObjectLabels<Px>& objects, Px* labels);
    /// Paints the runs of the n bits: the first with labels[1], the second with labels[2], and so on. labels[0] to
    /// labels[runs + spareLabels - 1] are readable.
    void (*paint)(Px* row, std::size_t n, const std::uint64_t* words, const Px* labels);
};

/// Labels that are loaded at once.
inline constexpr std::size_t spareLabels = 16;

template <class Px>
const RunKernels<Px>& runKernels();
template <>
const RunKernels<unsigned char>& runKernels();
template <>
const RunKernels<int>& runKernels();

}  // namespace omnar
