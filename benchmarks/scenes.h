// SPDX-License-Identifier: MIT
/// @file
/// The data that members are measured on, and the check of their results.
#pragma once

#include <array>
#include <memory>
#include <span>
#include <vector>

#include "benchmarks/contest.h"
#include "benchmarks/pass.h"
#include "benchmarks/peers/peer.h"
#include "tests/support/member.h"

namespace bench {

enum class Alpha { random, shapes };

/// Size, data and opacity of a call.
struct Scene {
    const char* name;
    std::uint32_t side = 0;      ///< of a square region at an odd corner of larger buffers; 0: the region is the buffer
    std::size_t workingSet = 0;  ///< bytes of all buffers together, if `side` is 0
    Alpha alpha;
    std::uint8_t opacity;
    Runs runs;
    bool throughLut = false;  ///< with a look-up table for the alpha plane; only for members that take one
};
std::span<const Scene> scenes();

/// The scene with at most 64 KiB, for checks of the result.
Scene smallest(const Scene& scene);

/// Bytes at a given offset in a page. Buffers have different offsets, since a load waits for an older store if the low 12
/// bits of their addresses are equal.
class PlacedBytes {
public:
    PlacedBytes() = default;
    /// `size` bytes, filled with repetitions of `pattern`.
    PlacedBytes(std::span<const std::byte> pattern, std::size_t size, std::size_t offsetInPage);
    std::span<std::byte> bytes() { return std::span(memory_).subspan(start_, size_); }

private:
    std::vector<std::byte> memory_;
    std::size_t start_ = 0, size_ = 0;
};

/// A call that owns its buffers.
struct Stage {
    PlacedBytes src, alpha, dst;
    std::array<std::uint8_t, 256> lut, table;
    support::Call call;
    std::size_t pixels;  ///< of the region
};
std::unique_ptr<Stage> stageOf(const support::Member& member, const Scene& scene);

/// The pass over the bytes of a stage's region.
Pass passOver(const support::Member& member, const Stage& stage);

/// True if the member, or the peer if that is not null, changes a small stage as the model does.
bool verify(const support::Member& member, const Scene& scene, const Peer* peer);

}  // namespace bench
