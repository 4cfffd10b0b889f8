// SPDX-License-Identifier: MIT

// Soft frames. Compiled once per vector level.
#if defined(OMNAR_TONE_FRAMES_SOFT_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAMES_SOFT_INL_H_
#undef OMNAR_TONE_FRAMES_SOFT_INL_H_
#else
#define OMNAR_TONE_FRAMES_SOFT_INL_H_
#endif

#include "tone/frames/distances-inl.h"
#include "tone/frames/kernels.h"
#include "tone/frames/round-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// Vector kernel of softened() for one value and distances of at least 1.
///
/// Single precision is exact enough: half a step of 1 / radius is added before truncation, so that no quotient is
/// nearer than 1 / (2 * maxVectorRadius) to an integer.
class Falloff {
public:
    Falloff(uint32_t radius, L08 value)
        : maxShare_(static_cast<float>(radius + 1)), value_(value), reciprocal_(1.0F / static_cast<float>(radius)) {}

    /// Values for integral distances; 0 beyond the radius.
    HWY_INLINE hn::Vec<DI32> values(hn::Vec<DF32> distance) const {
        const DF32 d;
        const auto share = hn::Max(hn::Sub(hn::Set(d, maxShare_), distance), hn::Zero(d));
        const auto product = hn::Add(hn::Mul(share, hn::Set(d, value_)), hn::Set(d, 0.5F));
        return hn::ConvertTo(DI32(), hn::Mul(product, hn::Set(d, reciprocal_)));
    }

private:
    float maxShare_, value_, reciprocal_;
};

/// If all centres have one value, the nearest of them draws the most. Only a centre's own pixel may get less from the
/// centre than from its neighbours, and is computed separately.
class SoftRow {
public:
    /// Centres up to `near` away count, which may be less than the radius.
    SoftRow(uint32_t near, uint32_t radius, L08 value)
        : radius_(near), falloff_(radius, value), selfValue_(softened(value, 0, radius)) {
        std::fill(std::begin(squares_), std::end(squares_), kFarSquare);
    }

    HWY_INLINE V8 entries(const Columns& columns) const { return columns.otherDistances; }

    HWY_INLINE void draw(L08* out, const L08* otherDistances, const L08* bits, size_t k, const L08*, size_t cols,
                         ptrdiff_t) {
        const D8 d;
        const V8 bit = hn::Set(d, static_cast<uint8_t>(1 << k));
        for (size_t i = 0; i < cols + 2 * radius_; i += kBlock8) {
            const M8 isCentre = hn::TestBit(hn::LoadU(d, bits + i), bit);
            const V8 distances = hn::IfThenZeroElse(isCentre, hn::LoadU(d, otherDistances + i));
            const hn::Half<D8> half;
            hn::StoreU(squared(hn::LowerHalf(half, distances)), D16(), squares_ + i);
            hn::StoreU(squared(hn::UpperHalf(half, distances)), D16(), squares_ + i + kBlock16);
        }
        for (size_t x = 0; x < cols; x += kBlock16) {
            writeValues(x, leastSquare(squares_ + x + radius_, otherDistances + x + radius_));
        }
        eachBlock(cols, [=, this, own = bits + radius_](size_t i, auto part) HWY_ATTR {
            const M8 isCentre = hn::TestBit(hn::LoadU(d, own + i), bit);
            const V8 selfValues = hn::IfThenElseZero(isCentre, hn::Set(d, selfValue_));
            const V8 drawn = hn::Max(hn::LoadU(d, values_ + i), selfValues);
            if (hn::AllTrue(d, hn::Eq(drawn, hn::Zero(d)))) return;
            storeVector(d, out + i, part, hn::Max(drawn, loadVector(d, out + i, part)));
        });
    }

private:
    static constexpr size_t kEntries = kDistanceScratch / 12;  // of a row of scratch, at the least radius
    /// Above the square of every distance up to kMaxDistanceRadius, and unchanged by saturated addition.
    static constexpr uint16_t kFarSquare = 65535;

    static HWY_INLINE V16 squared(hn::Vec<hn::Half<D8>> distances) {
        const D16 d;
        const V16 distance = hn::PromoteTo(d, distances);
        return hn::IfThenElse(hn::Eq(distance, hn::Set(d, kFar)), hn::Set(d, kFarSquare), hn::Mul(distance, distance));
    }

    /// The squared distances to the nearest centres other than the pixels themselves. Stops at columns that are farther
    /// away than the nearest centre found.
    HWY_INLINE V16 leastSquare(const uint16_t* own, const L08* otherDistances) const {
        const D16 d;
        V16 least = squared(hn::LoadU(hn::Half<D8>(), otherDistances));
        for (size_t dx = 1; dx <= radius_; ++dx) {
            const V16 square = hn::Set(d, static_cast<uint16_t>(dx * dx));
            if (dx % 4 == 0 && hn::AllTrue(d, hn::Eq(hn::Max(least, square), square))) break;
            const V16 nearer = hn::Min(hn::LoadU(d, own - dx), hn::LoadU(d, own + dx));
            least = hn::Min(least, hn::SaturatedAdd(nearer, square));
        }
        return least;
    }

    HWY_INLINE void writeValues(size_t x, V16 squares) {
        const D16 d;
        const auto limit = static_cast<uint16_t>(radius_ * radius_ + radius_);
        if (hn::AllTrue(d, hn::Gt(squares, hn::Set(d, limit)))) {
            std::memset(values_ + x, 0, kBlock16);
            return;
        }
        const hn::Half<D16> half;
        writeByRoots(x, hn::PromoteTo(DI32(), hn::LowerHalf(half, squares)));
        writeByRoots(x + kBlock16 / 2, hn::PromoteTo(DI32(), hn::UpperHalf(half, squares)));
    }
    /// Every root is at least 1 / (8 * kMaxDistanceRadius + 4) away from where it would round differently. Squares
    /// beyond the radius may be kFarSquare.
    HWY_INLINE void writeByRoots(size_t x, hn::Vec<DI32> squares) {
        const DF32 d;
        const hn::Rebind<uint8_t, DI32> d8;
        const auto distances = hn::Floor(hn::Add(hn::Sqrt(hn::ConvertTo(d, squares)), hn::Set(d, 0.5F)));
        const auto beyond = hn::Gt(squares, hn::Set(DI32(), static_cast<int>(radius_ * radius_ + radius_)));
        hn::StoreU(hn::DemoteTo(d8, hn::IfThenZeroElse(beyond, falloff_.values(distances))), d8, values_ + x);
    }

    const size_t radius_;
    const Falloff falloff_;
    const L08 selfValue_;
    uint16_t squares_[kEntries + 2 * kPadding];
    L08 values_[kEntries + kPadding];
};

/// Draws on the pixels whose nearest centre is at most `near` away.
HWY_NOINLINE void drawNearest(const Frame& frame, uint32_t near, L08 value) {
    const uint32_t inset = frame.disc.radius - near;
    const Disc disc{frame.disc.table, frame.disc.tableRadius, near};
    const Plane<L08> destination = frame.destination.in(frame.destination.row(static_cast<ptrdiff_t>(inset)) + inset);
    const Frame inner{frame.centres, frame.source, frame.values, destination, disc};
    SoftRow row(near, frame.disc.radius, value);
    drawWith<DistanceWalk<true, SoftRow>>(inner, row);
}

/// What a disc draws at a distance of 2 to `radius` is a share of its centre's value, in 65536ths:
///
///     share = 65536 * (radius + 1 - distance) / radius
///     (radius + 1 - distance) * value / radius = share * value / 65536
///
/// The share is rounded up. The error is below 255 / 65536, less than the 1 / radius that would change the quotient.
/// The share at distance 1 does not fit 16 bits; distances 0 and 1, the 3 x 3 pixels in the middle, are raised
/// separately.
constexpr uint16_t shareOf(size_t distance, size_t radius) {
    return static_cast<uint16_t>((65536 * (radius + 1 - distance) + radius - 1) / radius);
}

/// What centres draw on themselves: value + value / radius, which wraps at 8 bits.
HWY_INLINE V8 drawnOnItself(V8 value, size_t radius) {
    if (radius == 1) return hn::Add(value, value);  // the factor 65536 does not fit 16 bits
    const D16 d;
    const V16 both = hn::BitCast(d, value), odds = hn::Set(d, 0xFF00), factor = hn::Set(d, shareOf(radius, radius));
    const V16 even = hn::MulHigh(hn::AndNot(odds, both), factor), odd = hn::MulHigh(hn::And(both, odds), factor);
    return hn::Add(value, bytes(hn::OrAnd(even, odd, odds)));
}

/// What a row of centres draws at distances 0 and 1: its values on their neighbours, and on the centres themselves what
/// drawnOnItself() returns. `onOtherRow` is true for the rows above and below it, where no pixel is a centre of this
/// row.
HWY_INLINE V8 drawnNearby(const L08* own, bool onOtherRow, size_t radius) {
    const D8 d;
    const V8 value = hn::LoadU(d, own);
    const V8 neighbours = hn::Max(hn::LoadU(d, own - 1), hn::LoadU(d, own + 1));
    return hn::Max(onOtherRow ? value : drawnOnItself(value, radius), neighbours);
}

/// Discs of up to kMaxRadius with centres of different values: of the centres at one distance from a pixel, the one
/// with the greatest value draws the most.
class SoftDiscs {
public:
    /// Larger discs have too many distances for this to pay.
    static constexpr size_t kMaxRadius = 8;

    explicit SoftDiscs(const Disc& disc) : radius_(disc.radius) {
        eachHalfWidth(disc, [&, this](size_t dy, size_t width) {
            halfWidths_[dy] = width;
            for (size_t dx = 0; dx <= width; ++dx) {
                const auto distance = static_cast<size_t>(disc.row(static_cast<ptrdiff_t>(dy))[dx]);
                factors_[dy][dx] = distance < 2 ? uint16_t{0} : shareOf(distance, radius_);
            }
        });
    }

    HWY_INLINE void draw(const L08* values, auto rows) const {
        if (!anyOf(values, kBlock8 + 2 * radius_)) return;

        // The greater of the values at either side, even and odd pixels separately.
        const D16 d;
        const V16 odds = hn::Set(d, 0xFF00);
        const L08* const own = values + radius_;
        V16 pairs[kMaxRadius + 1][2];
        for (size_t dx = 0; dx <= radius_; ++dx) {
            const V16 both = hn::BitCast(d, hn::Max(hn::LoadU(D8(), own - dx), hn::LoadU(D8(), own + dx)));
            pairs[dx][0] = hn::AndNot(odds, both);
            pairs[dx][1] = hn::And(both, odds);
        }
        for (size_t dy = 0; dy <= radius_; ++dy) {
            V16 even = hn::Zero(d), odd = hn::Zero(d);
            for (size_t dx = dy < 2 ? 2 : 0; dx <= halfWidths_[dy]; ++dx) {
                const V16 factor = hn::Set(d, factors_[dy][dx]);
                even = hn::Max(even, hn::MulHigh(pairs[dx][0], factor));
                odd = hn::Max(odd, hn::MulHigh(pairs[dx][1], factor));
            }
            V8 drawn = bytes(hn::OrAnd(even, odd, odds));
            if (dy < 2) drawn = hn::Max(drawn, drawnNearby(own, dy == 1, radius_));
            rows.below(dy, drawn);
            if (dy != 0) rows.above(dy, drawn);
        }
    }

private:
    const size_t radius_;
    size_t halfWidths_[kMaxRadius + 1];
    uint16_t factors_[kMaxRadius + 1][kMaxRadius + 1] = {};
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
