// SPDX-License-Identifier: MIT

// Wide soft frames: for each patch of the destination, the rows of the source are visited from the nearest ones on,
// until no centre that is farther away can raise a pixel of the patch. Compiled once per vector level.
#if defined(OMNAR_TONE_FRAMES_GATHER_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAMES_GATHER_INL_H_
#undef OMNAR_TONE_FRAMES_GATHER_INL_H_
#else
#define OMNAR_TONE_FRAMES_GATHER_INL_H_
#endif

#include <cmath>
#include <cstdlib>

#include "tone/frames/soft-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

using VF32 = hn::Vec<DF32>;
constexpr size_t kBlock32 = hn::MaxLanes(DF32());

/// A rectangle of the destination. Each pixel has one number that centres improve: an integer, exact in single
/// precision.
struct Patch {
    static constexpr size_t kRows = 32, kCols = 128;

    size_t rows, cols;
    float best[kRows][kCols];

    template <class Act>
    HWY_INLINE static void eachVector(Act act) {
        for (size_t x = 0; x < kCols; x += kBlock32) act(x);
    }
    HWY_INLINE float least(size_t y) const {
        VF32 all = hn::LoadU(DF32(), best[y]);
        eachVector([&, this](size_t x) HWY_ATTR { all = hn::Min(all, hn::LoadU(DF32(), best[y] + x)); });
        return hn::GetLane(hn::MinOfLanes(DF32(), all));
    }
    HWY_INLINE float greatest(size_t y) const {
        VF32 all = hn::LoadU(DF32(), best[y]);
        eachVector([&, this](size_t x) HWY_ATTR { all = hn::Max(all, hn::LoadU(DF32(), best[y] + x)); });
        return hn::GetLane(hn::MaxOfLanes(DF32(), all));
    }
};

/// The values of the centres in a row of the source that are near the patch, and 0 for pixels that are no centres.
struct CentreRow {
    const L08* values;
    ptrdiff_t first;  // column of the first value, from the left column of the patch
    size_t count;
    ptrdiff_t y;  // row, from the top row of the patch

    size_t rowsAway(size_t row) const { return static_cast<size_t>(std::abs(y - static_cast<ptrdiff_t>(row))); }
};

/// If all centres have one value, the nearest of them draws the most. The number is the square of its distance, and 0
/// for pixels that no centre farther away than `near` can raise.
class NearestOfOneValue {
public:
    NearestOfOneValue(const Disc& disc, uint32_t near, L08 value)
        : radius_(disc.radius),
          squareLimit_(static_cast<float>(disc.radius * disc.radius + disc.radius)),
          nearValue_(softened(value, static_cast<int>(near), disc.radius)),
          falloff_(disc.radius, value) {}

    /// Returns false if no pixel of the row can be raised.
    HWY_INLINE bool begin(Patch& patch, size_t y, const L08* old) {
        worst_[y] = 0;
        for (size_t x = 0; x < Patch::kCols; ++x) {
            patch.best[y][x] = x >= patch.cols || old[x] >= nearValue_ ? 0.0F : squareLimit_ + 1.0F;
            worst_[y] = std::max(worst_[y], patch.best[y][x]);
        }
        return worst_[y] != 0;
    }

    /// The greatest distance at which a centre may still be the nearest of a pixel.
    HWY_INLINE size_t searchRadius(const Patch& patch) {
        float worst = 0;
        for (size_t y = 0; y < patch.rows; ++y) {
            worst_[y] = patch.greatest(y);
            worst = std::max(worst, worst_[y]);
        }
        return worst > squareLimit_ ? radius_ : std::min(radius_, static_cast<size_t>(std::sqrt(worst)));
    }

    HWY_INLINE void visit(Patch& patch, const CentreRow& row) {
        float anySquares[Patch::kCols], otherSquares[Patch::kCols];
        writeSquares(patch, row, anySquares, otherSquares);
        for (size_t y = 0; y < patch.rows; ++y) {
            const size_t away = row.rowsAway(y);
            const auto square = static_cast<float>(away * away);
            if (square >= worst_[y]) continue;
            const float* const squares = away == 0 ? otherSquares : anySquares;
            Patch::eachVector([&](size_t x) HWY_ATTR {
                const DF32 d;
                const VF32 distance = hn::Add(hn::LoadU(d, squares + x), hn::Set(d, square));
                hn::StoreU(hn::Min(distance, hn::LoadU(d, patch.best[y] + x)), d, patch.best[y] + x);
            });
        }
    }

    /// Values for the squares of distances. A root is rounded half up: to d for squares above d * d - d
    /// and up to d * d + d.
    HWY_INLINE hn::Vec<DI32> values(VF32 squares) const {
        const DF32 d;
        const VF32 root = hn::Floor(hn::Sqrt(squares));
        const VF32 roundUp = hn::IfThenElseZero(hn::Gt(squares, hn::Add(hn::Mul(root, root), root)), hn::Set(d, 1.0F));
        const auto drawn = falloff_.values(hn::Add(root, roundUp));
        return hn::IfThenElseZero(hn::RebindMask(DI32(), hn::Gt(squares, hn::Zero(d))), drawn);
    }

private:
    /// Squares of the distances along the row to its nearest centre, and to the nearest one other than the pixel
    /// itself.
    HWY_INLINE void writeSquares(const Patch& patch, const CentreRow& row, float* anySquares,
                                 float* otherSquares) const {
        constexpr int far = 4096;  // its square is exact and exceeds that of any radius
        const auto isCentre = [&](ptrdiff_t x) {
            const ptrdiff_t i = x - row.first;
            return i >= 0 && i < static_cast<ptrdiff_t>(row.count) && row.values[i] != 0;
        };
        ptrdiff_t before = std::min<ptrdiff_t>(row.first + static_cast<ptrdiff_t>(row.count), 0);
        while (--before >= row.first && row.values[before - row.first] == 0) {
        }
        int distance = before < row.first ? far : static_cast<int>(-before);
        int left[Patch::kCols];
        const auto cols = static_cast<ptrdiff_t>(patch.cols);
        for (ptrdiff_t x = 0; x < cols; ++x) {
            left[x] = std::min(distance, far);
            distance = isCentre(x) ? 1 : distance + 1;
        }
        const ptrdiff_t end = row.first + static_cast<ptrdiff_t>(row.count);
        ptrdiff_t after = std::max(row.first, cols);
        while (after < end && row.values[after - row.first] == 0) ++after;
        distance = after < end ? static_cast<int>(after - cols) + 1 : far;
        for (ptrdiff_t x = cols; x-- > 0;) {
            const int others = std::min({left[x], distance, far});
            otherSquares[x] = static_cast<float>(others * others);
            anySquares[x] = isCentre(x) ? 0.0F : otherSquares[x];
            distance = isCentre(x) ? 1 : distance + 1;
        }
        std::fill(anySquares + cols, anySquares + Patch::kCols, 0.0F);
        std::fill(otherSquares + cols, otherSquares + Patch::kCols, 0.0F);
    }

    const size_t radius_;
    const float squareLimit_;
    const L08 nearValue_;
    const Falloff falloff_;
    float worst_[Patch::kRows];  // an upper bound of the numbers of each row
};

/// If centres have different values, the number is the greatest of their shares. The value drawn is the share / radius:
///
///     share = (radius + 1 - distance) * value
class GreatestShare {
public:
    explicit GreatestShare(const Disc& disc)
        : disc_(disc), radius_(disc.radius), reciprocal_(1.0F / static_cast<float>(disc.radius)) {}

    /// Numbers start with the greatest share that does not exceed the pixel's old value.
    HWY_INLINE bool begin(Patch& patch, size_t y, const L08* old) {
        for (size_t x = 0; x < Patch::kCols; ++x) {
            patch.best[y][x] = static_cast<float>((size_t{x < patch.cols ? old[x] : L08{255}} + 1) * radius_ - 1);
        }
        least_[y] = 0;
        return true;
    }

    /// The greatest distance at which a centre may still raise a pixel.
    HWY_INLINE size_t searchRadius(const Patch& patch) {
        float least = patch.least(0);
        for (size_t y = 0; y < patch.rows; ++y) {
            least_[y] = patch.least(y);
            least = std::min(least, least_[y]);
        }
        const auto hidden = static_cast<size_t>(least / 255);
        return hidden > radius_ ? 0 : radius_ - hidden + (hidden == 0 ? 0 : 1);
    }

    HWY_INLINE void visit(Patch& patch, const CentreRow& row) {
        eachValue(row.values, row.count, [&, this](size_t i, L08 value) HWY_ATTR {
            const ptrdiff_t x = row.first + static_cast<ptrdiff_t>(i);
            const auto cols = static_cast<ptrdiff_t>(patch.cols);
            const auto colsAway = static_cast<size_t>(x < 0 ? -x : x >= cols ? x - cols + 1 : 0);
            for (size_t y = 0; y < patch.rows; ++y) {
                const size_t away = std::max(row.rowsAway(y), colsAway);
                if (away > radius_ || static_cast<float>((radius_ + 1 - away) * value) <= least_[y]) continue;
                raise(patch, y, static_cast<ptrdiff_t>(y) - row.y, x, value);
            }
        });
    }

    HWY_INLINE hn::Vec<DI32> values(VF32 shares) const {
        const DF32 d;
        return hn::ConvertTo(DI32(), hn::Mul(hn::Add(shares, hn::Set(d, 0.5F)), hn::Set(d, reciprocal_)));
    }

private:
    /// Raises the row dy below a centre at column x. The centre's own pixel is drawn separately.
    HWY_INLINE void raise(Patch& patch, size_t y, ptrdiff_t dy, ptrdiff_t x, L08 value) const {
        const DF32 d;
        const auto cols = static_cast<ptrdiff_t>(patch.cols), radius = static_cast<ptrdiff_t>(radius_);
        const ptrdiff_t begin = std::max<ptrdiff_t>(0, x - radius), end = std::min(cols, x + radius + 1);
        float* const best = patch.best[y];
        const int* const distances = disc_.row(dy) - x;
        const bool coversItself = dy == 0 && x >= 0 && x < cols;
        const float own = coversItself ? best[x] : 0;
        const VF32 maxShare = hn::Set(d, static_cast<float>((radius_ + 1) * value));
        const VF32 factor = hn::Set(d, static_cast<float>(value));
        const auto raiseBlock = [=](ptrdiff_t i, auto part) HWY_ATTR {
            const VF32 distance = hn::ConvertTo(d, loadVector(DI32(), distances + i, part));
            const VF32 share = hn::Sub(maxShare, hn::Mul(distance, factor));
            storeVector(d, best + i, part, hn::Max(share, loadVector(d, best + i, part)));
        };
        constexpr auto block = static_cast<ptrdiff_t>(kBlock32);
        ptrdiff_t i = begin;
        for (; i + block <= end; i += block) raiseBlock(i, All());
        if (i < end) {
            end - begin >= block ? raiseBlock(end - block, All()) : raiseBlock(i, First{static_cast<size_t>(end - i)});
        }
        if (coversItself) best[x] = own;
    }

    const Disc& disc_;
    const size_t radius_;
    const float reciprocal_;
    float least_[Patch::kRows];  // a lower bound of the numbers of each row
};

template <class Numbers>
class GatherWalk {
public:
    GatherWalk(const Frame& frame, const Numbers& numbers)
        : frame_(frame), radius_(frame.disc.radius), numbers_(numbers) {}

    HWY_INLINE void draw() {
        const size_t rows = frame_.centres.rows + 2 * radius_, cols = frame_.centres.cols + 2 * radius_;
        for (size_t top = 0; top < rows; top += Patch::kRows) {
            for (size_t left = 0; left < cols; left += Patch::kCols) {
                patch_.rows = std::min(Patch::kRows, rows - top);
                patch_.cols = std::min(Patch::kCols, cols - left);
                top_ = static_cast<ptrdiff_t>(top) - static_cast<ptrdiff_t>(radius_);
                left_ = static_cast<ptrdiff_t>(left) - static_cast<ptrdiff_t>(radius_);
                bool open = false;
                for (size_t y = 0; y < patch_.rows; ++y) open |= numbers_.begin(patch_, y, destinationRow(y));
                if (open && gather()) drawPatch();
            }
        }
    }

private:
    /// Returns false if no centre is near enough.
    HWY_INLINE bool gather() {
        const auto rows = static_cast<ptrdiff_t>(patch_.rows);
        bool any = false;
        size_t far = radius_;
        for (ptrdiff_t y = 0; y < rows; ++y) any |= visit(y, far);
        bool more = any;
        for (size_t k = 1; k <= far; ++k) {
            if (more && (k & 3) == 1) {
                far = std::min(far, numbers_.searchRadius(patch_));
                more = false;
            }
            if (k > far) break;
            const auto away = static_cast<ptrdiff_t>(k);
            more |= visit(-away, far);
            more |= visit(rows - 1 + away, far);
            any |= more;
        }
        return any;
    }

    /// Visits the centres of row y, counted from the top of the patch. Returns false if there are none.
    HWY_INLINE bool visit(ptrdiff_t y, size_t far) {
        const ptrdiff_t j = top_ + y;
        if (j < 0 || j >= static_cast<ptrdiff_t>(frame_.centres.rows)) return false;
        const auto distance = static_cast<ptrdiff_t>(far);
        const ptrdiff_t begin = std::max<ptrdiff_t>(0, left_ - distance);
        const ptrdiff_t end = std::min(left_ + static_cast<ptrdiff_t>(patch_.cols) + distance,
                                       static_cast<ptrdiff_t>(frame_.centres.cols));
        if (begin >= end) return false;
        const auto count = static_cast<size_t>(end - begin);
        if (!writeValues(frame_, j, static_cast<size_t>(begin), count, values_)) return false;
        numbers_.visit(patch_, {values_, begin - left_, count, y});
        return true;
    }

    HWY_INLINE void drawPatch() {
        const ptrdiff_t begin = std::max<ptrdiff_t>(0, left_);
        const ptrdiff_t end =
            std::min(left_ + static_cast<ptrdiff_t>(patch_.cols), static_cast<ptrdiff_t>(frame_.centres.cols));
        for (size_t y = 0; y < patch_.rows; ++y) {
            Patch::eachVector([&, this](size_t x) HWY_ATTR {
                const hn::Rebind<uint8_t, DI32> d8;
                const auto drawn = numbers_.values(hn::LoadU(DF32(), patch_.best[y] + x));
                hn::StoreU(hn::DemoteTo(d8, drawn), d8, bytes_ + x);
            });
            const ptrdiff_t j = top_ + static_cast<ptrdiff_t>(y);
            if (j >= 0 && j < static_cast<ptrdiff_t>(frame_.centres.rows) && begin < end) {
                const auto count = static_cast<size_t>(end - begin);
                writeValues(frame_, j, static_cast<size_t>(begin), count, values_);
                eachValue(values_, count, [&, this](size_t i, L08 value) {
                    L08& pixel = bytes_[static_cast<size_t>(begin - left_) + i];
                    pixel = std::max(pixel, softened(value, 0, frame_.disc.radius));
                });
            }
            L08* const out = destinationRow(y);
            eachBlock(patch_.cols, [=, this](size_t i, auto part) HWY_ATTR {
                const D8 d;
                const V8 drawn = hn::LoadU(d, bytes_ + i);
                storeVector(d, out + i, part, hn::Max(drawn, loadVector(d, out + i, part)));
            });
        }
    }

    L08* destinationRow(size_t y) const {
        const auto radius = static_cast<ptrdiff_t>(radius_);
        return frame_.destination.row(top_ + radius + static_cast<ptrdiff_t>(y)) + left_ + radius;
    }

    const Frame& frame_;
    const size_t radius_;
    Numbers numbers_;
    ptrdiff_t top_ = 0, left_ = 0;  // position of the patch among the centres
    Patch patch_;
    L08 bytes_[Patch::kCols + kPadding];
    L08 values_[Patch::kCols + 2 * maxVectorRadius + kPadding];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
