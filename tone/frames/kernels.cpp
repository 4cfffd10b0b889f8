// SPDX-License-Identifier: MIT

// The kernels of frames at every level. This file is compiled once for each vector level.
#include "tone/frames/kernels.h"

#include "tone/frames/walk.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tone/frames/kernels.cpp"
#include "buffers/foreach_level.h"
#include "tone/frames/cover-inl.h"
#include "tone/frames/gather-inl.h"
#include "tone/frames/levels-inl.h"
#include "tone/frames/narrow-inl.h"
#include "tone/frames/soft-inl.h"
#include "tone/frames/stamp-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// Hard frames of discs that are not round, as far as there is room for their rows.
template <Hard kind>
void drawOther(const Frame& frame, void (*plain)(const Frame&)) {
    using Walk = RoundWalk<OtherDiscs, kind>;
    frame.disc.reach != 0 && Walk::fits(frame.disc.reach) ? drawBy<Walk>(frame) : plain(frame);
}

void solid(const Frame& frame) {
    if (!frame.disc.isRound()) return drawOther<Hard::solid>(frame, plainFrames.solid);
    frame.disc.reach <= 1 ? drawNarrow<Hard::solid>(frame) : cover<true>(frame, Raised{255});
}

void clear(const Frame& frame) {
    if (!frame.disc.isRound()) return drawOther<Hard::clear>(frame, plainFrames.clear);
    frame.disc.reach <= 1 ? drawNarrow<Hard::clear>(frame) : cover<false>(frame, Cleared());
}

void levels(const Frame& frame) {
    if (!frame.disc.isRound()) return drawOther<Hard::levels>(frame, plainFrames.levels);
    if (frame.disc.reach <= 1) return drawNarrow<Hard::levels>(frame);
    const LevelRange range = levelsOf(frame);
    if (range.oneLevel()) return cover<true>(frame, Raised{range.least});
    if (range.least > range.greatest) return;
    using Walk = RoundWalk<LevelDiscs, Hard::levels>;
    Walk::fits(frame.disc.reach) ? drawBy<Walk>(frame) : drawBy<WideLevelWalk>(frame);
}

/// Most pixels have a near centre, which is found fast in any case. The others, if there are any, are gathered.
void softOfOneLevel(const Frame& frame, L08 level) {
    const uint32_t near = std::min(frame.disc.reach, kWidestByDistances);
    drawNearest(frame, near, level);
    if (near < frame.disc.reach)
        drawBy<GatherWalk<NearestOfOneLevel>>(frame, NearestOfOneLevel(frame.disc, near, level));
}

void soft(const Frame& frame) {
    if (!frame.disc.isExact()) {
        if (!Shares::fit(frame.disc)) return plainFrames.soft(frame);
        drawStamps(frame, true);
        return drawStamps(frame, false);
    }
    const LevelRange range = levelsOf(frame);
    if (range.oneLevel()) return softOfOneLevel(frame, range.least);
    if (range.least > range.greatest) return;
    if (frame.disc.reach <= SoftDiscs::kMostReach) return drawBy<RoundWalk<SoftDiscs, Hard::levels>>(frame);
    if (frame.disc.reach <= Shares::kMostReach) return drawStamps(frame);
    drawBy<GatherWalk<GreatestShare>>(frame, GreatestShare(frame.disc));
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
