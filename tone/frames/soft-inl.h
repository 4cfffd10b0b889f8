// SPDX-License-Identifier: MIT

// Soft frames, compiled once for every level.
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

/// Levels that fall with the distance from a centre of one level: twin of softened() for distances of at least 1.
///
/// Floating point is exact enough: no quotient, moved up by half a part, is nearer than 1 / (2 * widestReach) to the next
/// whole number.
class Fall {
public:
    Fall(uint32_t reach, L08 level)
        : most_(static_cast<float>(reach + 1)), level_(level), part_(1.0F / static_cast<float>(reach)) {}

    /// By distances in whole numbers; 0 beyond the reach.
    HWY_INLINE hn::Vec<DI32> at(hn::Vec<DF32> distance) const {
        const DF32 d;
        const auto share = hn::Max(hn::Sub(hn::Set(d, most_), distance), hn::Zero(d));
        const auto product = hn::Add(hn::Mul(share, hn::Set(d, level_)), hn::Set(d, 0.5F));
        return hn::ConvertTo(DI32(), hn::Mul(product, hn::Set(d, part_)));
    }

private:
    float most_, level_, part_;
};

/// Where all centres have one level, the nearest of them draws the most. Only what a centre draws on itself may be less
/// than what its neighbours draw there, so that it is computed apart.
class SoftRow {
public:
    /// Centres are looked for as far as `near`, which may be less than the reach.
    SoftRow(uint32_t near, uint32_t reach, L08 level)
        : reach_(near), fall_(reach, level), onItself_(softened(level, 0, reach)) {
        std::fill(std::begin(squares_), std::end(squares_), kFarSquare);
    }

    HWY_INLINE V8 entries(const Columns& columns) const { return columns.toOthers; }

    HWY_INLINE void draw(L08* out, const L08* toOthers, const L08* bits, size_t k, const L08*, size_t cols, ptrdiff_t) {
        const D8 d;
        const V8 bit = hn::Set(d, static_cast<uint8_t>(1 << k));
        for (size_t i = 0; i < cols + 2 * reach_; i += kBlock8) {
            const M8 isCentre = hn::TestBit(hn::LoadU(d, bits + i), bit);
            const V8 distances = hn::IfThenZeroElse(isCentre, hn::LoadU(d, toOthers + i));
            const hn::Half<D8> half;
            hn::StoreU(squared(hn::LowerHalf(half, distances)), D16(), squares_ + i);
            hn::StoreU(squared(hn::UpperHalf(half, distances)), D16(), squares_ + i + kBlock16);
        }
        for (size_t x = 0; x < cols; x += kBlock16) {
            writeLevels(x, leastSquare(squares_ + x + reach_, toOthers + x + reach_));
        }
        eachBlock(cols, [=, this, own = bits + reach_](size_t i, auto part) HWY_ATTR {
            const M8 isCentre = hn::TestBit(hn::LoadU(d, own + i), bit);
            const V8 onCentres = hn::IfThenElseZero(isCentre, hn::Set(d, onItself_));
            const V8 drawn = hn::Max(hn::LoadU(d, levels_ + i), onCentres);
            if (hn::AllTrue(d, hn::Eq(drawn, hn::Zero(d)))) return;
            storeVector(d, out + i, part, hn::Max(drawn, loadVector(d, out + i, part)));
        });
    }

private:
    static constexpr size_t kEntries = kDistanceScratch / 12;  // of a row of scratch, at the narrowest reach
    /// Farther than any reach; with the square of one added it neither wraps nor comes nearer.
    static constexpr uint16_t kFarSquare = 65535;

    static HWY_INLINE V16 squared(hn::Vec<hn::Half<D8>> distances) {
        const D16 d;
        const V16 distance = hn::PromoteTo(d, distances);
        return hn::IfThenElse(hn::Eq(distance, hn::Set(d, kFar)), hn::Set(d, kFarSquare), hn::Mul(distance, distance));
    }

    /// The squared distances to the nearest centres other than the pixels themselves. Columns that are farther away
    /// than the nearest centre so far cannot have a nearer one.
    HWY_INLINE V16 leastSquare(const uint16_t* own, const L08* toOthers) const {
        const D16 d;
        V16 least = squared(hn::LoadU(hn::Half<D8>(), toOthers));
        for (size_t dx = 1; dx <= reach_; ++dx) {
            const V16 square = hn::Set(d, static_cast<uint16_t>(dx * dx));
            if (dx % 4 == 0 && hn::AllTrue(d, hn::Eq(hn::Max(least, square), square))) break;
            const V16 nearer = hn::Min(hn::LoadU(d, own - dx), hn::LoadU(d, own + dx));
            least = hn::Min(least, hn::SaturatedAdd(nearer, square));
        }
        return least;
    }

    HWY_INLINE void writeLevels(size_t x, V16 squares) {
        const D16 d;
        const auto limit = static_cast<uint16_t>(reach_ * reach_ + reach_);
        if (hn::AllTrue(d, hn::Gt(squares, hn::Set(d, limit)))) {
            std::memset(levels_ + x, 0, kBlock16);
            return;
        }
        const hn::Half<D16> half;
        writeByRoots(x, hn::PromoteTo(DI32(), hn::LowerHalf(half, squares)));
        writeByRoots(x + kBlock16 / 2, hn::PromoteTo(DI32(), hn::UpperHalf(half, squares)));
    }
    /// No root comes nearer than 1 / (8 * kWidestByDistances + 4) to where it would round differently. What is beyond reach
    /// may be no distance at all.
    HWY_INLINE void writeByRoots(size_t x, hn::Vec<DI32> squares) {
        const DF32 d;
        const hn::Rebind<uint8_t, DI32> d8;
        const auto distances = hn::Floor(hn::Add(hn::Sqrt(hn::ConvertTo(d, squares)), hn::Set(d, 0.5F)));
        const auto beyond = hn::Gt(squares, hn::Set(DI32(), static_cast<int>(reach_ * reach_ + reach_)));
        hn::StoreU(hn::DemoteTo(d8, hn::IfThenZeroElse(beyond, fall_.at(distances))), d8, levels_ + x);
    }

    const size_t reach_;
    const Fall fall_;
    const L08 onItself_;
    uint16_t squares_[kEntries + 2 * kRoom];
    L08 levels_[kEntries + kRoom];
};

/// Draws where the nearest centre is no farther than `near`.
HWY_NOINLINE void drawNearest(const Frame& frame, uint32_t near, L08 level) {
    const uint32_t margin = frame.disc.reach - near;
    const Disc disc{frame.disc.table, frame.disc.tableRadius, near};
    const Plane<L08> target = frame.target.in(frame.target.row(static_cast<ptrdiff_t>(margin)) + margin);
    const Frame inner{frame.centres, frame.source, frame.carried, target, disc};
    SoftRow row(near, frame.disc.reach, level);
    drawBy<DistanceWalk<true, SoftRow>>(inner, row);
}

/// What a disc draws at a distance of 2 to `reach` is a share of its centre's level, in 65536ths:
///
///     share = 65536 * (reach + 1 - distance) / reach
///     (reach + 1 - distance) * level / reach = share * level / 65536
///
/// rounded up, which is off by less than 255 / 65536, less than the 1 / reach that would change the quotient. 16 bits do not
/// hold the share at distance 1; it and 0 are the 3 x 3 pixels in the middle, which are raised apart.
constexpr uint16_t shareOf(size_t distance, size_t reach) {
    return static_cast<uint16_t>((65536 * (reach + 1 - distance) + reach - 1) / reach);
}

/// What centres draw on themselves: level + level / reach, which may wrap.
HWY_INLINE V8 drawnOnItself(V8 level, size_t reach) {
    if (reach == 1) return hn::Add(level, level);  // a factor that 16 bits do not hold
    const D16 d;
    const V16 both = hn::BitCast(d, level), odds = hn::Set(d, 0xFF00), factor = hn::Set(d, shareOf(reach, reach));
    const V16 even = hn::MulHigh(hn::AndNot(odds, both), factor), odd = hn::MulHigh(hn::And(both, odds), factor);
    return hn::Add(level, bytes(hn::OrAnd(even, odd, odds)));
}

/// What a row of centres draws on the pixels at distances of 0 and 1: its levels on its neighbours, and on itself, unless it
/// is the row above or below.
HWY_INLINE V8 drawnNearby(const L08* own, bool onOtherRow, size_t reach) {
    const D8 d;
    const V8 level = hn::LoadU(d, own);
    const V8 sides = hn::Max(hn::LoadU(d, own - 1), hn::LoadU(d, own + 1));
    return hn::Max(onOtherRow ? level : drawnOnItself(level, reach), sides);
}

/// Small discs of centres of many levels: of the centres at one distance from a pixel, the one with the greatest level
/// draws the most.
class SoftDiscs {
public:
    /// Wider discs have more distances than there are centres worth looking at.
    static constexpr size_t kMostReach = 8;

    explicit SoftDiscs(const Disc& disc) : reach_(disc.reach) {
        eachHalfWidth(disc, [&, this](size_t dy, size_t width) {
            halfWidths_[dy] = width;
            for (size_t dx = 0; dx <= width; ++dx) {
                const auto distance = static_cast<size_t>(disc.row(static_cast<ptrdiff_t>(dy))[dx]);
                factors_[dy][dx] = distance < 2 ? uint16_t{0} : shareOf(distance, reach_);
            }
        });
    }

    HWY_INLINE void draw(const L08* levels, auto rows) const {
        if (!anyOf(levels, kBlock8 + 2 * reach_)) return;

        // The greater of both levels at either side, its even pixels and its odd ones apart.
        const D16 d;
        const V16 odds = hn::Set(d, 0xFF00);
        const L08* const own = levels + reach_;
        V16 sides[kMostReach + 1][2];
        for (size_t dx = 0; dx <= reach_; ++dx) {
            const V16 both = hn::BitCast(d, hn::Max(hn::LoadU(D8(), own - dx), hn::LoadU(D8(), own + dx)));
            sides[dx][0] = hn::AndNot(odds, both);
            sides[dx][1] = hn::And(both, odds);
        }
        for (size_t dy = 0; dy <= reach_; ++dy) {
            V16 even = hn::Zero(d), odd = hn::Zero(d);
            for (size_t dx = dy < 2 ? 2 : 0; dx <= halfWidths_[dy]; ++dx) {
                const V16 factor = hn::Set(d, factors_[dy][dx]);
                even = hn::Max(even, hn::MulHigh(sides[dx][0], factor));
                odd = hn::Max(odd, hn::MulHigh(sides[dx][1], factor));
            }
            V8 drawn = bytes(hn::OrAnd(even, odd, odds));
            if (dy < 2) drawn = hn::Max(drawn, drawnNearby(own, dy == 1, reach_));
            rows.below(dy, drawn);
            if (dy != 0) rows.above(dy, drawn);
        }
    }

private:
    const size_t reach_;
    size_t halfWidths_[kMostReach + 1];
    uint16_t factors_[kMostReach + 1][kMostReach + 1] = {};
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
