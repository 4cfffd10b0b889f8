// SPDX-License-Identifier: MIT
/// @file
/// Drawing whole frames: the plain walk, which is the law, and its faster twins of every level.
#pragma once

#include "buffers/level.h"
#include "tone/frames/frame.h"

namespace omnar {

/// What becomes of the pixels in the discs.
struct FrameKernels {
    void (*solid)(const Frame& frame);   ///< 255
    void (*clear)(const Frame& frame);   ///< 0, and the centres are those of the ground
    void (*levels)(const Frame& frame);  ///< at least the centre's level
    void (*soft)(const Frame& frame);    ///< at least a level that falls with the distance from the centre
};

/// What a soft frame draws at a distance from a centre: its level at 1, less farther out. At 0 it may exceed a byte, of
/// which the low 8 bits count. Products wrap at 32 bits, which tables of other distances may bring about.
inline L08 softened(L08 level, int distance, std::uint32_t reach) {
    const std::uint32_t share = reach + 1 - static_cast<std::uint32_t>(distance);
    return static_cast<L08>(static_cast<int>(share * level) / static_cast<int>(reach));
}

/// The widest reach whose rows the vector kernels have room for.
inline constexpr std::uint32_t widestReach = 2000;

extern const FrameKernels plainFrames;
extern const Levels<FrameKernels> frameKernels;

/// The kernels that give what the plain walk gives: the level's own where nothing that is read is written. The walk itself
/// is for all else, as centres may be drawn over.
inline const FrameKernels& kernelsFor(const Frame& frame) {
    return frame.disc.reach <= widestReach && frame.separate() ? frameKernels.current() : plainFrames;
}

}  // namespace omnar
