// SPDX-License-Identifier: MIT
/// @file
/// Union-find over the runs of rows of bits. The functions are inlined into the kernels of each vector level.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "hwy/base.h"
#include "objects/bit_runs.h"

namespace omnar {

/// Runs that are initialised or copied at once.
inline constexpr std::int32_t spareRuns = 8;

/// The root of a run's tree. Halves the path to it.
HWY_INLINE std::int32_t findRoot(std::int32_t* parents, std::int32_t run) {
    for (;;) {
        const std::int32_t parent = parents[run];
        const std::int32_t next = parents[parent];
        if (parent == next) return parent;
        run = parents[run] = next;
    }
}

/// The first run on the path to the root that holds its object's number, or the root.
HWY_INLINE std::int32_t findNumbered(const std::int32_t* nodes, std::int32_t run) {
    while (nodes[run] >= 0 && nodes[run] != run) run = nodes[run];
    return run;
}

/// Replaces the parents of runs `first` to `end` - 1, all of one row, by ~object. `objects` is the number of objects in
/// the rows above; returns the number after this row. No run has a parent in its own row but itself. The runs above are
/// numbered, except those of objects that no scanned run has been part of.
HWY_INLINE std::int32_t numberRuns(std::int32_t* nodes, std::int32_t first, std::int32_t end, std::int32_t objects) {
    for (std::int32_t run = first; run < end; ++run) {
        std::int32_t object = nodes[nodes[run]];
        if (object >= 0) {
            std::int32_t& root = nodes[findNumbered(nodes, object)];
            if (root >= 0) root = ~objects++;
            object = root;
        }
        nodes[run] = object;
    }
    return objects;
}

/// Joins the runs of a row to the trees of the runs that they touch in the row above, or makes them roots. `above` and
/// `below` are the numbers of the rows' first runs. Of two trees that meet, the smaller root becomes the root of both.
/// `parents` has room for `spareRuns` after the last run.
HWY_INLINE void joinRuns(const std::uint64_t* upper, std::int32_t above, const std::uint64_t* lower, std::int32_t below,
                         std::size_t words, std::int32_t* parents) {
    std::uint64_t upperBefore = 0, lowerBefore = 0;
    for (std::size_t i = 0; i < words; ++i) {
        const std::uint64_t upperStarts = runStarts(upper[i], upperBefore);
        const std::uint64_t lowerStarts = runStarts(lower[i], lowerBefore);
        const std::int32_t uppers = std::popcount(upperStarts), lowers = std::popcount(lowerStarts);
        if (upper[i] == lower[i] && upperStarts == lowerStarts) {
            // Both rows have the same runs: each takes the parent of the one above it.
            for (std::int32_t k = 0; k < lowers; k += spareRuns) {
                std::int32_t copied[spareRuns];
                std::memcpy(copied, parents + above + k, sizeof copied);
                std::memcpy(parents + below + k, copied, sizeof copied);
            }
        } else {
            for (std::int32_t k = 0; k < lowers; k += spareRuns) {
                for (std::int32_t j = 0; j < spareRuns; ++j) parents[below + k + j] = below + k + j;
            }
            // Each run of the rows' common bits is a pair of runs that touch. The root of a run is known from its
            // previous pair; at its first pair it is the run itself, unless the run began in an earlier word.
            const bool continues = (lower[i] & lowerBefore >> 63) != 0;
            std::int32_t previous = below - 1;
            std::int32_t root = continues ? findRoot(parents, previous) : -1;
            std::uint64_t pairs = runStarts(upper[i] & lower[i], upperBefore & lowerBefore);
            for (; pairs != 0; pairs &= pairs - 1) {
                const std::uint64_t upToPair = pairs ^ (pairs - 1);
                const std::int32_t a = findRoot(parents, above - 1 + std::popcount(upperStarts & upToPair));
                const std::int32_t run = below - 1 + std::popcount(lowerStarts & upToPair);
                const std::int32_t b = run == previous ? root : run;
                previous = run;
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

}  // namespace omnar
