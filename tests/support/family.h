// SPDX-License-Identifier: MIT
/// @file
/// The checks of every family of raster functions, at every vector level.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "buffers/level.h"
#include "tests/support/member.h"
#include "tests/support/random.h"

namespace omnar {

/// The name of a vector level in GoogleTest's messages.
inline void PrintTo(Level level, std::ostream* stream) { *stream << name(level); }

}  // namespace omnar

namespace support {

/// Forces a vector level during its lifetime; its destructor fails the test if another level is current. `runs()` is false
/// if this processor or build lacks the level.
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

/// The number in an environment variable; 0 if it is not set.
inline std::uint64_t environmentNumber(const char* name) {
    const char* const text = std::getenv(name);
    return text == nullptr ? 0 : std::strtoull(text, nullptr, 10);
}

/// Calls `test(random, seed)` for the seeds 1 to count: every n-th if OMNAR_SAMPLE is n, only OMNAR_SEED if that is set.
/// Stops at the first failure.
template <class Generator = Random, class Test>
void forSeeds(std::uint64_t count, Test&& test) {
    const std::uint64_t only = environmentNumber("OMNAR_SEED");
    const std::uint64_t step = std::max<std::uint64_t>(environmentNumber("OMNAR_SAMPLE"), 1);
    for (std::uint64_t seed = only != 0 ? only : 1; seed <= (only != 0 ? only : count); seed += step) {
        Generator random(seed);
        test(random, seed);
        if (testing::Test::HasFailure()) return;
    }
}

/// Compares the member with its model on separate buffers: every width from 0 to two of the widest blocks plus 3,
/// unaligned starts, corners on the edges, buffers that start or end at a fence.
void checkApart(const Member& member);

/// Compares the member with its model on overlapping buffers.
void checkOverlapping(const Member& member);

/// The checksum of the pixels that the member writes in a fixed sequence of calls.
std::uint64_t checksum(const Member& member);

/// Compares it with the one in tests/checksums.inc, which holds for every vector level, compiler and platform.
void checkChecksum(const Member& member);

}  // namespace support
