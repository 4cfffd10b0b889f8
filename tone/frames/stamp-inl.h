// SPDX-License-Identifier: MIT

// Soft frames of many levels that are too wide for rows of centres, compiled once for every level.
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

/// What a disc draws, as shares of its centre's level in `reach`-ths: reach + 1 - distance. Rows are taken by their distance
/// from the middle, as many at a time as there is room for. The pixels of a row count from 0, a reach to the left of the
/// middle. The middle itself is raised apart and has no share.
class Shares {
public:
    static constexpr size_t kMostReach = 254;

    /// Of the rows of a round disc, which are the same above and below.
    explicit Shares(const Disc& disc) : disc_(disc), half_(Half::both) {
        eachHalfWidth(disc, [this](size_t dy, size_t dx) { halfWidths_[dy] = static_cast<int16_t>(dx); });
    }

    /// Of the rows above the middle or below it, for tables of other distances.
    Shares(const Disc& disc, bool above) : disc_(disc), half_(above ? Half::above : Half::below) {
        std::fill_n(halfWidths_, disc.reach + 1, static_cast<int16_t>(disc.reach));
    }

    /// Whether there are shares for a table of other distances: none may be below 1 but that of the middle, which is 0.
    static bool fit(const Disc& disc) {
        const auto reach = static_cast<ptrdiff_t>(disc.reach);
        if (disc.reach > kMostReach || disc.distance(0, 0) != 0) return false;
        size_t below1 = 0;
        for (ptrdiff_t dy = -reach; dy <= reach; ++dy) {
            for (ptrdiff_t dx = -reach; dx <= reach; ++dx) below1 += disc.row(dy)[dx] < 1;
        }
        return below1 == 1;
    }

    bool areRound() const { return half_ == Half::both; }
    bool areAbove() const { return half_ == Half::above; }

    static bool fitOneVector(size_t reach) { return 2 * reach + 1 <= kBlock8; }

    /// Goes on to the next rows. False if all were there.
    HWY_INLINE bool next() {
        first_ = end_;
        for (size_t used = 0; end_ <= disc_.reach; ++end_) {
            const size_t width = static_cast<size_t>(halfWidths_[end_]), count = std::max(2 * width + 1, kBlock8);
            if (used + count > kShares) break;
            const size_t before = fitOneVector(disc_.reach) ? 0 : disc_.reach - width;
            from_[end_] = static_cast<int16_t>(used) - static_cast<int16_t>(before);
            lastVector_[end_] = static_cast<int16_t>(before + count - kBlock8);
            const auto dy = static_cast<ptrdiff_t>(end_);
            std::memset(shares_ + used, 0, count);
            write(disc_.row(areAbove() ? -dy : dy) - disc_.reach + before, shares_ + used,
                  std::min(count, 2 * size_t{disc_.reach} + 1 - before));
            used += count;
        }
        return first_ < end_;
    }

    ptrdiff_t first() const { return static_cast<ptrdiff_t>(first_); }
    ptrdiff_t end() const { return static_cast<ptrdiff_t>(end_); }
    const int16_t* halfWidths() const { return halfWidths_; }
    /// The last pixel that a whole vector of shares begins at, by rows; the first one that has a share, or an earlier one.
    const int16_t* lastVector() const { return lastVector_; }
    const L08* row(ptrdiff_t dy) const { return shares_ + from_[dy]; }

private:
    static constexpr size_t kShares = 16384;
    enum class Half { both, above, below };

    HWY_INLINE void write(const int* distances, L08* shares, size_t n) const {
        const auto reach = static_cast<int>(disc_.reach);
        for (size_t x = 0; x < n; ++x) {
            const bool draws = distances[x] >= 1 && distances[x] <= reach;
            shares[x] = draws ? static_cast<L08>(reach + 1 - distances[x]) : L08{0};
        }
    }

    const Disc disc_;
    const Half half_;
    size_t first_ = 0, end_ = 0;  // the rows that are there
    int16_t halfWidths_[kMostReach + kRoom] = {};
    int16_t lastVector_[kMostReach + kRoom] = {};
    int16_t from_[kMostReach + 1];  // where the share of a row's pixel 0 is, or would be
    L08 shares_[kShares];
};

/// Where centres have many levels and discs are wider, each centre draws its sector of the disc by itself, in vectors.
class SoftStamp {
public:
    SoftStamp(const Frame& frame, const Shares& shares)
        : frame_(frame),
          shares_(shares),
          reach_(frame.disc.reach),
          part_((uint64_t{1} << 32) / frame.disc.reach + 1),
          pitch_((2 * reach_ + kBlock8 + kLeastCols + kBlock8 - 1) / kBlock8 * kBlock8),
          rows_(kCanvas / pitch_) {}

    /// Discs are drawn into a canvas first: in rows of the target, which often lie a multiple of a power of two apart,
    /// loads would wait for stores that only look as if they overlapped.
    HWY_INLINE void draw() {
        const size_t most = pitch_ - 2 * reach_ - kBlock8;
        std::memset(canvas_, 0, sizeof canvas_);
        for (size_t left = 0; left < frame_.centres.cols; left += most) {
            const size_t cols = std::min(most, frame_.centres.cols - left);
            for (size_t top = 0; top < frame_.centres.rows + 2 * reach_; top += rows_) {
                const size_t rows = std::min(rows_, frame_.centres.rows + 2 * reach_ - top);
                drawCentres(left, cols, static_cast<ptrdiff_t>(top), static_cast<ptrdiff_t>(rows));
                for (size_t y = 0; y < rows; ++y) {
                    pour(canvas_ + y * pitch_, frame_.target.row(static_cast<ptrdiff_t>(top + y)) + left,
                         cols + 2 * reach_, y + 2 < rows ? 2 * frame_.target.pitch() : 0);
                }
            }
        }
    }

private:
    static constexpr size_t kLeastCols = 128;  // of the centres that draw on a canvas
    static constexpr size_t kCanvas = 19456, kMostPitch = 768;
    static constexpr size_t kBefore = 2;  // levels to the left of a row's own

    /// Draws what the rows of centres within reach of a canvas draw on it.
    HWY_INLINE void drawCentres(size_t left, size_t cols, ptrdiff_t top, ptrdiff_t rows) {
        const auto reach = static_cast<ptrdiff_t>(reach_);
        const ptrdiff_t first = std::max<ptrdiff_t>(0, top - 2 * reach);
        const ptrdiff_t end = std::min(static_cast<ptrdiff_t>(frame_.centres.rows), top + rows);
        if (first >= end) return;
        writeRow(first - 1, left, cols);
        bool next = writeRow(first, left, cols);
        for (ptrdiff_t j = first; j < end; ++j) {
            const bool any = next;
            next = writeRow(j + 1, left, cols);
            if (!any) continue;
            const ptrdiff_t middle = j + reach - top;
            if (shares_.first() == 0) drawNearest(levelsOf(j), cols, middle, rows);
            eachLevel(levelsOf(j), cols, [=, this](size_t i, L08 level) HWY_ATTR {
                const Sector sector = shares_.areRound()
                                          ? Sector(levelsOf(j - 1) + i, levelsOf(j) + i, levelsOf(j + 1) + i)
                                          : Sector(shares_.areAbove());
                Shares::fitOneVector(reach_) ? stamp<true>(i + reach_, middle, rows, level, sector)
                                             : stamp<false>(i + reach_, middle, rows, level, sector);
            });
        }
    }

    /// The levels of a row of centres and of the columns beside them. False if it has none.
    HWY_INLINE bool writeRow(ptrdiff_t j, size_t left, size_t cols) {
        L08* const levels = levelsOf(j);
        if (j < 0 || j >= static_cast<ptrdiff_t>(frame_.centres.rows)) {
            std::memset(levels - kBefore, 0, kBefore + cols + kRoom);
            return false;
        }
        const size_t before = left == 0 ? 0 : 1;
        const size_t after = left + cols == frame_.centres.cols ? 0 : 1;
        levels[-1] = 0;
        std::memset(levels + cols, 0, kRoom);
        return writeLevels(frame_, j, left - before, before + cols + after, levels - before);
    }
    L08* levelsOf(ptrdiff_t j) { return levels_[(j + 3) % 3] + kBefore; }

    /// What a row of centres draws on itself and on the rows beside it, at distances of 0 and 1 of a round disc.
    HWY_INLINE void drawNearest(const L08* levels, size_t cols, ptrdiff_t middle, ptrdiff_t rows) {
        const D8 d;
        for (ptrdiff_t y = std::max<ptrdiff_t>(0, middle - 1); y < std::min(rows, middle + 2); ++y) {
            if (y != middle && !shares_.areRound()) continue;
            L08* const pixels = canvas(y) + reach_ - 1;
            for (size_t i = 0; i < cols + 2; i += kBlock8) {
                const L08* const own = levels + i - 1;
                const V8 drawn = shares_.areRound() ? drawnNearby(own, y != middle, reach_)
                                                    : drawnOnItself(hn::LoadU(d, own), reach_);
                hn::StoreU(hn::Max(drawn, hn::LoadU(d, pixels + i)), d, pixels + i);
            }
        }
    }

    /// A level in `reach`-ths, as a whole part and one in 65536ths, rounded up: a share is off by less than the 1 / reach
    /// that would change the quotient.
    struct Level {
        V16 whole, part;

        HWY_INLINE V8 drawn(V8 shares) const {
            const D16 d;
            const V16 both = hn::BitCast(d, shares), odds = hn::Set(d, 0xFF00);
            const V16 even = hn::MulHigh(hn::AndNot(odds, both), part), odd = hn::MulHigh(hn::And(odds, both), part);
            return hn::Add(bytes(hn::Mul(both, whole)), bytes(hn::OrAnd(even, odd, odds)));
        }
    };
    HWY_INLINE Level levelOf(L08 level) const {
        const D16 d;
        const uint64_t parts = (level * part_ >> 16) + 1;
        return {hn::Set(d, static_cast<uint16_t>(parts >> 16)), hn::Set(d, static_cast<uint16_t>(parts))};
    }

    template <bool oneVector>
    HWY_INLINE void stamp(size_t column, ptrdiff_t middle, ptrdiff_t rows, L08 level, const Sector& sector) {
        const Level parts = levelOf(level);
        const ptrdiff_t first = shares_.first(), end = shares_.end();
        const auto pitch = static_cast<ptrdiff_t>(pitch_);
        L08* const pixels = canvas(middle) + column - reach_;
        const ptrdiff_t up = std::min(middle + 1, sector.keepsAbove() ? end : std::min<ptrdiff_t>(end, 1));
        raiseRows<oneVector>(pixels, -pitch, std::max(first, middle - rows + 1), up, parts, sector, -1);
        const ptrdiff_t down = sector.keepsBelow() ? std::min(end, rows - middle) : 1;
        raiseRows<oneVector>(pixels, pitch, std::max(std::max<ptrdiff_t>(1, first), -middle), down, parts, sector, 1);
    }

    /// Rows of the disc by their distance from its middle, in one direction: of each the sector, rounded up to vectors.
    template <bool oneVector>
    HWY_INLINE void raiseRows(L08* pixels, ptrdiff_t pitch, ptrdiff_t first, ptrdiff_t end, const Level& level,
                              const Sector& sector, int16_t direction) {
        if constexpr (oneVector) {
            for (ptrdiff_t dy = first; dy < end; ++dy) raiseVector(pixels + dy * pitch, shares_.row(dy), level);
        } else {
            writeLimits(first, end, sector, direction);
            for (ptrdiff_t dy = first; dy < end; ++dy) {
                for (ptrdiff_t x = from_[dy]; x < end_[dy]; x += static_cast<ptrdiff_t>(kBlock8)) {
                    x = std::min<ptrdiff_t>(x, shares_.lastVector()[dy]);
                    raiseVector(pixels + dy * pitch + x, shares_.row(dy) + x, level);
                }
            }
        }
    }

    /// Where the rows of a sector begin and end.
    HWY_INLINE void writeLimits(ptrdiff_t first, ptrdiff_t end, const Sector& sector, int16_t direction) {
        const DI16 d;
        const VI16 middle = hn::Set(d, static_cast<int16_t>(reach_)), one = hn::Set(d, 1);
        for (ptrdiff_t k = first; k < end; k += static_cast<ptrdiff_t>(kBlock16)) {
            const VI16 away = hn::Iota(d, static_cast<int16_t>(k));
            const VI16 dy = direction < 0 ? hn::Neg(away) : away;
            const VI16 halfWidth = hn::LoadU(d, shares_.halfWidths() + k);
            const VI16 from = hn::Sub(middle, sector.left(dy, halfWidth));
            const VI16 to = hn::Add(hn::Add(middle, one), sector.right(dy, halfWidth));
            hn::StoreU(from, d, from_ + k);
            hn::StoreU(to, d, end_ + k);
        }
    }

    static HWY_INLINE void raiseVector(L08* pixels, const L08* shares, const Level& level) {
        const D8 d;
        hn::StoreU(hn::Max(level.drawn(hn::LoadU(d, shares)), hn::LoadU(d, pixels)), d, pixels);
    }

    L08* canvas(ptrdiff_t row) { return canvas_ + row * static_cast<ptrdiff_t>(pitch_); }

    const Frame& frame_;
    const Shares& shares_;
    const size_t reach_;
    const uint64_t part_;  // 1 / reach in 2^32ths, rounded up
    const size_t pitch_;
    const size_t rows_;
    int16_t from_[Shares::kMostReach + kRoom], end_[Shares::kMostReach + kRoom];
    L08 levels_[3][kBefore + kMostPitch + kRoom] = {};
    L08 canvas_[kCanvas + kRoom];
};

/// A function of its own for the shares, which are not on the stack with other scratch.
HWY_NOINLINE void drawStamps(const Frame& frame, auto... above) {
    Shares shares(frame.disc, above...);
    while (shares.next()) drawBy<SoftStamp>(frame, shares);
}

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
