// SPDX-License-Identifier: MIT

// The kernels of frames at every level. This file is compiled once for each vector level.
#include "tone/frame_kernels.h"

#include "tone/frame_walk.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tone/frame_kernels.cpp"
#include "buffers/foreach_level.h"
#include "tone/frame_cover-inl.h"
#include "tone/frame_levels-inl.h"
#include "tone/frame_narrow-inl.h"
#include "tone/frame_soft-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

template <class Walk>
HWY_NOINLINE void drawBy(const Frame& frame) {
    Walk(frame).draw();
}

void solid(const Frame& frame) {
    frame.disc.reach == 1 ? drawBy<NarrowWalk<Narrow::solid>>(frame) : cover<true>(frame, Raised{255});
}

void clear(const Frame& frame) {
    frame.disc.reach == 1 ? drawBy<NarrowWalk<Narrow::clear>>(frame) : cover<false>(frame, Cleared());
}

void levels(const Frame& frame) {
    if (frame.disc.reach == 1) return drawBy<NarrowWalk<Narrow::levels>>(frame);
    const LevelRange range = levelsOf(frame);
    if (range.oneLevel()) return cover<true>(frame, Raised{range.least});
    if (range.least > range.greatest) return;
    LevelWalk::fits(frame.disc.reach) ? drawBy<LevelWalk>(frame) : drawBy<WideLevelWalk>(frame);
}

template <class T>
HWY_NOINLINE void softOfOneLevel(const Frame& frame, L08 level) {
    SoftRow<T> row(frame.disc, level);
    DistanceWalk<true, T>(frame).draw(row);
}

void soft(const Frame& frame) {
    const bool inBytes = frame.disc.reach <= kWidestInBytes;
    const LevelRange range = levelsOf(frame);
    if (range.oneLevel()) {
        inBytes ? softOfOneLevel<uint8_t>(frame, range.least) : softOfOneLevel<uint16_t>(frame, range.least);
    } else if (range.least < range.greatest) {
        inBytes ? drawBy<SoftStamp>(frame) : drawBy<WideSoftStamp>(frame);
    }
}

extern constexpr FrameKernels frameKernelTable{solid, clear, levels, soft};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {

constinit const FrameKernels plainFrames{PlainWalk::solid, PlainWalk::clear, PlainWalk::levels, PlainWalk::soft};
constinit const Levels<FrameKernels> frameKernels{&plainFrames OMNAR_VECTOR_TABLES(frameKernelTable)};

}  // namespace omnar
#endif
