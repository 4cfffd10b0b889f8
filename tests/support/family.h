/// @file
/// What every family of raster functions is put through, at every level.
#pragma once

#include <gtest/gtest.h>

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

/// Calls `test(random, seed)` for many seeds, or for the one in the environment.
template <class Generator = Random, class Test>
void forSeeds(std::uint64_t count, Test&& test) {
    const char* const only = std::getenv("OMNAR_SEED");
    const std::uint64_t begin = only != nullptr ? std::strtoull(only, nullptr, 10) : 1;
    for (std::uint64_t seed = begin; seed < (only != nullptr ? begin + 1 : begin + count); ++seed) {
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

}  // namespace support
