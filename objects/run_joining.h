// SPDX-License-Identifier: MIT
/// @file
/// Counting the runs of rows of bits, and joining those that touch. The functions become part of each level's own,
/// whose processors count bits in one instruction.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

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

/// The root of a run's tree. Halves the way to it for those who come next.
HWY_INLINE std::int32_t rootOf(std::int32_t* parents, std::int32_t run) {
    for (;;) {
        const std::int32_t parent = parents[run];
        const std::int32_t next = parents[parent];
        if (parent == next) return parent;
        run = parents[run] = next;
    }
}

/// Joins the runs of a row to the trees of those that they touch in the row above, or makes them roots. The runs are
/// numbered from `above` and `below` on; of two trees that meet, the smaller root becomes the root of both.
HWY_INLINE void joinRuns(const std::uint64_t* upper, std::int32_t above, const std::uint64_t* lower, std::int32_t below,
                         std::size_t words, std::int32_t* parents) {
    std::uint64_t upperBefore = 0, lowerBefore = 0;
    std::int32_t next = below;  // the first run of the row that is in no tree yet
    for (std::size_t i = 0; i < words; ++i) {
        const std::uint64_t upperStarts = runStarts(upper[i], upperBefore);
        const std::uint64_t lowerStarts = runStarts(lower[i], lowerBefore);
        // Each run of bits that both rows have stands for one pair of runs that touch.
        std::uint64_t pairs = runStarts(upper[i] & lower[i], upperBefore & lowerBefore);
        for (; pairs != 0; pairs &= pairs - 1) {
            const std::uint64_t upToPair = pairs ^ (pairs - 1);
            const std::int32_t a = rootOf(parents, above - 1 + std::popcount(upperStarts & upToPair));
            const std::int32_t run = below - 1 + std::popcount(lowerStarts & upToPair);
            for (; next < run; ++next) parents[next] = next;
            if (next == run) {
                parents[next++] = a;
                continue;
            }
            const std::int32_t b = rootOf(parents, run);
            (a < b ? parents[b] : parents[a]) = a < b ? a : b;
        }
        above += std::popcount(upperStarts);
        below += std::popcount(lowerStarts);
        upperBefore = upper[i];
        lowerBefore = lower[i];
    }
    for (; next < below; ++next) parents[next] = next;
}

/// Both, as a level has them.
struct JoiningRows {
    decltype(countRuns)* count;
    decltype(joinRuns)* join;
};

}  // namespace omnar
