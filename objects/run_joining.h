// SPDX-License-Identifier: MIT
/// @file
/// Counting the runs of rows of bits, and joining those that touch. The functions become part of each level's own,
/// whose processors count bits in one instruction.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "hwy/base.h"

namespace omnar {

/// The first bit of every run; `before` is the word to the left.
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

/// Byte k of entry i: how many of the lowest k + 1 bits of i are set.
struct RankTable {
    constexpr RankTable() {
        for (unsigned i = 0; i < 256; ++i) {
            for (unsigned k = 0; k < 8; ++k) {
                of[i] |= static_cast<std::uint64_t>(std::popcount(i & ((2U << k) - 1))) << 8 * k;
            }
        }
    }
    std::uint64_t of[256] = {};
};
inline constexpr RankTable rankTable;

/// Byte k: how many of the lowest k + 1 bits are set, for k below 16.
class Ranks {
public:
    HWY_INLINE explicit Ranks(std::uint64_t bits)
        : ranks_{rankTable.of[bits & 0xFF], rankTable.of[bits >> 8 & 0xFF] + inEachByte(std::popcount(bits & 0xFF))} {}
    HWY_INLINE const std::uint8_t* bytes() const { return reinterpret_cast<const std::uint8_t*>(ranks_); }

private:
    static HWY_INLINE std::uint64_t inEachByte(int n) { return static_cast<std::uint64_t>(n) * 0x0101010101010101; }

    std::uint64_t ranks_[2];
};

/// Runs are made roots, or take over parents, this many at a time.
inline constexpr std::int32_t spareRuns = 8;

/// The root of a run's tree. Halves the way to it for those who come next.
HWY_INLINE std::int32_t rootOf(std::int32_t* parents, std::int32_t run) {
    for (;;) {
        const std::int32_t parent = parents[run];
        const std::int32_t next = parents[parent];
        if (parent == next) return parent;
        run = parents[run] = next;
    }
}

/// The first run on the way to the root that has its object, or the root itself.
HWY_INLINE std::int32_t rootAbove(const std::int32_t* nodes, std::int32_t run) {
    while (nodes[run] >= 0 && nodes[run] != run) run = nodes[run];
    return run;
}

/// Replaces the parents of a row's runs by ~object, where `objects` have been found in the rows above. Returns how many
/// there are then. No run has a parent in its own row but itself. Runs of the rows above have theirs replaced already,
/// unless no run that counts has been part of their object yet.
HWY_INLINE std::int32_t numberRuns(std::int32_t* nodes, std::int32_t first, std::int32_t end, std::int32_t objects) {
    for (std::int32_t run = first; run < end; ++run) {
        std::int32_t object = nodes[nodes[run]];
        if (object >= 0) {
            std::int32_t& root = nodes[rootAbove(nodes, object)];
            if (root >= 0) root = ~objects++;
            object = root;
        }
        nodes[run] = object;
    }
    return objects;
}

/// Joins the runs of a row to the trees of those that they touch in the row above, or makes them roots. The runs are
/// numbered from `above` and `below` on; of two trees that meet, the smaller root becomes the root of both. There is room
/// for `spareRuns` after the last run.
HWY_INLINE void joinRuns(const std::uint64_t* upper, std::int32_t above, const std::uint64_t* lower, std::int32_t below,
                         std::size_t words, std::int32_t* parents) {
    std::uint64_t upperBefore = 0, lowerBefore = 0;
    for (std::size_t i = 0; i < words; ++i) {
        const std::uint64_t upperStarts = runStarts(upper[i], upperBefore);
        const std::uint64_t lowerStarts = runStarts(lower[i], lowerBefore);
        const std::int32_t uppers = std::popcount(upperStarts), lowers = std::popcount(lowerStarts);
        if (upper[i] == lower[i] && upperStarts == lowerStarts) {
            // The same runs in both rows: each takes over the parent of the one above it.
            for (std::int32_t k = 0; k < lowers; k += spareRuns) {
                std::int32_t some[spareRuns];
                std::memcpy(some, parents + above + k, sizeof some);
                std::memcpy(parents + below + k, some, sizeof some);
            }
        } else {
            for (std::int32_t k = 0; k < lowers; k += spareRuns) {
                for (std::int32_t j = 0; j < spareRuns; ++j) parents[below + k + j] = below + k + j;
            }
            // Each run of bits that both rows have is one pair of runs that touch. The root of a run's tree is known from its
            // last pair; at its first pair it is the run itself, unless that began in a word before.
            const bool goesOn = (lower[i] & lowerBefore >> 63) != 0;
            std::int32_t last = below - 1;
            std::int32_t root = goesOn ? rootOf(parents, last) : -1;
            std::uint64_t pairs = runStarts(upper[i] & lower[i], upperBefore & lowerBefore);
            for (; pairs != 0; pairs &= pairs - 1) {
                const std::uint64_t upToPair = pairs ^ (pairs - 1);
                const std::int32_t a = rootOf(parents, above - 1 + std::popcount(upperStarts & upToPair));
                const std::int32_t run = below - 1 + std::popcount(lowerStarts & upToPair);
                const std::int32_t b = run == last ? root : run;
                last = run;
                root = a < b ? a : b;
                parents[a < b ? b : a] = root;
            }
        }
        above += uppers;
        below += lowers;
        upperBefore = upper[i];
        lowerBefore = lower[i];
    }
}

/// The functions of a level.
struct JoiningRows {
    decltype(countRuns)* count;
    decltype(joinRuns)* join;
    decltype(numberRuns)* number;
};

}  // namespace omnar
