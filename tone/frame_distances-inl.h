// SPDX-License-Identifier: MIT

// For each pixel of a tile, how far above or below it the nearest centre of its column lies; compiled once for every
// level. What a row of round discs covers, and how near they are, follows from the distances of one row alone.
#if defined(OMNAR_TONE_FRAME_DISTANCES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAME_DISTANCES_INL_H_
#undef OMNAR_TONE_FRAME_DISTANCES_INL_H_
#else
#define OMNAR_TONE_FRAME_DISTANCES_INL_H_
#endif

#include "tone/frame_centres-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

// Bands are high, since the rows of a reach below them are looked at twice, and tiles are wide, since the columns of a
// reach at either side are, too. Both have to share what is left of 64 KiB of stack by what draws the rows.
template <class T>
constexpr size_t kDistanceScratch = (sizeof(T) == 1 ? 46080 : 40960) / sizeof(T);
constexpr size_t kLeastRows = 6, kMostRows = 32;
constexpr size_t kFurtherRows = 4;
template <class T>
constexpr size_t kMostEntries = kDistanceScratch<T> / (kLeastRows + kFurtherRows);

/// No centre in this column as far as it was looked at, or too far.
template <class T>
constexpr T kFar = static_cast<T>(-1);

/// Stores what two vectors of 16 bits, or one of bytes, hold beside the pixels of a mask, and 0 for those.
HWY_INLINE void storeUnless(M8 which, const auto& vectorAt, uint8_t* to) {
    hn::StoreU(hn::IfThenZeroElse(which, vectorAt(0)), D8(), to);
}
HWY_INLINE void storeUnless(M8 which, const auto& vectorAt, uint16_t* to) {
    const hn::RebindToSigned<D8> d8;
    const hn::RebindToSigned<D16> d16;
    const hn::Half<decltype(d8)> half;
    const auto zeros = hn::BitCast(d8, hn::VecFromMask(D8(), which));
    const auto first = hn::PromoteTo(d16, hn::LowerHalf(half, zeros));
    const auto second = hn::PromoteTo(d16, hn::UpperHalf(half, zeros));
    hn::StoreU(hn::AndNot(hn::BitCast(D16(), first), vectorAt(0)), D16(), to);
    hn::StoreU(hn::AndNot(hn::BitCast(D16(), second), vectorAt(kBlock8 / 2)), D16(), to + kBlock8 / 2);
}

/// Draws a frame row by row. `row(out, distances, toOthers, cols)` draws pixels 0 to cols - 1 of a tile's row; each
/// entry of the columns' distances tells how far the nearest centre is, or the nearest one other than the pixel itself.
template <bool ofShape, class T>
class DistanceWalk {
    using D = hn::ScalableTag<T>;
    static constexpr size_t kBlockT = hn::MaxLanes(D());

public:
    explicit DistanceWalk(const Frame& frame)
        : frame_(frame),
          reach_(frame.disc.reach),
          bandRows_(sizeof(T) == 1 ? std::clamp(2 * reach_, kLeastRows, kMostRows) : kLeastRows),
          pitch_(kDistanceScratch<T> / (bandRows_ + kFurtherRows) / kBlock8 * kBlock8),
          above_(scratch_ + (bandRows_ + 1) * pitch_),
          any_(above_ + pitch_),
          other_(any_ + pitch_) {}

    template <class Row>
    HWY_INLINE void draw(Row& row) {
        const size_t cols = frame_.centres.cols + 2 * reach_, rows = frame_.centres.rows + 2 * reach_;
        const size_t most = pitch_ - kBlock8 - 2 * reach_;
        for (size_t left = 0; left < cols; left += most) {
            const size_t n = std::min(most, cols - left);
            entries_ = entriesOf(frame_, left, n);
            std::fill(std::begin(scratch_), std::end(scratch_), kFar<T>);
            for (size_t top = 0; top < rows; top += bandRows_) {
                const size_t bottom = std::min(rows, top + bandRows_);
                lookUp(top, bottom);
                for (size_t y = top; y < bottom; ++y) {
                    if (lookDown(y - top)) row(frame_.target.row(static_cast<ptrdiff_t>(y)) + left, any_, other_, n);
                }
            }
        }
    }

private:
    /// Rows from below to row `top`. What lies below row `bottom` is needed for its nearest centres only.
    HWY_INLINE void lookUp(size_t top, size_t bottom) {
        T* const under = below(bottom - top);
        std::fill_n(under, pitch_, kFar<T>);
        for (size_t y = bottom + reach_; y-- > bottom;) step(y, under, under);
        for (size_t y = bottom; y-- > top;) step(y, below(y - top + 1), below(y - top));
    }

    /// One row up: a distance grows by one, or a centre begins it anew.
    HWY_INLINE void step(size_t y, const T* from, T* to) {
        from += entries_.first;
        to += entries_.first;
        if (y < reach_ || y >= frame_.centres.rows + reach_) {
            for (size_t i = 0; i < entries_.count; i += kBlockT) hn::StoreU(grown(from + i), D(), to + i);
            return;
        }
        const auto stepBlock = [=](size_t i, auto, M8 which) HWY_ATTR {
            const auto grownAt = [=](size_t k) HWY_ATTR { return grown(from + i + k); };
            storeUnless(which, grownAt, to + i);
        };
        eachCentre<ofShape>(frame_, static_cast<ptrdiff_t>(y - reach_), entries_.column, entries_.count, stepBlock);
    }
    static HWY_INLINE hn::Vec<D> grown(const T* distances) {
        return hn::SaturatedAdd(hn::LoadU(D(), distances), hn::Set(D(), 1));
    }

    /// One row down, row y of the band. False if no centre of this row's columns is within reach.
    HWY_INLINE bool lookDown(size_t y) {
        const D d;
        const auto one = hn::Set(d, 1);
        auto nearest = hn::Set(d, kFar<T>);
        for (size_t i = entries_.first; i < entries_.first + entries_.count; i += kBlockT) {
            const auto above = hn::LoadU(d, above_ + i);
            const auto isCentre = hn::Eq(hn::LoadU(d, below(y) + i), hn::Zero(d));
            const auto other = hn::SaturatedAdd(hn::Min(above, hn::LoadU(d, below(y + 1) + i)), one);
            const auto any = hn::IfThenZeroElse(isCentre, other);
            hn::StoreU(hn::IfThenZeroElse(isCentre, hn::SaturatedAdd(above, one)), d, above_ + i);
            hn::StoreU(other, d, other_ + i);
            hn::StoreU(any, d, any_ + i);
            nearest = hn::Min(nearest, any);
        }
        return !hn::AllTrue(d, hn::Gt(nearest, hn::Set(d, static_cast<T>(reach_))));
    }

    /// Distances of row y of the band to the centres at and below it.
    T* below(size_t y) { return scratch_ + y * pitch_; }

    const Frame& frame_;
    const size_t reach_;
    const size_t bandRows_;
    const size_t pitch_;
    T* const above_;  // to the nearest centre above the row that comes next; behind the band and the row below it
    T* const any_;    // to the nearest centre
    T* const other_;  // to the nearest centre other than the pixel itself
    Entries entries_{};
    T scratch_[kDistanceScratch<T>];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
