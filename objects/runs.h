// SPDX-License-Identifier: MIT
/// @file
/// Rows of pixels as runs of one value, at every level.
#pragma once

#include <cstddef>
#include <cstdint>

#include "buffers/level.h"

namespace omnar {

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
};

template <class Px>
const RunRows<Px>& runRows();
template <>
const RunRows<unsigned char>& runRows();
template <>
const RunRows<int>& runRows();

}  // namespace omnar
