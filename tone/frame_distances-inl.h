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

// Tiles are wide, since the columns of a reach at both sides belong to the neighbours, too; bands are high, since the
// rows of a reach below are looked at again. Together they fill most of what a function may take of the stack.
constexpr size_t kTileCols = 1280;
constexpr size_t kBandRows = 32;
constexpr uint8_t kFar = 255;  // no centre in this column as far as it was looked at, or too far

/// Distances along the columns of a row. Pixel x of the tile is entry x + reach, for x from -reach to cols + reach - 1.
using DistanceRow = uint8_t[kTileCols + kRoom];

/// Draws the rows of a frame. `row(out, distances, toOthers, cols)` draws pixels 0 to cols - 1 of a tile's row, whose
/// distances to the nearest centre and to the nearest other pixel that is a centre are given.
template <bool ofShape>
class DistanceWalk {
public:
    explicit DistanceWalk(const Frame& frame) : frame_(frame), reach_(frame.disc.reach) {}

    template <class Row>
    HWY_INLINE void draw(Row& row) {
        const size_t cols = frame_.centres.cols + 2 * reach_, rows = frame_.centres.rows + 2 * reach_;
        const size_t most = kTileCols - 2 * reach_;
        for (size_t left = 0; left < cols; left += most) {
            const size_t n = std::min(most, cols - left);
            startTile(left, n);
            for (size_t top = 0; top < rows; top += kBandRows) {
                const size_t bottom = std::min(rows, top + kBandRows);
                lookUp(top, bottom);
                for (size_t y = top; y < bottom; ++y) {
                    if (lookDown(y - top)) row(frame_.target.row(static_cast<ptrdiff_t>(y)) + left, any_, other_, n);
                }
            }
        }
    }

private:
    HWY_INLINE void startTile(size_t left, size_t cols) {
        std::memset(below_, kFar, sizeof below_);
        std::memset(above_, kFar, sizeof above_);
        std::memset(any_, kFar, sizeof any_);
        std::memset(other_, kFar, sizeof other_);
        first_ = std::max(left, 2 * reach_) - left;
        count_ = std::min(left + cols, frame_.centres.cols) + 2 * reach_ - left - first_;
        column_ = left + first_ - 2 * reach_;
    }

    /// Rows from below to row `top`. What lies below row `bottom` is needed for its nearest centres only.
    HWY_INLINE void lookUp(size_t top, size_t bottom) {
        uint8_t* const under = below_[bottom - top];
        std::memset(under, kFar, sizeof *below_);
        for (size_t y = bottom + reach_; y-- > bottom;) step(y, under, under);
        for (size_t y = bottom; y-- > top;) step(y, below_[y - top + 1], below_[y - top]);
    }

    /// One row up: a distance grows by one, or a centre begins it anew.
    HWY_INLINE void step(size_t y, const uint8_t* from, uint8_t* to) {
        const D8 d;
        const auto grown = [=](size_t i)
                               HWY_ATTR { return hn::SaturatedAdd(hn::LoadU(d, from + first_ + i), hn::Set(d, 1)); };
        if (y < reach_ || y >= frame_.centres.rows + reach_) {
            for (size_t i = 0; i < count_; i += kBlock8) hn::StoreU(grown(i), d, to + first_ + i);
            return;
        }
        eachCentre<ofShape>(frame_, static_cast<ptrdiff_t>(y - reach_), column_, count_,
                            [=](size_t i, auto, M8 which)
                                HWY_ATTR { hn::StoreU(hn::IfThenZeroElse(which, grown(i)), d, to + first_ + i); });
    }

    /// One row down, row y of the band. False if no centre of this row's columns is within reach.
    HWY_INLINE bool lookDown(size_t y) {
        const D8 d;
        const V8 one = hn::Set(d, 1);
        V8 nearest = hn::Set(d, kFar);
        for (size_t i = first_; i < first_ + count_; i += kBlock8) {
            const V8 above = hn::LoadU(d, above_ + i);
            const M8 isCentre = hn::Eq(hn::LoadU(d, below_[y] + i), hn::Zero(d));
            const V8 other = hn::SaturatedAdd(hn::Min(above, hn::LoadU(d, below_[y + 1] + i)), one);
            const V8 any = hn::IfThenZeroElse(isCentre, other);
            hn::StoreU(hn::IfThenZeroElse(isCentre, hn::SaturatedAdd(above, one)), d, above_ + i);
            hn::StoreU(other, d, other_ + i);
            hn::StoreU(any, d, any_ + i);
            nearest = hn::Min(nearest, any);
        }
        return !hn::AllTrue(d, hn::Gt(nearest, hn::Set(d, static_cast<uint8_t>(reach_))));
    }

    const Frame& frame_;
    const size_t reach_;
    size_t first_ = 0;   // entry of a row that stands for the first centre
    size_t count_ = 0;   // of centres
    size_t column_ = 0;  // of the first one in the frame
    DistanceRow below_[kBandRows + 1], above_, any_, other_;
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
