// SPDX-License-Identifier: MIT

// Where the centres of a frame are, compiled once for every level.
#if defined(OMNAR_TONE_FRAME_CENTRES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAME_CENTRES_INL_H_
#undef OMNAR_TONE_FRAME_CENTRES_INL_H_
#else
#define OMNAR_TONE_FRAME_CENTRES_INL_H_
#endif

#include <algorithm>
#include <cstring>

#include "buffers/blocks-inl.h"
#include "tone/frame_kernels.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

using M8 = hn::Mask<D8>;

constexpr size_t kBlock8 = hn::MaxLanes(D8());

// Widths, distances and levels are held in bytes as far as these go, in 16 bits where a frame is wider.
constexpr uint32_t kWidestInBytes = 254;

// Rows of scratch are walked in whole vectors. Those need less room than this behind the last entry, and the widest
// step along a row needs no more than this at either end.
template <class T>
constexpr size_t kRoomOf = sizeof(T) == 1 ? 128 : 512;
constexpr size_t kRoom = kRoomOf<L08>;

/// step(i, part) for each block of n pixels, the last of which may be a part of one.
template <class Step>
HWY_INLINE void eachBlock(size_t n, Step step) {
    size_t i = 0;
    for (; i + kBlock8 <= n; i += kBlock8) step(i, All());
    if (i < n) step(i, First{n - i});
}

/// Which of the pixels from `pixel` on are centres.
template <bool ofShape>
HWY_INLINE M8 centresAt(const L08* pixel, ptrdiff_t pitch, auto part) {
    const D8 d;
    const V8 none = hn::Zero(d);
    const M8 isGround = hn::Eq(loadVector(d, pixel, part), none);
    const V8 left = loadVector(d, pixel - 1, part), right = loadVector(d, pixel + 1, part);
    const V8 above = loadVector(d, pixel - pitch, part), below = loadVector(d, pixel + pitch, part);
    if constexpr (ofShape) {
        return hn::AndNot(isGround, hn::Eq(hn::Min(hn::Min(left, right), hn::Min(above, below)), none));
    } else {
        return hn::AndNot(hn::Eq(hn::Max(hn::Max(left, right), hn::Max(above, below)), none), isGround);
    }
}

/// The centres whose discs may reach into pixels left to left + cols - 1 of the target. A row of scratch has an entry
/// for each pixel of the tile and for a reach to either side: pixel x is entry x + reach, and so is a centre there.
struct Entries {
    size_t first;   // entry of the first centre
    size_t count;   // of centres
    size_t column;  // of the first centre in the frame
};

HWY_INLINE Entries entriesOf(const Frame& frame, size_t left, size_t cols) {
    const size_t sides = 2 * size_t{frame.disc.reach};
    const size_t first = std::max(left, sides) - left;
    const size_t end = std::min(left + cols, frame.centres.cols) + sides - left;
    return {first, end - first, left + first - sides};
}

/// step(i, part, which) for the centres of row j, columns first to first + n - 1.
template <bool ofShape, class Step>
HWY_INLINE void eachCentre(const Frame& frame, ptrdiff_t j, size_t first, size_t n, Step step) {
    const L08* const row = frame.source.row(j) + first;
    const ptrdiff_t pitch = frame.source.pitch();
    eachBlock(n, [=](size_t i, auto part) HWY_ATTR { step(i, part, centresAt<ofShape>(row + i, pitch, part)); });
}

/// Writes the levels of those centres, and 0 for the pixels that are none.
HWY_INLINE void writeLevels(const Frame& frame, ptrdiff_t j, size_t first, size_t n, L08* levels) {
    const L08* const carried = frame.carried.row(j) + first;
    eachCentre<true>(frame, j, first, n, [=](size_t i, auto part, M8 which) HWY_ATTR {
        hn::StoreU(hn::IfThenElseZero(which, loadVector(D8(), carried + i, part)), D8(), levels + i);
    });
}

/// draw(i, level) for each of n levels that is not 0. There must be room for seven more.
template <class Draw>
HWY_INLINE void eachLevel(const L08* levels, size_t n, Draw draw) {
    for (size_t first = 0; first < n; first += 8) {
        uint64_t eight;
        std::memcpy(&eight, levels + first, sizeof eight);
        if (eight == 0) continue;
        for (size_t i = first; i < std::min(n, first + 8); ++i) {
            if (levels[i] != 0) draw(i, levels[i]);
        }
    }
}

/// The least and the greatest level of all centres, as far as they were looked at; none if the least is the greater.
struct LevelRange {
    L08 least, greatest;

    bool oneLevel() const { return least == greatest; }
};

/// Looks no farther when there is more than one level.
HWY_INLINE LevelRange levelsOf(const Frame& frame) {
    const D8 d;
    LevelRange range{255, 0};
    for (size_t j = 0; j < frame.centres.rows && range.least >= range.greatest; ++j) {
        const auto row = static_cast<ptrdiff_t>(j);
        const L08* const carried = frame.carried.row(row);
        V8 least = hn::Set(d, 255), greatest = hn::Zero(d);
        eachCentre<true>(frame, row, 0, frame.centres.cols, [&](size_t i, auto part, M8 which) HWY_ATTR {
            const V8 levels = loadVector(d, carried + i, part);
            least = hn::IfThenElse(which, hn::Min(least, levels), least);
            greatest = hn::Max(greatest, hn::IfThenElseZero(which, levels));
        });
        L08 lanes[2][kBlock8];
        hn::StoreU(least, d, lanes[0]);
        hn::StoreU(greatest, d, lanes[1]);
        range.least = std::min(range.least, *std::min_element(lanes[0], lanes[0] + kBlock8));
        range.greatest = std::max(range.greatest, *std::max_element(lanes[1], lanes[1] + kBlock8));
    }
    return range;
}

/// Raises the target by a row of scratch that is complete, and clears the scratch for the next one.
HWY_INLINE void pour(L08* drawn, L08* out, size_t cols) {
    eachBlock(cols, [=](size_t i, auto part) HWY_ATTR {
        const D8 d;
        const V8 levels = hn::LoadU(d, drawn + i);
        if (hn::AllTrue(d, hn::Eq(levels, hn::Zero(d)))) return;
        storeVector(d, out + i, part, hn::Max(levels, loadVector(d, out + i, part)));
        hn::StoreU(hn::Zero(d), d, drawn + i);
    });
}

/// Half widths of a round disc's rows: how far to either side it reaches |dy| rows from its centre, for 0 to reach.
/// They never grow with the distance.
struct HalfWidths {
    explicit HalfWidths(const Disc& disc) {
        size_t dx = disc.reach;
        for (size_t dy = 0; dy <= disc.reach; ++dy) {
            while (disc.distance(static_cast<ptrdiff_t>(dx), static_cast<ptrdiff_t>(dy)) >
                   static_cast<int>(disc.reach)) {
                --dx;
            }
            of[dy] = static_cast<uint16_t>(dx);
        }
    }

    uint16_t of[widestReach + 1] = {};
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
