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

using DI32 = hn::Repartition<int32_t, D8>;
using DF32 = hn::Repartition<float, D8>;

constexpr size_t kBlock16 = hn::MaxLanes(D16());

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
/// than what its neighbours draw there, so that it is told apart. Distances are of type T, their squares twice as wide.
template <class T>
class SoftRow {
    using Square = hwy::MakeWide<T>;
    using DSquare = hn::ScalableTag<Square>;
    using VSquare = hn::Vec<DSquare>;
    static constexpr size_t kSquares = hn::MaxLanes(DSquare());

public:
    SoftRow(const Disc& disc, L08 level)
        : reach_(disc.reach), fall_(disc.reach, level), onItself_(softened(level, 0, disc.reach)) {
        std::fill(std::begin(squares_), std::end(squares_), kFarSquare);
    }

    HWY_INLINE void operator()(L08* out, const T* distances, const T* toOthers, size_t cols) {
        for (size_t i = 0; i < cols + 2 * reach_; i += kSquares) {
            hn::StoreU(squared(distances + i), DSquare(), squares_ + i);
        }
        for (size_t x = 0; x < cols; x += kSquares) {
            writeLevels(x, leastSquare(squares_ + x + reach_, toOthers + x + reach_));
        }
        const T* const own = distances + reach_;
        eachBlock(cols, [=, this](size_t i, auto part) HWY_ATTR {
            const D8 d;
            const V8 onCentres = hn::IfThenElseZero(centresIn(own + i), hn::Set(d, onItself_));
            const V8 drawn = hn::Max(hn::LoadU(d, levels_ + i), onCentres);
            if (hn::AllTrue(d, hn::Eq(drawn, hn::Zero(d)))) return;
            storeVector(d, out + i, part, hn::Max(drawn, loadVector(d, out + i, part)));
        });
    }

private:
    /// Farther than any reach; with the square of one added it neither wraps nor comes nearer.
    static constexpr Square kFarSquare = sizeof(T) == 1 ? 65535 : 1 << 30;

    static HWY_INLINE VSquare squared(const T* distances) {
        const DSquare d;
        const VSquare distance = hn::PromoteTo(d, hn::LoadU(hn::Rebind<T, DSquare>(), distances));
        return hn::IfThenElse(hn::Eq(distance, hn::Set(d, kFar<T>)), hn::Set(d, kFarSquare),
                              hn::Mul(distance, distance));
    }
    static HWY_INLINE V16 sum(V16 a, V16 b) { return hn::SaturatedAdd(a, b); }
    static HWY_INLINE V32 sum(V32 a, V32 b) { return hn::Add(a, b); }

    /// Pixels that are centres, at distance 0.
    static HWY_INLINE M8 centresIn(const uint8_t* distances) {
        return hn::Eq(hn::LoadU(D8(), distances), hn::Zero(D8()));
    }
    static HWY_INLINE M8 centresIn(const uint16_t* distances) {
        const auto near = [=](size_t i)
                              HWY_ATTR { return bytes(hn::Min(hn::LoadU(D16(), distances + i), hn::Set(D16(), 1))); };
        return hn::Eq(hn::ConcatEven(D8(), near(kBlock16), near(0)), hn::Zero(D8()));
    }

    /// The squared distances to the nearest centres other than the pixels themselves. Columns that are farther away
    /// than the nearest centre so far cannot have a nearer one.
    HWY_INLINE VSquare leastSquare(const Square* own, const T* toOthers) const {
        const DSquare d;
        VSquare least = squared(toOthers);
        for (size_t dx = 1; dx <= reach_; ++dx) {
            const VSquare square = hn::Set(d, static_cast<Square>(dx * dx));
            if (dx % 4 == 0 && hn::AllTrue(d, hn::Eq(hn::Max(least, square), square))) break;
            const VSquare nearer = hn::Min(hn::LoadU(d, own - dx), hn::LoadU(d, own + dx));
            least = hn::Min(least, sum(nearer, square));
        }
        return least;
    }

    HWY_INLINE void writeLevels(size_t x, VSquare squares) {
        const DSquare d;
        const auto limit = static_cast<Square>(reach_ * reach_ + reach_);
        if (hn::AllTrue(d, hn::Gt(squares, hn::Set(d, limit)))) {
            std::memset(levels_ + x, 0, kSquares);
        } else {
            writeByRoots(x, squares);
        }
    }
    HWY_INLINE void writeByRoots(size_t x, V16 squares) {
        const hn::Half<D16> half;
        writeByRoots(x, hn::PromoteTo(D32(), hn::LowerHalf(half, squares)));
        writeByRoots(x + kSquares / 2, hn::PromoteTo(D32(), hn::UpperHalf(half, squares)));
    }
    /// No root comes nearer than 1 / (8 * widestReach + 4) to where it would round differently.
    HWY_INLINE void writeByRoots(size_t x, V32 squares) {
        const DF32 d;
        const auto square = hn::ConvertTo(d, hn::BitCast(DI32(), squares));
        const hn::Rebind<uint8_t, DI32> d8;
        hn::StoreU(hn::DemoteTo(d8, fall_.at(hn::Floor(hn::Add(hn::Sqrt(square), hn::Set(d, 0.5F))))), d8, levels_ + x);
    }

    const size_t reach_;
    const Fall fall_;
    const L08 onItself_;
    Square squares_[kMostEntries<T> + kRoomOf<T>];
    L08 levels_[kMostEntries<T> + kRoomOf<T>];
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
        eachLevel(levels_, cols, [=, this](size_t i, L08 level) HWY_ATTR { stamp(i + reach_, middle, rows, level); });
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

/// The same for frames that are wider than bytes can tell: factors would not hold what levels differ by, and the target
/// is drawn into at once.
class WideSoftStamp {
public:
    explicit WideSoftStamp(const Frame& frame) : frame_(frame), reach_(frame.disc.reach), halfWidths_(frame.disc) {}

    HWY_INLINE void draw() {
        constexpr size_t most = sizeof levels_ - kRoom;
        for (size_t j = 0; j < frame_.centres.rows; ++j) {
            for (size_t left = 0; left < frame_.centres.cols; left += most) {
                const size_t cols = std::min(most, frame_.centres.cols - left);
                const auto row = static_cast<ptrdiff_t>(j);
                writeLevels(frame_, row, left, cols, levels_);
                eachLevel(levels_, cols, [=, this](size_t i, L08 level) HWY_ATTR {
                    stamp(static_cast<ptrdiff_t>(left + i + reach_), row + static_cast<ptrdiff_t>(reach_), level);
                });
            }
        }
    }

private:
    HWY_INLINE void stamp(ptrdiff_t x, ptrdiff_t y, L08 level) {
        const Fall fall(frame_.disc.reach, level);
        const auto reach = static_cast<ptrdiff_t>(reach_);
        for (ptrdiff_t dy = -reach; dy <= reach; ++dy) {
            const ptrdiff_t width = halfWidths_.of[dy < 0 ? -dy : dy];
            raise(frame_.target.row(y + dy) + x - width, frame_.disc.row(dy) - width, fall,
                  2 * static_cast<size_t>(width) + 1);
        }
    }

    static HWY_INLINE void raise(L08* pixels, const int* distances, const Fall& fall, size_t n) {
        constexpr size_t block = hn::MaxLanes(DI32());
        const auto raiseBlock = [&](size_t i, auto part) HWY_ATTR {
            const hn::Rebind<uint8_t, DI32> d;
            const auto distance = hn::ConvertTo(DF32(), loadVector(DI32(), distances + i, part));
            // At distance 0 a level may come to 256, of which the low 8 bits count.
            const auto level = hn::TruncateTo(d, hn::BitCast(D32(), fall.at(distance)));
            storeVector(d, pixels + i, part, hn::Max(level, loadVector(d, pixels + i, part)));
        };
        size_t i = 0;
        for (; i + block <= n; i += block) raiseBlock(i, All());
        if (i < n) raiseBlock(i, First{n - i});
    }

    const Frame& frame_;
    const size_t reach_;
    const HalfWidths halfWidths_;
    L08 levels_[1024 + kRoom];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
