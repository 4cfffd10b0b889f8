// SPDX-License-Identifier: MIT

// The frame kernels. This file is compiled once per vector level.
#include "tone/frames/kernels.h"

#include "tone/frames/reference.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tone/frames/kernels.cpp"
#include "buffers/foreach_level.h"
#include "tone/frames/cover-inl.h"
#include "tone/frames/gather-inl.h"
#include "tone/frames/narrow-inl.h"
#include "tone/frames/soft-inl.h"
#include "tone/frames/stamp-inl.h"
#include "tone/frames/values-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// Hard frames of discs that are not round, by the reference where their rows exceed the scratch.
template <HardMode mode>
void drawNonRound(const Frame& frame, void (*plain)(const Frame&)) {
    using Walk = RoundWalk<NonRoundDiscs, mode>;
    frame.disc.radius != 0 && Walk::fits(frame.disc.radius) ? drawWith<Walk>(frame) : plain(frame);
}

void solid(const Frame& frame) {
    if (!frame.disc.isRound()) return drawNonRound<HardMode::solid>(frame, referenceFrames.solid);
    frame.disc.radius <= 1 ? drawNarrow<HardMode::solid>(frame) : cover<true>(frame, RaiseTo{255});
}

void erase(const Frame& frame) {
    if (!frame.disc.isRound()) return drawNonRound<HardMode::erase>(frame, referenceFrames.erase);
    frame.disc.radius <= 1 ? drawNarrow<HardMode::erase>(frame) : cover<false>(frame, Erase());
}

void values(const Frame& frame) {
    if (!frame.disc.isRound()) return drawNonRound<HardMode::values>(frame, referenceFrames.values);
    if (frame.disc.radius <= 1) return drawNarrow<HardMode::values>(frame);
    const ValueRange range = valueRangeOf(frame);
    if (range.isOneValue()) return cover<true>(frame, RaiseTo{range.least});
    if (range.least > range.greatest) return;
    using Walk = RoundWalk<ValueDiscs, HardMode::values>;
    Walk::fits(frame.disc.radius) ? drawWith<Walk>(frame) : drawWith<WideValueWalk>(frame);
}

/// DistanceWalk draws pixels whose nearest centre is at most kMaxDistanceRadius away, most of all pixels. GatherWalk
/// draws the others.
void softOfOneValue(const Frame& frame, L08 value) {
    const uint32_t near = std::min(frame.disc.radius, kMaxDistanceRadius);
    drawNearest(frame, near, value);
    if (near < frame.disc.radius)
        drawWith<GatherWalk<NearestOfOneValue>>(frame, NearestOfOneValue(frame.disc, near, value));
}

void soft(const Frame& frame) {
    if (!frame.disc.isEuclidean()) {
        if (!Shares::fit(frame.disc)) return referenceFrames.soft(frame);
        drawStamps(frame, true);
        return drawStamps(frame, false);
    }
    const ValueRange range = valueRangeOf(frame);
    if (range.isOneValue()) return softOfOneValue(frame, range.least);
    if (range.least > range.greatest) return;
    if (frame.disc.radius <= SoftDiscs::kMaxRadius) return drawWith<RoundWalk<SoftDiscs, HardMode::values>>(frame);
    if (frame.disc.radius <= Shares::kMaxRadius) return drawStamps(frame);
    drawWith<GatherWalk<GreatestShare>>(frame, GreatestShare(frame.disc));
}

extern constexpr FrameKernels frameKernelTable{solid, erase, values, soft};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {

constinit const FrameKernels referenceFrames{ReferenceFrames::solid, ReferenceFrames::erase, ReferenceFrames::values,
                                             ReferenceFrames::soft};
constinit const Levels<FrameKernels> frameKernels{&referenceFrames OMNAR_VECTOR_TABLES(frameKernelTable)};

}  // namespace omnar
#endif
