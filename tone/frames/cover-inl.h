// SPDX-License-Identifier: MIT

// Frames that draw one value on every covered pixel. Compiled once per vector level.
#if defined(OMNAR_TONE_FRAMES_COVER_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAMES_COVER_INL_H_
#undef OMNAR_TONE_FRAMES_COVER_INL_H_
#else
#define OMNAR_TONE_FRAMES_COVER_INL_H_
#endif

#include <bit>

#include "tone/frames/distances-inl.h"
#include "tone/frames/sweep-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// For larger radii SweepWalk is faster.
constexpr uint32_t kMaxCoverRadius = 192;

/// Of the discs that meet a row, the one with the nearest centre is the widest in each column. A column therefore
/// covers pixels up to that disc's half width away, and a pixel is covered if this maximum is above 0:
///
///     max over k of (half width + 1 of the column k pixels away) - |k|
///
/// It is computed in steps of 1, 2, 4, ...: every k up to the radius is a sum of steps with either sign, and a sum with
/// a detour subtracts more than |k|.
template <class Drawn>
class CoverRow {
public:
    CoverRow(const Disc& disc, Drawn drawn) : drawn_(drawn), radius_(disc.radius), lastStep_(std::bit_floor(radius_)) {
        eachHalfWidth(disc, [this](size_t dy, size_t dx) { widths_[dy] = static_cast<L08>(dx + 1); });
    }

    /// Half widths + 1, looked up sixteen distances at a time. An index whose highest bit is set gives 0.
    HWY_INLINE V8 entries(const Columns& columns) const {
        const D8 d;
        const V8 distances = columns.distances();
        V8 width = hn::Zero(d);
        if (hn::AllTrue(d, hn::Gt(distances, hn::Set(d, static_cast<uint8_t>(radius_))))) return width;
        for (size_t first = 0; first <= radius_; first += 16) {
            const V8 index = hn::Sub(distances, hn::Set(d, static_cast<uint8_t>(first)));
            const V8 inTable = hn::And(hn::SaturatedAdd(index, hn::Set(d, 0x70)), hn::Set(d, 0x8F));
            width = hn::Or(width, hn::TableLookupBytesOr0(hn::LoadDup128(d, widths_ + first), inTable));
        }
        return width;
    }

    HWY_INLINE void draw(L08* out, L08* widths, const L08*, size_t, L08* spare, size_t cols, ptrdiff_t ahead) const {
        for (size_t step = 1; step < lastStep_; step *= 2, std::swap(widths, spare)) {
            for (size_t i = 0; i < cols + 2 * radius_; i += kBlock8) {
                hn::StoreU(spread(widths + i, step), D8(), spare + i);
            }
        }
        eachBlock(cols, [=, own = widths + radius_, this](size_t i, auto part) HWY_ATTR {
            const D8 d;
            const M8 covered = hn::Ne(spread(own + i, lastStep_), hn::Zero(d));
            if (hn::AllFalse(d, covered)) return;
            hwy::Prefetch(out + ahead + i);
            storeVector(d, out + i, part, drawn_(loadVector(d, out + i, part), covered));
        });
    }

private:
    static HWY_INLINE V8 spread(const L08* width, size_t step) {
        const D8 d;
        const V8 neighbours = hn::Max(hn::LoadU(d, width - step), hn::LoadU(d, width + step));
        return hn::Max(hn::LoadU(d, width), hn::SaturatedSub(neighbours, hn::Set(d, static_cast<uint8_t>(step))));
    }

    const Drawn drawn_;
    const size_t radius_;
    const size_t lastStep_;
    alignas(16) L08 widths_[kMaxCoverRadius + 16] = {};  // half widths + 1 by distance, 0 beyond the radius
};

template <bool centresInShape, class Drawn>
HWY_INLINE void cover(const Frame& frame, Drawn drawn) {
    if (frame.disc.radius <= kMaxCoverRadius) {
        CoverRow<Drawn> row(frame.disc, drawn);
        drawWith<DistanceWalk<centresInShape, CoverRow<Drawn>>>(frame, row);
    } else {
        drawWith<SweepWalk<centresInShape, Drawn>>(frame, drawn);
    }
}

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
