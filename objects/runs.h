// SPDX-License-Identifier: MIT
/// @file
/// Rows of pixels as runs of one value, at every level.
#pragma once

#include <cstddef>
#include <cstdint>

#include "buffers/level.h"
#include "hwy/base.h"

namespace omnar {

/// The labels of objects, as many as there are usable ones.
template <class Px>
struct ObjectLabels {
    Px first;
    std::uint32_t step;    ///< 1, or 2^32 - 1 for labels that count down
    std::uint32_t usable;  ///< at most 2^31 - 1
    Px none;               ///< the value of objects beyond that

    /// `node` is ~object, or at least 0 without an object: then it is not usable either, read as an unsigned number.
    HWY_INLINE Px of(std::int32_t node) const {
        const std::uint32_t object = ~static_cast<std::uint32_t>(node);
        return object < usable ? static_cast<Px>(static_cast<std::uint32_t>(first) + object * step) : none;
    }
};

/// RunRows::label, for compilers to turn into vectors.
template <class Px>
HWY_INLINE bool writeLabels(const std::int32_t* nodes, std::size_t n, ObjectLabels<Px> objects,
                            Px* HWY_RESTRICT labels) {
    std::uint32_t differing = 0;
    for (std::size_t i = 0; i < n; ++i) {
        labels[i] = objects.of(nodes[i]);
        differing |= static_cast<std::uint32_t>(labels[i] ^ objects.none);
    }
    return differing != 0;
}

/// What is asked of a row; n may be 0.
template <class Px>
struct RunRows {
    /// How many of the n pixels from `row` on hold the value, up to the first that does not.
    std::size_t (*same)(const Px* row, std::size_t n, Px value);
    /// How many of them do not, up to the first that does.
    std::size_t (*other)(const Px* row, std::size_t n, Px value);
    /// How many of the n pixels before `end` hold the value, back to the last that does not.
    std::size_t (*sameBefore)(const Px* end, std::size_t n, Px value);
    /// Sets bit i of `words` where pixel i holds the value, and clears all others of n / 64 + 1 words.
    void (*mark)(const Px* row, std::size_t n, Px value, std::uint64_t* words);
    /// Writes the labels of the n runs of a row. Returns false if all of them are `objects.none`.
    bool (*label)(const std::int32_t* nodes, std::size_t n, const ObjectLabels<Px>& objects, Px* labels);
    /// Paints run after run of the n bits: the first one in labels[1], the next in labels[2]. From labels[0] on, `spareLabels`
    /// more than there are runs can be read.
    void (*paint)(Px* row, std::size_t n, const std::uint64_t* words, const Px* labels);
};

/// Labels are loaded this many at a time.
inline constexpr std::size_t spareLabels = 16;

template <class Px>
const RunRows<Px>& runRows();
template <>
const RunRows<unsigned char>& runRows();
template <>
const RunRows<int>& runRows();

}  // namespace omnar
