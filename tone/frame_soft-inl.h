// SPDX-License-Identifier: MIT

// Soft frames, compiled once for every level.
#if defined(OMNAR_TONE_FRAME_SOFT_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAME_SOFT_INL_H_
#undef OMNAR_TONE_FRAME_SOFT_INL_H_
#else
#define OMNAR_TONE_FRAME_SOFT_INL_H_
#endif

#include "tone/frame_distances-inl.h"
#include "tone/frame_kernels.h"

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
    /// No root comes nearer than 1 / (8 * kWidestByDistances + 4) to where it would round differently.
    HWY_INLINE void writeByRoots(size_t x, hn::Vec<DI32> squares) {
        const DF32 d;
        const hn::Rebind<uint8_t, DI32> d8;
        const auto distances = hn::Floor(hn::Add(hn::Sqrt(hn::ConvertTo(d, squares)), hn::Set(d, 0.5F)));
        hn::StoreU(hn::DemoteTo(d8, fall_.at(distances)), d8, levels_ + x);
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

/// Where centres have many levels and discs are small: each row of centres draws the rows of its discs, a block of pixels
/// at a time. Of the centres at one distance from a pixel, the one with the greatest level draws the most.
class SoftWalk {
public:
    /// Wider discs have more distances than there are centres worth looking at.
    static bool fits(size_t reach) { return reach <= kMostReach; }

    explicit SoftWalk(const Frame& frame)
        : frame_(frame), reach_(frame.disc.reach), height_(2 * reach_ + 1), most_(columnsOfTile(height_)) {
        eachHalfWidth(frame.disc, [this](size_t dy, size_t width) {
            halfWidths_[dy] = width;
            for (size_t dx = 0; dx <= width; ++dx) {
                const auto distance = static_cast<size_t>(frame_.disc.row(static_cast<ptrdiff_t>(dy))[dx]);
                factors_[dy][dx] = distance < 2 ? uint16_t{0} : shareOf(distance, reach_);
            }
        });
    }

    HWY_INLINE void draw() {
        const size_t cols = frame_.centres.cols + 2 * reach_;
        for (size_t left = 0; left < cols; left += most_) drawTile(left, std::min(most_, cols - left));
    }

private:
    static constexpr size_t kMostReach = 8;
    static constexpr size_t kScratch = 14336;
    static constexpr size_t kMostCols = kScratch / 3;

    /// Rows of scratch are an odd multiple of 64 bytes apart, so that they do not fall on the same places of a cache.
    static size_t columnsOfTile(size_t height) { return (kScratch / height - 64) / 128 * 128 + 64; }

    HWY_INLINE void drawTile(size_t left, size_t cols) {
        const Entries entries = entriesOf(frame_, left, cols);
        const size_t rows = frame_.centres.rows + 2 * reach_;
        std::memset(levels_, 0, sizeof levels_);
        std::memset(rows_, 0, sizeof rows_);
        for (size_t y = 0; y < rows; ++y) {
            if (y < frame_.centres.rows) {
                const bool any = writeLevels(frame_, static_cast<ptrdiff_t>(y), entries.column, entries.count,
                                             levels_ + entries.first);
                for (size_t x = 0; any && x < cols; x += kBlock8) drawBlock((y + reach_) % height_, x);
            }
            pour(rows_ + y % height_ * most_, frame_.target.row(static_cast<ptrdiff_t>(y)) + left, cols,
                 y + 2 < rows ? 2 * frame_.target.pitch() : 0);
        }
    }

    HWY_INLINE void drawBlock(size_t middle, size_t x) {
        if (!anyOf(levels_ + x, kBlock8 + 2 * reach_)) return;

        // The greater of both levels at either side, its even pixels and its odd ones apart.
        const D16 d;
        const V16 odds = hn::Set(d, 0xFF00);
        const L08* const own = levels_ + x + reach_;
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
            if (dy < 2) drawn = hn::Max(drawn, nearest(own, dy));
            raise(middle >= dy ? middle - dy : middle + height_ - dy, x, drawn);
            if (dy != 0) raise(middle + dy < height_ ? middle + dy : middle + dy - height_, x, drawn);
        }
    }

    /// What centres draw on their neighbours, their level, and on themselves, which may wrap: level + level / reach.
    HWY_INLINE V8 nearest(const L08* own, size_t dy) const {
        const D8 d;
        const V8 level = hn::LoadU(d, own);
        const V8 sides = hn::Max(hn::LoadU(d, own - 1), hn::LoadU(d, own + 1));
        if (dy == 1) return hn::Max(level, sides);
        if (reach_ == 1) return hn::Max(hn::Add(level, level), sides);  // a factor that 16 bits do not hold
        const D16 d16;
        const V16 both = hn::BitCast(d16, level), odds = hn::Set(d16, 0xFF00);
        const V16 factor = hn::Set(d16, shareOf(reach_, reach_));
        const V16 even = hn::MulHigh(hn::AndNot(odds, both), factor), odd = hn::MulHigh(hn::And(both, odds), factor);
        return hn::Max(hn::Add(level, bytes(hn::OrAnd(even, odd, odds))), sides);
    }

    HWY_INLINE void raise(size_t row, size_t x, V8 levels) {
        const D8 d;
        L08* const pixels = rows_ + row * most_ + x;
        hn::StoreU(hn::Max(hn::LoadU(d, pixels), levels), d, pixels);
    }

    const Frame& frame_;
    const size_t reach_;
    const size_t height_;  // rows that go round
    const size_t most_;    // columns of a tile
    size_t halfWidths_[kMostReach + 1];
    uint16_t factors_[kMostReach + 1][kMostReach + 1] = {};
    L08 levels_[kMostCols + 2 * kRoom];
    L08 rows_[kScratch];
};

/// Where centres have many levels and discs are wider, each centre draws its disc by itself, in vectors, by the same
/// factors.
class SoftStamp {
public:
    static bool fits(size_t reach) { return reach <= kMostReach; }

    explicit SoftStamp(const Frame& frame)
        : frame_(frame),
          reach_(frame.disc.reach),
          pitch_((2 * reach_ + kBlock8 + kLeastCols + kBlock8 - 1) / kBlock8 * kBlock8),
          rows_(kCanvas / pitch_) {
        eachHalfWidth(frame.disc, [this](size_t dy, size_t dx) { halfWidths_[dy] = dx; });
    }

    /// The disc's rows by their distance from the middle, as many at a time as there is room for their factors.
    HWY_INLINE void draw() {
        for (size_t dy = 0; dy <= reach_;) {
            first_ = dy;
            size_t used = 0;
            for (; dy <= reach_ && used + blocksOf(dy) <= kBlocks; ++dy) {
                slotOf_[dy] = static_cast<uint16_t>(used);
                for (size_t block = 0; block < blocksOf(dy); ++block) writeFactors(dy, block, used++);
            }
            end_ = dy;
            drawRows();
        }
    }

private:
    static constexpr size_t kMostReach = 160;
    static constexpr size_t kLeastCols = 128;  // of the centres that draw on a canvas
    static constexpr size_t kCanvas = 12288, kMostPitch = 640;
    static constexpr size_t kBlocks = 6144 / (2 * kBlock8);

    size_t pixelsOf(size_t dy) const { return 2 * halfWidths_[dy] + 1; }
    size_t blocksOf(size_t dy) const { return (pixelsOf(dy) + kBlock8 - 1) / kBlock8; }

    /// Factors of the even pixels of a block, then those of the odd ones, so that a word's two bytes are computed
    /// apart.
    void writeFactors(size_t dy, size_t block, size_t slot) {
        for (size_t i = 0; i < kBlock8; ++i) {
            const size_t x = block * kBlock8 + i;
            const auto dx = static_cast<ptrdiff_t>(x) - static_cast<ptrdiff_t>(halfWidths_[dy]);
            const auto distance =
                x < pixelsOf(dy) ? static_cast<size_t>(frame_.disc.row(static_cast<ptrdiff_t>(dy))[dx]) : 0;
            factors_[slot][i % 2][i / 2] = distance < 2 ? uint16_t{0} : shareOf(distance, reach_);
        }
    }

    /// Discs are drawn into a canvas first: in rows of the target, which often lie a multiple of a power of two apart,
    /// loads would wait for stores that only look as if they overlapped.
    HWY_INLINE void drawRows() {
        const size_t most = pitch_ - 2 * reach_ - kBlock8;
        std::memset(canvas_, 0, sizeof canvas_);
        for (size_t left = 0; left < frame_.centres.cols; left += most) {
            const size_t cols = std::min(most, frame_.centres.cols - left);
            for (size_t top = 0; top < frame_.centres.rows + 2 * reach_; top += rows_) {
                const size_t rows = std::min(rows_, frame_.centres.rows + 2 * reach_ - top);
                const size_t bottom = std::min(frame_.centres.rows, top + rows);
                for (size_t j = std::max(top, 2 * reach_) - 2 * reach_; j < bottom; ++j) {
                    stampRow(j, left, cols, static_cast<ptrdiff_t>(j + reach_ - top), static_cast<ptrdiff_t>(rows));
                }
                for (size_t y = 0; y < rows; ++y) {
                    pour(canvas_ + y * pitch_, frame_.target.row(static_cast<ptrdiff_t>(top + y)) + left,
                         cols + 2 * reach_, 0);
                }
            }
        }
    }

    HWY_INLINE void stampRow(size_t j, size_t left, size_t cols, ptrdiff_t middle, ptrdiff_t rows) {
        if (!writeLevels(frame_, static_cast<ptrdiff_t>(j), left, cols, levels_)) return;
        eachLevel(levels_, cols, [=, this](size_t i, L08 level) HWY_ATTR { stamp(i + reach_, middle, rows, level); });
    }

    HWY_INLINE void stamp(size_t column, ptrdiff_t middle, ptrdiff_t rows, L08 level) {
        const auto first = static_cast<ptrdiff_t>(first_), end = static_cast<ptrdiff_t>(end_);
        for (ptrdiff_t dy = std::max(first, middle - rows + 1); dy < std::min(end, middle + 1); ++dy) {
            raise(canvas(middle - dy) + column, static_cast<size_t>(dy), level);
        }
        for (ptrdiff_t dy = std::max(first, -middle); dy < std::min(end, rows - middle); ++dy) {
            raise(canvas(middle + dy) + column, static_cast<size_t>(dy), level);
        }
        if (first != 0) return;
        for (ptrdiff_t y = std::max<ptrdiff_t>(0, middle - 1); y < std::min(rows, middle + 2); ++y) {
            for (size_t x = column - 1; x <= column + 1; ++x) {
                L08& pixel = canvas(y)[x];
                pixel = std::max(pixel, y == middle && x == column ? softened(level, 0, frame_.disc.reach) : level);
            }
        }
    }

    /// Row dy of a disc whose middle is a pixel of that row.
    HWY_INLINE void raise(L08* middle, size_t dy, L08 level) const {
        const D8 d;
        const D16 d16;
        const V16 even = hn::Set(d16, level), odd = hn::Set(d16, static_cast<uint16_t>(level << 8));
        L08* const row = middle - halfWidths_[dy];
        for (size_t block = 0; block < blocksOf(dy); ++block) {
            const auto& factors = factors_[slotOf_[dy] + block];
            const V16 low = hn::MulHigh(hn::LoadU(d16, factors[0]), even);
            const V16 high = hn::MulHigh(hn::LoadU(d16, factors[1]), odd);
            const V8 levels = bytes(hn::OrAnd(low, high, hn::Set(d16, 0xFF00)));
            L08* const pixels = row + block * kBlock8;
            hn::StoreU(hn::Max(levels, hn::LoadU(d, pixels)), d, pixels);
        }
    }

    L08* canvas(ptrdiff_t row) { return canvas_ + row * static_cast<ptrdiff_t>(pitch_); }

    const Frame& frame_;
    const size_t reach_;
    const size_t pitch_;
    const size_t rows_;
    size_t halfWidths_[kMostReach + 1];
    size_t first_ = 0, end_ = 0;       // the rows whose factors are there
    uint16_t slotOf_[kMostReach + 1];  // where those of a row begin
    uint16_t factors_[kBlocks][2][kBlock16];
    L08 levels_[kMostPitch + kRoom];
    L08 canvas_[kCanvas + kRoom];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
