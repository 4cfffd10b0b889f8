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

using DI32 = hn::Repartition<int32_t, D8>;
using DF32 = hn::Repartition<float, D8>;
using D8Half = hn::Half<D8>;

constexpr size_t kBlock16 = hn::MaxLanes(D16());

/// Where all centres have one level, the nearest of them draws the most. Only what a centre draws on itself may be less
/// than what its neighbours draw there, so that it is told apart.
class SoftRow {
public:
    SoftRow(const Disc& disc, L08 level)
        : reach_(disc.reach), level_(level), onItself_(softened(level, 0, disc.reach)) {
        std::fill(std::begin(squares_), std::end(squares_), kFarSquare);
    }

    HWY_INLINE void operator()(L08* out, const uint8_t* distances, const uint8_t* toOthers, size_t cols) {
        for (size_t i = 0; i < cols + 2 * reach_; i += kBlock16) {
            hn::StoreU(squared(distances + i), D16(), squares_ + i);
        }
        for (size_t x = 0; x < cols; x += kBlock16)
            writeLevels(x, leastSquare(squares_ + x + reach_, toOthers + x + reach_));
        const uint8_t* const own = distances + reach_;
        eachBlock(cols, [=, this](size_t i, auto part) HWY_ATTR {
            const D8 d;
            const M8 isCentre = hn::Eq(hn::LoadU(d, own + i), hn::Zero(d));
            const V8 drawn = hn::Max(hn::LoadU(d, levels_ + i), hn::IfThenElseZero(isCentre, hn::Set(d, onItself_)));
            if (hn::AllTrue(d, hn::Eq(drawn, hn::Zero(d)))) return;
            storeVector(d, out + i, part, hn::Max(drawn, loadVector(d, out + i, part)));
        });
    }

private:
    static constexpr uint16_t kFarSquare = 65535;

    static HWY_INLINE V16 squared(const uint8_t* distances) {
        const D16 d;
        const V16 distance = hn::PromoteTo(d, hn::LoadU(D8Half(), distances));
        return hn::IfThenElse(hn::Eq(distance, hn::Set(d, kFar)), hn::Set(d, kFarSquare), hn::Mul(distance, distance));
    }

    /// The squared distances to the nearest centres other than the pixels themselves. Columns that are farther away
    /// than the nearest centre so far cannot have a nearer one.
    HWY_INLINE V16 leastSquare(const uint16_t* own, const uint8_t* toOthers) const {
        const D16 d;
        V16 least = squared(toOthers);
        for (size_t dx = 1; dx <= reach_; ++dx) {
            const V16 square = hn::Set(d, static_cast<uint16_t>(dx * dx));
            if (dx % 4 == 0 && hn::AllTrue(d, hn::Eq(hn::Max(least, square), square))) break;
            const V16 nearer = hn::Min(hn::LoadU(d, own - dx), hn::LoadU(d, own + dx));
            least = hn::Min(least, hn::SaturatedAdd(nearer, square));
        }
        return least;
    }

    /// Twin of softened() for distances of at least 1, given as squares. Floating point is exact enough: no root comes
    /// nearer than 1 / 2036 to where it would round differently, and no quotient, moved up by half a part, nearer than
    /// 1 / 508 to the next whole number.
    HWY_INLINE void writeLevels(size_t x, V16 squares) {
        const D16 d;
        const auto limit = static_cast<uint16_t>(reach_ * reach_ + reach_);
        if (hn::AllTrue(d, hn::Gt(squares, hn::Set(d, limit)))) {
            hn::StoreU(hn::Zero(D8Half()), D8Half(), levels_ + x);
            return;
        }
        const hn::Half<D16> half;
        writeQuarter(x, hn::LowerHalf(half, squares));
        writeQuarter(x + kBlock16 / 2, hn::UpperHalf(half, squares));
    }
    HWY_INLINE void writeQuarter(size_t x, hn::Vec<hn::Half<D16>> squares) {
        const DF32 d;
        const auto square = hn::ConvertTo(d, hn::PromoteTo(DI32(), squares));
        const auto distance = hn::Floor(hn::Add(hn::Sqrt(square), hn::Set(d, 0.5F)));
        const auto share = hn::Max(hn::Sub(hn::Set(d, static_cast<float>(reach_ + 1)), distance), hn::Zero(d));
        const auto product = hn::Add(hn::Mul(share, hn::Set(d, static_cast<float>(level_))), hn::Set(d, 0.5F));
        const auto level = hn::ConvertTo(DI32(), hn::Mul(product, hn::Set(d, 1.0F / static_cast<float>(reach_))));
        const hn::Rebind<uint8_t, DI32> d8;
        hn::StoreU(hn::DemoteTo(d8, level), d8, levels_ + x);
    }

    const size_t reach_;
    const L08 level_;
    const L08 onItself_;
    uint16_t squares_[kMostEntries + kRoom];
    L08 levels_[kMostEntries + kRoom];
};

/// Where centres have many levels, each draws its disc by itself, in vectors. A level is a factor of the disc's pixel
/// times the centre's level, in 65536ths:
///
///     factor = 65536 * (reach + 1 - distance) / reach
///     (reach + 1 - distance) * level / reach = factor * level / 65536
///
/// rounded up, which is off by less than 255 / 65536, less than the 1 / reach that would change the quotient. Distance
/// 1 has a factor that 16 bits do not hold; it and 0 belong to the 3 x 3 pixels in the middle, which are raised by
/// themselves.
class SoftStamp {
public:
    explicit SoftStamp(const Frame& frame) : frame_(frame), reach_(frame.disc.reach), halfWidths_(frame.disc) {}

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
    static constexpr size_t kRows = 64, kPitch = 640;
    static constexpr size_t kBlocks = 16384 / (2 * kBlock8);

    size_t pixelsOf(size_t dy) const { return 2 * size_t{halfWidths_.of[dy]} + 1; }
    size_t blocksOf(size_t dy) const { return (pixelsOf(dy) + kBlock8 - 1) / kBlock8; }

    /// Factors of the even pixels of a block, then those of the odd ones, so that a word's two bytes are computed
    /// apart.
    void writeFactors(size_t dy, size_t block, size_t slot) {
        for (size_t i = 0; i < kBlock8; ++i) {
            const size_t x = block * kBlock8 + i;
            const auto dx = static_cast<ptrdiff_t>(x) - halfWidths_.of[dy];
            const auto distance =
                x < pixelsOf(dy) ? static_cast<size_t>(frame_.disc.distance(dx, static_cast<ptrdiff_t>(dy))) : 0;
            const size_t factor = distance < 2 ? 0 : (65536 * (reach_ + 1 - distance) + reach_ - 1) / reach_;
            factors_[slot][i % 2][i / 2] = static_cast<uint16_t>(factor);
        }
    }

    /// Discs are drawn into a canvas first: in rows of the target, which often lie a multiple of a power of two apart,
    /// loads would wait for stores that only look as if they overlapped.
    HWY_INLINE void drawRows() {
        const size_t most = kPitch - 2 * reach_ - kBlock8;
        std::memset(canvas_, 0, sizeof canvas_);
        for (size_t left = 0; left < frame_.centres.cols; left += most) {
            const size_t cols = std::min(most, frame_.centres.cols - left);
            for (size_t top = 0; top < frame_.centres.rows + 2 * reach_; top += kRows) {
                const size_t rows = std::min(kRows, frame_.centres.rows + 2 * reach_ - top);
                const size_t bottom = std::min(frame_.centres.rows, top + rows);
                for (size_t j = std::max(top, 2 * reach_) - 2 * reach_; j < bottom; ++j) {
                    stampRow(j, left, cols, static_cast<ptrdiff_t>(j + reach_ - top), static_cast<ptrdiff_t>(rows));
                }
                for (size_t y = 0; y < rows; ++y) {
                    pour(canvas_[y], frame_.target.row(static_cast<ptrdiff_t>(top + y)) + left, cols + 2 * reach_);
                }
            }
        }
    }

    HWY_INLINE void stampRow(size_t j, size_t left, size_t cols, ptrdiff_t middle, ptrdiff_t rows) {
        writeLevels(frame_, static_cast<ptrdiff_t>(j), left, cols, levels_);
        for (size_t x = 0; x < cols; x += 8) {
            uint64_t eight;
            std::memcpy(&eight, levels_ + x, sizeof eight);
            if (eight == 0) continue;
            for (size_t i = x; i < std::min(cols, x + 8); ++i) {
                if (levels_[i] != 0) stamp(i + reach_, middle, rows, levels_[i]);
            }
        }
    }

    HWY_INLINE void stamp(size_t column, ptrdiff_t middle, ptrdiff_t rows, L08 level) {
        const auto first = static_cast<ptrdiff_t>(first_), end = static_cast<ptrdiff_t>(end_);
        for (ptrdiff_t dy = std::max(first, middle - rows + 1); dy < std::min(end, middle + 1); ++dy) {
            raise(canvas_[middle - dy] + column, static_cast<size_t>(dy), level);
        }
        for (ptrdiff_t dy = std::max(first, -middle); dy < std::min(end, rows - middle); ++dy) {
            raise(canvas_[middle + dy] + column, static_cast<size_t>(dy), level);
        }
        if (first != 0) return;
        for (ptrdiff_t y = std::max<ptrdiff_t>(0, middle - 1); y < std::min(rows, middle + 2); ++y) {
            for (size_t x = column - 1; x <= column + 1; ++x) {
                L08& pixel = canvas_[y][x];
                pixel = std::max(pixel, y == middle && x == column ? softened(level, 0, frame_.disc.reach) : level);
            }
        }
    }

    /// Row dy of a disc whose middle is a pixel of that row.
    HWY_INLINE void raise(L08* middle, size_t dy, L08 level) const {
        const D8 d;
        const D16 d16;
        const V16 even = hn::Set(d16, level), odd = hn::Set(d16, static_cast<uint16_t>(level << 8));
        L08* const row = middle - halfWidths_.of[dy];
        for (size_t block = 0; block < blocksOf(dy); ++block) {
            const auto& factors = factors_[slotOf_[dy] + block];
            const V16 low = hn::MulHigh(hn::LoadU(d16, factors[0]), even);
            const V16 high = hn::MulHigh(hn::LoadU(d16, factors[1]), odd);
            const V8 levels = bytes(hn::OrAnd(low, high, hn::Set(d16, 0xFF00)));
            L08* const pixels = row + block * kBlock8;
            hn::StoreU(hn::Max(levels, hn::LoadU(d, pixels)), d, pixels);
        }
    }

    const Frame& frame_;
    const size_t reach_;
    const HalfWidths halfWidths_;
    size_t first_ = 0, end_ = 0;  // the rows whose factors are there
    uint16_t slotOf_[256];        // where those of a row begin
    uint16_t factors_[kBlocks][2][kBlock16];
    L08 levels_[kPitch + kRoom];
    L08 canvas_[kRows][kPitch];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
