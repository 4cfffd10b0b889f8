// SPDX-License-Identifier: MIT

// Frames that draw one value wherever a disc covers, compiled once for every level.
#if defined(OMNAR_TONE_FRAME_COVER_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAME_COVER_INL_H_
#undef OMNAR_TONE_FRAME_COVER_INL_H_
#else
#define OMNAR_TONE_FRAME_COVER_INL_H_
#endif

#include <bit>

#include "tone/frame_distances-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// What is drawn: a level that pixels are raised to, or nothing at all.
struct Raised {
    L08 level;

    HWY_INLINE V8 operator()(V8 old, M8 covered) const {
        return hn::Max(old, hn::IfThenElseZero(covered, hn::Set(D8(), level)));
    }
};
struct Cleared {
    HWY_INLINE V8 operator()(V8 old, M8 covered) const { return hn::IfThenZeroElse(covered, old); }
};

/// Of the discs that meet a row, the one with the nearest centre is the widest in each column. So a column covers as
/// far as that disc's half width to either side, and what a pixel has left of it is
///
///     max over k of (half width + 1 of the column k pixels away) - |k|        (covered if above 0)
///
/// which takes the steps 1, 2, 4, ... for k: their sums, with either sign, are all k up to the reach, and the detours
/// among them cost more than they reach.
template <class Drawn, class T>
class CoverRow {
    using D = hn::ScalableTag<T>;

public:
    CoverRow(const Disc& disc, Drawn drawn) : drawn_(drawn), reach_(disc.reach), lastStep_(std::bit_floor(reach_)) {
        const HalfWidths halfWidths(disc);
        for (size_t dy = 0; dy <= reach_; ++dy) widths_[dy] = static_cast<T>(halfWidths.of[dy] + 1);
    }

    HWY_INLINE void operator()(L08* out, const T* distances, const T*, size_t cols) {
        writeWidths(distances, cols + 2 * reach_);
        size_t from = 0;
        for (size_t step = 1; step < lastStep_; step *= 2, from ^= 1) {
            for (size_t i = 0; i < cols + 2 * reach_; i += hn::MaxLanes(D())) {
                hn::StoreU(spread(left_[from] + kBefore + i, step), D(), left_[from ^ 1] + kBefore + i);
            }
        }
        const T* const own = left_[from] + kBefore + reach_;
        eachBlock(cols, [=, this](size_t i, auto part) HWY_ATTR {
            const D8 d;
            const M8 covered = hn::Ne(spreadBytes(own + i, lastStep_), hn::Zero(d));
            if (hn::AllFalse(d, covered)) return;
            storeVector(d, out + i, part, drawn_(loadVector(d, out + i, part), covered));
        });
    }

private:
    static constexpr size_t kBefore = kRoomOf<T>;

    static HWY_INLINE hn::Vec<D> spread(const T* width, size_t step) {
        const D d;
        const auto neighbours = hn::Max(hn::LoadU(d, width - step), hn::LoadU(d, width + step));
        return hn::Max(hn::LoadU(d, width), hn::SaturatedSub(neighbours, hn::Set(d, static_cast<T>(step))));
    }

    /// A block of bytes that are 0 where the widths are.
    static HWY_INLINE V8 spreadBytes(const uint8_t* width, size_t step) { return spread(width, step); }
    static HWY_INLINE V8 spreadBytes(const uint16_t* width, size_t step) {
        const V16 most = hn::Set(D16(), 255);
        const V16 first = hn::Min(spread(width, step), most), second = hn::Min(spread(width + kBlock8 / 2, step), most);
        return hn::ConcatEven(D8(), bytes(second), bytes(first));
    }

    /// Looks the distances up, sixteen widths at a time: an index whose highest bit is set gives 0.
    HWY_INLINE void writeWidths(const uint8_t* distances, size_t n) {
        const D8 d;
        for (size_t i = 0; i < n; i += kBlock8) {
            const V8 distance = hn::LoadU(d, distances + i);
            V8 width = hn::Zero(d);
            for (size_t first = 0; first <= reach_; first += 16) {
                const V8 index = hn::Sub(distance, hn::Set(d, static_cast<uint8_t>(first)));
                const V8 inTable = hn::And(hn::SaturatedAdd(index, hn::Set(d, 0x70)), hn::Set(d, 0x8F));
                width = hn::Or(width, hn::TableLookupBytesOr0(hn::LoadDup128(d, widths_ + first), inTable));
            }
            hn::StoreU(width, d, left_[0] + kBefore + i);
        }
    }
    HWY_INLINE void writeWidths(const uint16_t* distances, size_t n) {
        for (size_t i = 0; i < n; ++i) {
            left_[0][kBefore + i] = widths_[std::min<size_t>(distances[i], widestReach + 1)];
        }
    }

    const Drawn drawn_;
    const size_t reach_;
    const size_t lastStep_;
    // Half widths + 1 by distance, 0 beyond the reach.
    alignas(16) T widths_[sizeof(T) == 1 ? 256 : widestReach + 2] = {};
    // What is left of the widths, before and after a step.
    T left_[2][kBefore + kMostEntries<T> + 2 * kBefore] = {};
};

/// A function of its own, as all that have scratch: together they would take more stack than each.
template <bool ofShape, class T, class Drawn>
HWY_NOINLINE void coverIn(const Frame& frame, Drawn drawn) {
    CoverRow<Drawn, T> row(frame.disc, drawn);
    DistanceWalk<ofShape, T>(frame).draw(row);
}

template <bool ofShape, class Drawn>
HWY_INLINE void cover(const Frame& frame, Drawn drawn) {
    frame.disc.reach <= kWidestInBytes ? coverIn<ofShape, uint8_t>(frame, drawn)
                                       : coverIn<ofShape, uint16_t>(frame, drawn);
}

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
