// SPDX-License-Identifier: MIT
/// @file
/// Kernels that draw a frame: the reference, and vector kernels for each vector level.
#pragma once

#include "buffers/level.h"
#include "tone/frames/frame.h"

namespace omnar {

/// What each kernel does to the pixels of the discs.
struct FrameKernels {
    void (*solid)(const Frame& frame);   ///< becomes 255
    void (*erase)(const Frame& frame);   ///< becomes 0; the centres are edge pixels of the ground
    void (*values)(const Frame& frame);  ///< becomes at least the centre's value
    void (*soft)(const Frame& frame);    ///< becomes at least a value that falls with the distance from the centre
};

/// The value that a soft frame draws at a distance from a centre: the centre's value at distance 1, and less farther
/// out. At distance 0 the result may exceed 255; its low 8 bits count. With arbitrary tables the product wraps at 32
/// bits.
inline L08 softened(L08 value, int distance, std::uint32_t radius) {
    const std::uint32_t share = radius + 1 - static_cast<std::uint32_t>(distance);
    return static_cast<L08>(static_cast<int>(share * value) / static_cast<int>(radius));
}

/// The greatest radius for which the vector kernels have scratch.
inline constexpr std::uint32_t maxVectorRadius = 2000;

extern const FrameKernels referenceFrames;
extern const Levels<FrameKernels> frameKernels;

/// The current vector level's kernels if the radius is at most maxVectorRadius and nothing read is written. Otherwise
/// the reference, since centres may be overwritten before they are read.
inline const FrameKernels& kernelsFor(const Frame& frame) {
    return frame.disc.radius <= maxVectorRadius && frame.isDisjoint() ? frameKernels.current() : referenceFrames;
}

}  // namespace omnar
