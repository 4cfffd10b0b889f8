// SPDX-License-Identifier: MIT

// Soft frames of different values that are too wide for RoundWalk. Compiled once per vector level.
#if defined(OMNAR_TONE_FRAMES_STAMP_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAMES_STAMP_INL_H_
#undef OMNAR_TONE_FRAMES_STAMP_INL_H_
#else
#define OMNAR_TONE_FRAMES_STAMP_INL_H_
#endif

#include "tone/frames/soft-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// What a disc draws, as shares of its centre's value: radius + 1 - distance, in units of 1 / radius. next() writes the
/// rows by their distance from the middle, as many at a time as fit. Pixel 0 of a row is `radius` pixels left of the
/// middle. The middle itself has share 0 and is raised separately.
class Shares {
public:
    static constexpr size_t kMaxRadius = 254;

    /// Of a round disc, whose rows above and below the middle are equal.
    explicit Shares(const Disc& disc) : disc_(disc), half_(Half::both) {
        eachHalfWidth(disc, [this](size_t dy, size_t dx) { halfWidths_[dy] = static_cast<int16_t>(dx); });
    }

    /// Of the rows above the middle or below it, for a disc that is not round.
    Shares(const Disc& disc, bool above) : disc_(disc), half_(above ? Half::above : Half::below) {
        std::fill_n(halfWidths_, disc.radius + 1, static_cast<int16_t>(disc.radius));
    }

    /// True if shares of a disc that is not round fit a byte: the middle has distance 0, every other pixel at least 1.
    static bool fit(const Disc& disc) {
        const auto radius = static_cast<ptrdiff_t>(disc.radius);
        if (disc.radius > kMaxRadius || disc.distance(0, 0) != 0) return false;
        size_t below1 = 0;
        for (ptrdiff_t dy = -radius; dy <= radius; ++dy) {
            for (ptrdiff_t dx = -radius; dx <= radius; ++dx) below1 += disc.row(dy)[dx] < 1;
        }
        return below1 == 1;
    }

    bool isRound() const { return half_ == Half::both; }
    bool isAbove() const { return half_ == Half::above; }

    static bool fitOneVector(size_t radius) { return 2 * radius + 1 <= kBlock8; }

    /// Writes the next rows. Returns false if there are none.
    HWY_INLINE bool next() {
        first_ = end_;
        for (size_t used = 0; end_ <= disc_.radius; ++end_) {
            const size_t width = static_cast<size_t>(halfWidths_[end_]), count = std::max(2 * width + 1, kBlock8);
            if (used + count > kShares) break;
            const size_t before = fitOneVector(disc_.radius) ? 0 : disc_.radius - width;
            begin_[end_] = static_cast<int16_t>(used) - static_cast<int16_t>(before);
            lastVector_[end_] = static_cast<int16_t>(before + count - kBlock8);
            const auto dy = static_cast<ptrdiff_t>(end_);
            std::memset(shares_ + used, 0, count);
            write(disc_.row(isAbove() ? -dy : dy) - disc_.radius + before, shares_ + used,
                  std::min(count, 2 * size_t{disc_.radius} + 1 - before));
            used += count;
        }
        return first_ < end_;
    }

    ptrdiff_t first() const { return static_cast<ptrdiff_t>(first_); }
    ptrdiff_t end() const { return static_cast<ptrdiff_t>(end_); }
    const int16_t* halfWidths() const { return halfWidths_; }
    /// By rows, the pixel at which the last full vector of shares begins. In rows shorter than a vector it is not after
    /// the first pixel that has a share.
    const int16_t* lastVector() const { return lastVector_; }
    const L08* row(ptrdiff_t dy) const { return shares_ + begin_[dy]; }

private:
    static constexpr size_t kShares = 16384;
    enum class Half { both, above, below };

    HWY_INLINE void write(const int* distances, L08* shares, size_t n) const {
        const auto radius = static_cast<int>(disc_.radius);
        for (size_t x = 0; x < n; ++x) {
            const bool draws = distances[x] >= 1 && distances[x] <= radius;
            shares[x] = draws ? static_cast<L08>(radius + 1 - distances[x]) : L08{0};
        }
    }

    const Disc disc_;
    const Half half_;
    size_t first_ = 0, end_ = 0;  // the rows written
    int16_t halfWidths_[kMaxRadius + kPadding] = {};
    int16_t lastVector_[kMaxRadius + kPadding] = {};
    int16_t begin_[kMaxRadius + 1];  // index of the share of each row's pixel 0, which may be negative
    L08 shares_[kShares];
};

/// Each centre draws its sector of the disc separately, in vectors.
class SoftStamp {
public:
    SoftStamp(const Frame& frame, const Shares& shares)
        : frame_(frame),
          shares_(shares),
          radius_(frame.disc.radius),
          reciprocal_((uint64_t{1} << 32) / frame.disc.radius + 1),
          pitch_((2 * radius_ + kBlock8 + kMinCols + kBlock8 - 1) / kBlock8 * kBlock8),
          rows_(kCanvas / pitch_) {}

    /// Discs are drawn into a canvas first: rows of the destination are often a multiple of a power of two apart, which
    /// makes loads wait for earlier stores at the same low address bits.
    HWY_INLINE void draw() {
        const size_t stripCols = pitch_ - 2 * radius_ - kBlock8;
        std::memset(canvas_, 0, sizeof canvas_);
        for (size_t left = 0; left < frame_.centres.cols; left += stripCols) {
            const size_t cols = std::min(stripCols, frame_.centres.cols - left);
            for (size_t top = 0; top < frame_.centres.rows + 2 * radius_; top += rows_) {
                const size_t rows = std::min(rows_, frame_.centres.rows + 2 * radius_ - top);
                drawCentres(left, cols, static_cast<ptrdiff_t>(top), static_cast<ptrdiff_t>(rows));
                for (size_t y = 0; y < rows; ++y) {
                    flushRow(canvas_ + y * pitch_, frame_.destination.row(static_cast<ptrdiff_t>(top + y)) + left,
                             cols + 2 * radius_, y + 2 < rows ? 2 * frame_.destination.pitch() : 0);
                }
            }
        }
    }

private:
    static constexpr size_t kMinCols = 128;  // of the centres that draw on a canvas
    static constexpr size_t kCanvas = 19456, kMaxPitch = 768;
    static constexpr size_t kColsBefore = 2;  // values left of a row's own

    /// Draws the rows of centres whose discs meet the canvas.
    HWY_INLINE void drawCentres(size_t left, size_t cols, ptrdiff_t top, ptrdiff_t rows) {
        const auto radius = static_cast<ptrdiff_t>(radius_);
        const ptrdiff_t first = std::max<ptrdiff_t>(0, top - 2 * radius);
        const ptrdiff_t end = std::min(static_cast<ptrdiff_t>(frame_.centres.rows), top + rows);
        if (first >= end) return;
        writeRow(first - 1, left, cols);
        bool next = writeRow(first, left, cols);
        for (ptrdiff_t j = first; j < end; ++j) {
            const bool any = next;
            next = writeRow(j + 1, left, cols);
            if (!any) continue;
            const ptrdiff_t middle = j + radius - top;
            if (shares_.first() == 0) drawNearest(valuesOfRow(j), cols, middle, rows);
            eachValue(valuesOfRow(j), cols, [=, this](size_t i, L08 value) HWY_ATTR {
                const Sector sector = shares_.isRound()
                                          ? Sector(valuesOfRow(j - 1) + i, valuesOfRow(j) + i, valuesOfRow(j + 1) + i)
                                          : Sector(shares_.isAbove());
                Shares::fitOneVector(radius_) ? stamp<true>(i + radius_, middle, rows, value, sector)
                                              : stamp<false>(i + radius_, middle, rows, value, sector);
            });
        }
    }

    /// Writes the values of a row of centres and of the columns beside them. Returns false if all are 0.
    HWY_INLINE bool writeRow(ptrdiff_t j, size_t left, size_t cols) {
        L08* const values = valuesOfRow(j);
        if (j < 0 || j >= static_cast<ptrdiff_t>(frame_.centres.rows)) {
            std::memset(values - kColsBefore, 0, kColsBefore + cols + kPadding);
            return false;
        }
        const size_t before = left == 0 ? 0 : 1;
        const size_t after = left + cols == frame_.centres.cols ? 0 : 1;
        values[-1] = 0;
        std::memset(values + cols, 0, kPadding);
        return writeValues(frame_, j, left - before, before + cols + after, values - before);
    }
    L08* valuesOfRow(ptrdiff_t j) { return values_[(j + 3) % 3] + kColsBefore; }

    /// Draws what a row of centres gives to itself and to the rows beside it, at distances 0 and 1 of a round disc.
    HWY_INLINE void drawNearest(const L08* values, size_t cols, ptrdiff_t middle, ptrdiff_t rows) {
        const D8 d;
        for (ptrdiff_t y = std::max<ptrdiff_t>(0, middle - 1); y < std::min(rows, middle + 2); ++y) {
            if (y != middle && !shares_.isRound()) continue;
            L08* const pixels = canvas(y) + radius_ - 1;
            for (size_t i = 0; i < cols + 2; i += kBlock8) {
                const L08* const own = values + i - 1;
                const V8 drawn = shares_.isRound() ? drawnNearby(own, y != middle, radius_)
                                                   : drawnOnItself(hn::LoadU(d, own), radius_);
                hn::StoreU(hn::Max(drawn, hn::LoadU(d, pixels + i)), d, pixels + i);
            }
        }
    }

    /// A value / radius, as an integer and a fraction in 65536ths that is rounded up. The error of a product with a
    /// share is less than the 1 / radius that would change the quotient.
    struct ScaledValue {
        V16 whole, part;

        HWY_INLINE V8 drawn(V8 shares) const {
            const D16 d;
            const V16 both = hn::BitCast(d, shares), odds = hn::Set(d, 0xFF00);
            const V16 even = hn::MulHigh(hn::AndNot(odds, both), part), odd = hn::MulHigh(hn::And(odds, both), part);
            return hn::Add(bytes(hn::Mul(both, whole)), bytes(hn::OrAnd(even, odd, odds)));
        }
    };
    HWY_INLINE ScaledValue scaledValue(L08 value) const {
        const D16 d;
        const uint64_t parts = (value * reciprocal_ >> 16) + 1;
        return {hn::Set(d, static_cast<uint16_t>(parts >> 16)), hn::Set(d, static_cast<uint16_t>(parts))};
    }

    template <bool oneVector>
    HWY_INLINE void stamp(size_t column, ptrdiff_t middle, ptrdiff_t rows, L08 value, const Sector& sector) {
        const ScaledValue parts = scaledValue(value);
        const ptrdiff_t first = shares_.first(), end = shares_.end();
        const auto pitch = static_cast<ptrdiff_t>(pitch_);
        L08* const pixels = canvas(middle) + column - radius_;
        const ptrdiff_t up = std::min(middle + 1, sector.keepsAbove() ? end : std::min<ptrdiff_t>(end, 1));
        raiseRows<oneVector>(pixels, -pitch, std::max(first, middle - rows + 1), up, parts, sector, -1);
        const ptrdiff_t down = sector.keepsBelow() ? std::min(end, rows - middle) : 1;
        raiseRows<oneVector>(pixels, pitch, std::max(std::max<ptrdiff_t>(1, first), -middle), down, parts, sector, 1);
    }

    /// Draws the rows first to end - 1 of the sector, counted from the middle in one direction, in full vectors.
    template <bool oneVector>
    HWY_INLINE void raiseRows(L08* pixels, ptrdiff_t pitch, ptrdiff_t first, ptrdiff_t end, const ScaledValue& value,
                              const Sector& sector, int16_t direction) {
        if constexpr (oneVector) {
            for (ptrdiff_t dy = first; dy < end; ++dy) raiseVector(pixels + dy * pitch, shares_.row(dy), value);
        } else {
            writeLimits(first, end, sector, direction);
            for (ptrdiff_t dy = first; dy < end; ++dy) {
                for (ptrdiff_t x = begin_[dy]; x < end_[dy]; x += static_cast<ptrdiff_t>(kBlock8)) {
                    x = std::min<ptrdiff_t>(x, shares_.lastVector()[dy]);
                    raiseVector(pixels + dy * pitch + x, shares_.row(dy) + x, value);
                }
            }
        }
    }

    /// Writes where the rows of a sector begin and end.
    HWY_INLINE void writeLimits(ptrdiff_t first, ptrdiff_t end, const Sector& sector, int16_t direction) {
        const DI16 d;
        const VI16 middle = hn::Set(d, static_cast<int16_t>(radius_)), one = hn::Set(d, 1);
        for (ptrdiff_t k = first; k < end; k += static_cast<ptrdiff_t>(kBlock16)) {
            const VI16 away = hn::Iota(d, static_cast<int16_t>(k));
            const VI16 dy = direction < 0 ? hn::Neg(away) : away;
            const VI16 halfWidth = hn::LoadU(d, shares_.halfWidths() + k);
            const VI16 begin = hn::Sub(middle, sector.left(dy, halfWidth));
            const VI16 endOfRow = hn::Add(hn::Add(middle, one), sector.right(dy, halfWidth));
            hn::StoreU(begin, d, begin_ + k);
            hn::StoreU(endOfRow, d, end_ + k);
        }
    }

    static HWY_INLINE void raiseVector(L08* pixels, const L08* shares, const ScaledValue& value) {
        const D8 d;
        hn::StoreU(hn::Max(value.drawn(hn::LoadU(d, shares)), hn::LoadU(d, pixels)), d, pixels);
    }

    L08* canvas(ptrdiff_t row) { return canvas_ + row * static_cast<ptrdiff_t>(pitch_); }

    const Frame& frame_;
    const Shares& shares_;
    const size_t radius_;
    const uint64_t reciprocal_;  // 1 / radius in units of 2^-32, rounded up
    const size_t pitch_;
    const size_t rows_;
    int16_t begin_[Shares::kMaxRadius + kPadding], end_[Shares::kMaxRadius + kPadding];
    L08 values_[3][kColsBefore + kMaxPitch + kPadding] = {};
    L08 canvas_[kCanvas + kPadding];
};

/// Not inlined, so that the shares are not on the stack together with other scratch.
HWY_NOINLINE void drawStamps(const Frame& frame, auto... above) {
    Shares shares(frame.disc, above...);
    while (shares.next()) drawWith<SoftStamp>(frame, shares);
}

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
