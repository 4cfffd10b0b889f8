// SPDX-License-Identifier: MIT
/// @file
/// What every family of raster functions is put through, at every level.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "buffers/level.h"
#include "tests/support/member.h"
#include "tests/support/random.h"

namespace omnar {

/// The name by which GoogleTest tells of a level.
inline void PrintTo(Level level, std::ostream* stream) { *stream << name(level); }

}  // namespace omnar

namespace support {

/// Makes a level run for as long as it lives, and fails the test if another one does. `runs()` is false if this
/// processor or build lacks the level; the test then says so and stops.
class ForcedLevel {
public:
    explicit ForcedLevel(omnar::Level level);
    ~ForcedLevel();
    ForcedLevel(const ForcedLevel&) = delete;
    ForcedLevel& operator=(const ForcedLevel&) = delete;

    bool runs() const { return runs_; }

private:
    omnar::Level before_;
    omnar::Level wanted_;
    bool runs_;
};

/// A number in the environment, 0 if it is not there.
inline std::uint64_t fromEnvironment(const char* name) {
    const char* const text = std::getenv(name);
    return text == nullptr ? 0 : std::strtoull(text, nullptr, 10);
}

/// Calls `test(random, seed)` for many seeds: for every n-th if OMNAR_SAMPLE is n, or for OMNAR_SEED alone.
template <class Generator = Random, class Test>
void forSeeds(std::uint64_t count, Test&& test) {
    const std::uint64_t only = fromEnvironment("OMNAR_SEED");
    const std::uint64_t step = std::max<std::uint64_t>(fromEnvironment("OMNAR_SAMPLE"), 1);
    for (std::uint64_t seed = only != 0 ? only : 1; seed <= (only != 0 ? only : count); seed += step) {
        Generator random(seed);
        test(random, seed);
        if (testing::Test::HasFailure()) return;
    }
}

/// Compares the member with its model on hostile buffers: every width from 0 to two blocks and three, skewed starts,
/// corners on the edges, buffers that end or start at forbidden memory.
void checkApart(const Member& member);

/// The same for buffers that share memory, in all ways that differ.
void checkOverlapping(const Member& member);

/// One number for what the member does to a fixed stream of calls.
std::uint64_t checksum(const Member& member);

/// Compares that number with the one in tests/checksums.inc, which is the same for all levels, compilers and platforms.
void checkChecksum(const Member& member);

}  // namespace support
