// SPDX-License-Identifier: MIT

// The centres of a frame as vectors, and what all frame kernels share. Compiled once per vector level.
#if defined(OMNAR_TONE_FRAMES_CENTRES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAMES_CENTRES_INL_H_
#undef OMNAR_TONE_FRAMES_CENTRES_INL_H_
#else
#define OMNAR_TONE_FRAMES_CENTRES_INL_H_
#endif

#include <algorithm>
#include <cstring>

#include "buffers/blocks-inl.h"
#include "hwy/cache_control.h"
#include "tone/frames/kernels.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

using M8 = hn::Mask<D8>;

using DI32 = hn::Repartition<int32_t, D8>;
using DF32 = hn::Repartition<float, D8>;
using DI16 = hn::Repartition<int16_t, D8>;
using VI16 = hn::Vec<DI16>;

constexpr size_t kBlock8 = hn::MaxLanes(D8());
constexpr size_t kBlock16 = hn::MaxLanes(D16());

// Rows of scratch are walked in whole vectors, which end less than this past the last entry.
constexpr size_t kPadding = 128;

/// Calls step(i, part) for each block of n pixels. The last block may be partial.
template <class Step>
HWY_INLINE void eachBlock(size_t n, Step step) {
    size_t i = 0;
    for (; i + kBlock8 <= n; i += kBlock8) step(i, All());
    if (i < n) step(i, First{n - i});
}

/// The same for steps that may see a pixel twice: the last block overlaps the one before it if there is one.
template <class Step>
HWY_INLINE void eachOverlappingBlock(size_t n, Step step) {
    if (n < kBlock8) {
        if (n != 0) step(0, First{n});
        return;
    }
    for (size_t i = 0; i + kBlock8 < n; i += kBlock8) step(i, All());
    step(n - kBlock8, All());
}

/// Mask of the pixels that are centres.
template <bool centresInShape>
HWY_INLINE M8 areCentres(V8 own, V8 left, V8 right, V8 above, V8 below) {
    const V8 none = hn::Zero(D8());
    const M8 isGround = hn::Eq(own, none);
    if constexpr (centresInShape) {
        return hn::AndNot(isGround, hn::Eq(hn::Min(hn::Min(left, right), hn::Min(above, below)), none));
    } else {
        return hn::AndNot(hn::Eq(hn::Max(hn::Max(left, right), hn::Max(above, below)), none), isGround);
    }
}

/// Mask of the centres among the pixels from `pixel` on.
template <bool centresInShape>
HWY_INLINE M8 centresAt(const L08* pixel, ptrdiff_t pitch, auto part) {
    const D8 d;
    return areCentres<centresInShape>(loadVector(d, pixel, part), loadVector(d, pixel - 1, part),
                                      loadVector(d, pixel + 1, part), loadVector(d, pixel - pitch, part),
                                      loadVector(d, pixel + pitch, part));
}

/// The centres of eight rows as bits, row j of the frame in bit 0, for pixels from column x of the frame on. Rows
/// outside the frame have none.
template <bool centresInShape>
HWY_INLINE V8 centreBits(const Frame& frame, ptrdiff_t j, size_t x, auto part) {
    const D8 d;
    const ptrdiff_t rows = static_cast<ptrdiff_t>(frame.centres.rows), pitch = frame.source.pitch();
    V8 bits = hn::Zero(d);
    if (j <= -8 || j >= rows) return bits;
    const ptrdiff_t first = std::max<ptrdiff_t>(-j, 0), end = std::min<ptrdiff_t>(rows - j, 8);
    const L08* pixel = frame.source.row(j + first) + x;
    V8 above = loadVector(d, pixel - pitch, part), own = loadVector(d, pixel, part);
    V8 bit = hn::Set(d, static_cast<uint8_t>(1 << first));
    for (ptrdiff_t k = first; k < end; ++k, pixel += pitch) {
        const V8 below = loadVector(d, pixel + pitch, part);
        const M8 which = areCentres<centresInShape>(own, loadVector(d, pixel - 1, part), loadVector(d, pixel + 1, part),
                                                    above, below);
        bits = hn::Or(bits, hn::IfThenElseZero(which, bit));
        bit = hn::Add(bit, bit);
        above = own;
        own = below;
    }
    return bits;
}

/// The index of the lowest set bit of each byte, 255 if none is set.
HWY_INLINE V8 lowestBit(V8 bits) {
    alignas(16) static constexpr uint8_t low[16] = {255, 0, 1, 0, 2, 0, 1, 0, 3, 0, 1, 0, 2, 0, 1, 0};
    alignas(16) static constexpr uint8_t high[16] = {255, 4, 5, 4, 6, 4, 5, 4, 7, 4, 5, 4, 6, 4, 5, 4};
    const D8 d;
    const V8 nibble = hn::Set(d, 15);
    const V8 upper = hn::And(bytes(hn::ShiftRight<4>(hn::BitCast(D16(), bits))), nibble);
    return hn::Min(hn::TableLookupBytes(hn::LoadDup128(d, low), hn::And(bits, nibble)),
                   hn::TableLookupBytes(hn::LoadDup128(d, high), upper));
}

/// The centres whose discs may cover pixels left to left + cols - 1 of the destination. A row of scratch has an entry
/// for each pixel of the strip and for `radius` pixels at either side. Pixel x is entry x + radius. The centre that is
/// the middle of a disc at pixel x has the same entry.
struct Entries {
    size_t first;   // entry of the first centre
    size_t count;   // number of centres
    size_t column;  // column of the first centre in the frame
};

HWY_INLINE Entries entriesOf(const Frame& frame, size_t left, size_t cols) {
    const size_t diameter = 2 * size_t{frame.disc.radius};
    const size_t first = std::max(left, diameter) - left;
    const size_t end = std::min(left + cols, frame.centres.cols) + diameter - left;
    return {first, end - first, left + first - diameter};
}

/// Calls step(i, part, which) for the centres of row j, columns first to first + n - 1.
template <bool centresInShape, class Step>
HWY_INLINE void eachCentre(const Frame& frame, ptrdiff_t j, size_t first, size_t n, Step step) {
    const L08* const row = frame.source.row(j) + first;
    const ptrdiff_t pitch = frame.source.pitch();
    eachBlock(n, [=](size_t i, auto part) HWY_ATTR { step(i, part, centresAt<centresInShape>(row + i, pitch, part)); });
}

/// What hard frames draw: 255, 0, or the values of their centres.
enum class HardMode { solid, erase, values };

/// Writes the values of n centres from column `first` of row j on: 255 unless the mode is `values`, and 0 for pixels
/// that are no centres. Returns false if all are 0.
template <HardMode mode = HardMode::values>
HWY_INLINE bool writeValues(const Frame& frame, ptrdiff_t j, size_t first, size_t n, L08* values) {
    const D8 d;
    const L08* const row = frame.source.row(j) + first;
    const L08* const valueRow = frame.values.row(j) + first;
    V8 any = hn::Zero(d);
    eachOverlappingBlock(n, [=, &any, pitch = frame.source.pitch()](size_t i, auto part) HWY_ATTR {
        V8 own = hn::VecFromMask(d, centresAt<mode != HardMode::erase>(row + i, pitch, part));
        if constexpr (mode == HardMode::values) own = hn::And(own, loadVector(d, valueRow + i, part));
        hn::StoreU(own, d, values + i);
        any = hn::Or(any, own);
    });
    return !hn::AllTrue(d, hn::Eq(any, hn::Zero(d)));
}

/// True if any of n values, rounded up to whole vectors, is not 0.
HWY_INLINE bool anyOf(const L08* values, size_t n) {
    const D8 d;
    V8 all = hn::Zero(d);
    for (size_t i = 0; i < n; i += kBlock8) all = hn::Or(all, hn::LoadU(d, values + i));
    return !hn::AllTrue(d, hn::Eq(all, hn::Zero(d)));
}

/// Calls draw(i, value) for each of n values that is not 0. Reads up to seven values past the last one.
template <class Draw>
HWY_INLINE void eachValue(const L08* values, size_t n, Draw draw) {
    for (size_t first = 0; first < n; first += 8) {
        uint64_t eight;
        std::memcpy(&eight, values + first, sizeof eight);
        if (eight == 0) continue;
        for (size_t i = first; i < std::min(n, first + 8); ++i) {
            if (values[i] != 0) draw(i, values[i]);
        }
    }
}

/// The part of a disc that its centre must draw: the pixels that are not nearer to a neighbouring centre of at least
/// the same value, which draws at least as much there. Of two equally near centres of one value the later one draws.
/// Row dy of the disc, counted downwards from the centre, keeps the pixels from -left to right, and none if left +
/// right is negative. The 3 x 3 pixels in the middle are not part of this.
class Sector {
public:
    /// `own` points at the value of the centre, `above` and `below` at the values of the pixels above and below it.
    HWY_INLINE Sector(const L08* above, const L08* own, const L08* below)
        : left_{side(own[-1] >= *own, above[-1] >= *own, below[-1] >= *own)},
          right_{side(own[1] >= *own, above[1] >= *own, below[1] >= *own)},
          keepsAbove_(*above < *own),
          keepsBelow_(*below < *own) {}

    /// The half of the disc above the centre's row or below it, with that row.
    HWY_INLINE explicit Sector(bool above)
        : left_{side(false, false, false)}, right_{left_}, keepsAbove_(above), keepsBelow_(!above) {}

    /// True if the sector has rows above the centre; below it.
    HWY_INLINE bool keepsAbove() const { return keepsAbove_; }
    HWY_INLINE bool keepsBelow() const { return keepsBelow_; }
    HWY_INLINE VI16 left(VI16 dy, VI16 halfWidth) const { return left_.extent(dy, halfWidth); }
    HWY_INLINE VI16 right(VI16 dy, VI16 halfWidth) const { return right_.extent(dy, halfWidth); }

private:
    /// The limits that the neighbours at one side set.
    struct Side {
        int16_t beside, above, below;

        HWY_INLINE VI16 extent(VI16 dy, VI16 halfWidth) const {
            const DI16 d;
            return hn::Min(hn::Min(halfWidth, hn::Set(d, beside)),
                           hn::Min(hn::Add(hn::Set(d, above), dy), hn::Sub(hn::Set(d, below), dy)));
        }
    };
    static HWY_INLINE Side side(bool beside, bool above, bool below) {
        constexpr int16_t unlimited = 2 * maxVectorRadius;
        return {beside ? int16_t{0} : unlimited, above ? int16_t{1} : unlimited, below ? int16_t{0} : unlimited};
    }

    Side left_, right_;
    bool keepsAbove_, keepsBelow_;
};

/// The least and the greatest value of the centres examined; `least > greatest` if there are none.
struct ValueRange {
    L08 least, greatest;

    bool isOneValue() const { return least == greatest; }
};

/// Stops at the first row by which two values are known.
HWY_INLINE ValueRange valueRangeOf(const Frame& frame) {
    const D8 d;
    ValueRange range{255, 0};
    for (size_t j = 0; j < frame.centres.rows && range.least >= range.greatest; ++j) {
        const auto row = static_cast<ptrdiff_t>(j);
        const L08* const valueRow = frame.values.row(row);
        V8 least = hn::Set(d, 255), greatest = hn::Zero(d);
        eachCentre<true>(frame, row, 0, frame.centres.cols, [&](size_t i, auto part, M8 which) HWY_ATTR {
            const V8 values = loadVector(d, valueRow + i, part);
            least = hn::IfThenElse(which, hn::Min(least, values), least);
            greatest = hn::Max(greatest, hn::IfThenElseZero(which, values));
        });
        L08 lanes[2][kBlock8];
        hn::StoreU(least, d, lanes[0]);
        hn::StoreU(greatest, d, lanes[1]);
        range.least = std::min(range.least, *std::min_element(lanes[0], lanes[0] + kBlock8));
        range.greatest = std::max(range.greatest, *std::max_element(lanes[1], lanes[1] + kBlock8));
    }
    return range;
}

/// Draws a complete row of scratch on the destination and resets the scratch for the next row. Prefetches the same
/// columns `ahead` pixels on, which are most likely drawn next.
template <HardMode mode = HardMode::values>
HWY_INLINE void flushRow(L08* drawn, L08* out, size_t cols, ptrdiff_t ahead) {
    eachBlock(cols, [=](size_t i, auto part) HWY_ATTR {
        const D8 d;
        const V8 values = hn::LoadU(d, drawn + i);
        if (hn::AllTrue(d, hn::Eq(values, hn::Zero(d)))) return;
        hwy::Prefetch(out + ahead + i);
        const V8 old = loadVector(d, out + i, part);
        storeVector(d, out + i, part, mode == HardMode::erase ? hn::AndNot(values, old) : hn::Max(values, old));
        hn::StoreU(hn::Zero(d), d, drawn + i);
    });
}

/// What is drawn on covered pixels: RaiseTo takes the maximum with a value, Erase writes 0.
struct RaiseTo {
    L08 value;

    HWY_INLINE V8 operator()(V8 old, M8 covered) const {
        return hn::Max(old, hn::IfThenElseZero(covered, hn::Set(D8(), value)));
    }
};
struct Erase {
    HWY_INLINE V8 operator()(V8 old, M8 covered) const { return hn::IfThenZeroElse(covered, old); }
};

/// Draws a frame with `Walk`. Not inlined: each walk has scratch, and inlined walks would add up on the stack.
template <class Walk>
HWY_NOINLINE void drawWith(const Frame& frame, auto&&... operands) {
    Walk(frame, operands...).draw();
}

/// Calls use(dy, dx) for each row of a round disc, dy from 0 to the radius. Row dy covers the columns -dx to dx. dx
/// never grows with dy.
template <class Use>
HWY_INLINE void eachHalfWidth(const Disc& disc, Use use) {
    auto dx = static_cast<ptrdiff_t>(disc.radius);
    for (size_t dy = 0; dy <= disc.radius; ++dy) {
        dx = disc.halfWidth(static_cast<ptrdiff_t>(dy), dx);
        use(dy, static_cast<size_t>(dx));
    }
}

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
