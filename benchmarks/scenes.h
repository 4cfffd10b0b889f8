// SPDX-License-Identifier: MIT
/// @file
/// What the members are measured on, and whether what they give is right.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/peers/peer.h"
#include "tests/support/member.h"

namespace bench {

enum class Alpha { random, shapes };

/// How large, which data, which opacity.
struct Scene {
    const char* name;
    std::size_t workingSet;  ///< bytes of all buffers together; 0 stands for 40 x 40 pixels at an odd corner
    Alpha alpha;
    std::uint8_t opacity;
};
std::span<const Scene> scenes();

/// The same scene, just large enough to show what is right.
Scene smallest(const Scene& scene);

/// A call on memory of its own.
struct Stage {
    std::vector<std::byte> src, alpha, dst;
    std::array<std::uint8_t, 256> table;
    support::Call call;
};
std::unique_ptr<Stage> stageOf(const support::Member& member, const Scene& scene);

/// Bytes that one pixel reads and writes.
std::size_t trafficOf(const support::Member& member);

/// Empty if the member (peer null), or the peer, does to a small stage what the model does; else what is wrong.
std::string verify(const support::Member& member, const Scene& scene, const Peer* peer);

}  // namespace bench
