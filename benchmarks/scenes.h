// SPDX-License-Identifier: MIT
/// @file
/// What the members are measured on, and whether what they give is right.
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

/// How large, which data, which opacity.
struct Scene {
    const char* name;
    std::uint32_t side;      ///< of a square region at an odd corner of larger buffers; 0: whole buffers
    std::size_t workingSet;  ///< bytes of whole buffers together
    Alpha alpha;
    std::uint8_t opacity;
    In in;
    bool throughLut = false;  ///< alpha goes through a look-up table, where the member takes one
};
std::span<const Scene> scenes();

/// The same scene, just large enough to show what is right.
Scene smallest(const Scene& scene);

/// Bytes from a given offset in a page on. Buffers at equal offsets would slow each other down: a load waits for an older
/// store if the low 12 bits of their addresses agree.
class PlacedBytes {
public:
    PlacedBytes() = default;
    /// `size` bytes that repeat the pattern.
    PlacedBytes(std::span<const std::byte> pattern, std::size_t size, std::size_t offsetInPage);
    std::span<std::byte> bytes() { return std::span(memory_).subspan(start_, size_); }

private:
    std::vector<std::byte> memory_;
    std::size_t start_ = 0, size_ = 0;
};

/// A call on memory of its own.
struct Stage {
    PlacedBytes src, alpha, dst;
    std::array<std::uint8_t, 256> lut, table;
    support::Call call;
    std::size_t pixels;  ///< of the region
};
std::unique_ptr<Stage> stageOf(const support::Member& member, const Scene& scene);

/// The pass over the bytes of a stage's region.
Pass passOver(const support::Member& member, const Stage& stage);

/// True if the member (peer null), or the peer, does to a small stage what the model does.
bool verify(const support::Member& member, const Scene& scene, const Peer* peer);

}  // namespace bench
