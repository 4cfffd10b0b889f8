// SPDX-License-Identifier: MIT
/// @file
/// Runs of set bits. The functions are inlined into the kernels of each vector level, where counting bits takes one
/// instruction.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "hwy/base.h"

namespace omnar {

/// The first bit of each run. `before` is the word to the left.
HWY_INLINE std::uint64_t runStarts(std::uint64_t bits, std::uint64_t before) {
    return bits & ~(bits << 1 | before >> 63);
}

HWY_INLINE std::int32_t countRuns(const std::uint64_t* row, std::size_t words) {
    std::uint64_t before = 0;
    std::int32_t runs = 0;
    for (std::size_t i = 0; i < words; ++i) {
        runs += std::popcount(runStarts(row[i], before));
        before = row[i];
    }
    return runs;
}

/// Byte k of entry i: the number of set bits among the lowest k + 1 bits of i.
struct RankTable {
    constexpr RankTable() {
        for (unsigned i = 0; i < 256; ++i) {
            for (unsigned k = 0; k < 8; ++k) {
                ranks[i] |= static_cast<std::uint64_t>(std::popcount(i & ((2U << k) - 1))) << 8 * k;
            }
        }
    }
    std::uint64_t ranks[256] = {};
};
inline constexpr RankTable rankTable;

/// Byte k, for k in 0..15: the number of set bits among the lowest k + 1 bits.
class Ranks {
public:
    HWY_INLINE explicit Ranks(std::uint64_t bits)
        : ranks_{rankTable.ranks[bits & 0xFF],
                 rankTable.ranks[bits >> 8 & 0xFF] + broadcast(std::popcount(bits & 0xFF))} {}
    HWY_INLINE const std::uint8_t* bytes() const { return reinterpret_cast<const std::uint8_t*>(ranks_); }

private:
    static HWY_INLINE std::uint64_t broadcast(int n) { return static_cast<std::uint64_t>(n) * 0x0101010101010101; }

    std::uint64_t ranks_[2];
};

}  // namespace omnar
