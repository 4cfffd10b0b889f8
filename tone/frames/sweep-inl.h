// SPDX-License-Identifier: MIT

// Wide frames that draw one value on every covered pixel. Compiled once per vector level.
#if defined(OMNAR_TONE_FRAMES_SWEEP_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAMES_SWEEP_INL_H_
#undef OMNAR_TONE_FRAMES_SWEEP_INL_H_
#else
#define OMNAR_TONE_FRAMES_SWEEP_INL_H_
#endif

#include <bit>

#include "tone/frames/centres-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// The nearest centres of columns in one direction: the number of groups of eight rows without a centre, and the bits
/// of the first group that has one.
struct NearestGroup {
    V8 skipped, bits;

    /// Adds the bits of the next group to columns that have none.
    HWY_INLINE void addGroup(V8 next) {
        const D8 d;
        const V8 none = hn::VecFromMask(d, hn::Eq(bits, hn::Zero(d)));
        bits = hn::Or(bits, hn::And(none, next));
        skipped = hn::SaturatedAdd(
            skipped, hn::And(hn::And(none, hn::Set(d, 1)), hn::VecFromMask(d, hn::Eq(bits, hn::Zero(d)))));
    }
    HWY_INLINE bool allFound() const { return hn::AllFalse(D8(), hn::Eq(bits, hn::Zero(D8()))); }
};

/// A band of rows is swept from left to right, one strip of columns at a time. In each row a column covers as many
/// pixels to either side as the half width of the disc with the column's nearest centre. To the right, the farthest end
/// so far is carried along. To the left, the pixels of earlier strips are drawn at once. A strip therefore needs no
/// columns outside it, and the scratch does not grow with the radius.
template <bool centresInShape, class Drawn>
class SweepWalk {
public:
    SweepWalk(const Frame& frame, Drawn drawn)
        : frame_(frame), drawn_(drawn), radius_(static_cast<ptrdiff_t>(frame.disc.radius)) {}

    HWY_INLINE void draw() {
        const size_t rows = frame_.centres.rows + 2 * frame_.disc.radius;
        for (size_t top = 0; top < rows; top += kRows) drawBand(top, std::min(kRows, rows - top));
    }

private:
    static constexpr size_t kCols = 256, kGroups = 32, kRows = 8 * kGroups;
    static constexpr uint16_t kFar = 0x7FFF;

    // 16 bytes at every vector level: the ends are carried along a row from one such vector to the next.
    using D16x8 = hn::FixedTag<uint16_t, 8>;
    using V16x8 = hn::Vec<D16x8>;

    HWY_INLINE void drawBand(size_t top, size_t rows) {
        const auto radius = static_cast<size_t>(radius_);
        std::fill_n(coveredEnd_, rows, radius);
        std::fill_n(coveredStart_, rows, radius);
        const auto j = static_cast<ptrdiff_t>(top) - radius_;
        for (size_t left = 0; left < frame_.centres.cols; left += kCols) {
            const size_t cols = std::min(kCols, frame_.centres.cols - left);
            writeBits(j, left, cols);
            findAbove(j, left, cols);
            findBelow(j + static_cast<ptrdiff_t>(kRows), left, cols);
            for (size_t group = 0; 8 * group < rows; ++group) {
                writeWidths(group, cols);
                for (size_t y = 8 * group; y < std::min(rows, 8 * group + 8); ++y) {
                    drawRow(frame_.destination.row(static_cast<ptrdiff_t>(top + y)), y, left + radius, cols);
                }
            }
        }
        for (size_t y = 0; y < rows; ++y) {
            const size_t right = frame_.centres.cols + radius;
            if (coveredEnd_[y] > right) {
                fill(frame_.destination.row(static_cast<ptrdiff_t>(top + y)) + right, coveredEnd_[y] - right);
            }
        }
    }

    /// Writes the centres of the band, whose first row is row j of the frame.
    HWY_INLINE void writeBits(ptrdiff_t j, size_t left, size_t cols) {
        std::memset(bits_, 0, sizeof bits_);
        for (size_t group = 0; group < kGroups; ++group, j += 8) {
            eachOverlappingBlock(cols, [=, this](size_t i, auto part) HWY_ATTR {
                hn::StoreU(centreBits<centresInShape>(frame_, j, left + i, part), D8(), bits_[group] + i);
            });
        }
    }

    /// Finds the nearest centres within the radius below the band, which ends before row j.
    HWY_INLINE void findBelow(ptrdiff_t j, size_t left, size_t cols) {
        std::memset(skippedBelow_, 0, sizeof skippedBelow_);
        std::memset(bitsBelow_, 0, sizeof bitsBelow_);
        const ptrdiff_t end = std::min(j + radius_, static_cast<ptrdiff_t>(frame_.centres.rows));
        bool found = false;
        for (; j < end && !found; j += 8) found = searchGroup(j, left, cols, skippedBelow_, bitsBelow_);
    }

    /// Finds the nearest centres above the band, whose first row is row j, as distances from the row above it.
    HWY_INLINE void findAbove(ptrdiff_t j, size_t left, size_t cols) {
        L08 skipped[kCols] = {}, bits[kCols] = {};
        const ptrdiff_t end = std::max<ptrdiff_t>(j - radius_, 0);
        bool found = false;
        for (ptrdiff_t group = j - 8; group + 8 > end && !found; group -= 8) {
            found = searchGroup(group, left, cols, skipped, bits);
        }
        for (size_t i = 0; i < kCols; ++i) {
            above_[i] = bits[i] == 0 ? kFar : static_cast<uint16_t>(8 * skipped[i] + std::countl_zero(bits[i]));
        }
    }

    /// Returns true if the nearest centre of every column is found.
    HWY_INLINE bool searchGroup(ptrdiff_t j, size_t left, size_t cols, L08* skipped, L08* bits) {
        const D8 d;
        bool found = true;
        for (size_t i = 0; i < cols; i += kBlock8) {
            NearestGroup nearest{hn::LoadU(d, skipped + i), hn::LoadU(d, bits + i)};
            if (i + kBlock8 <= cols) {
                if (nearest.allFound()) continue;
                nearest.addGroup(centreBits<centresInShape>(frame_, j, left + i, All()));
            } else {
                nearest.addGroup(centreBits<centresInShape>(frame_, j, left + i, First{cols - i}));
            }
            hn::StoreU(nearest.skipped, d, skipped + i);
            hn::StoreU(nearest.bits, d, bits + i);
            found = found && nearest.allFound();
        }
        return found;
    }

    /// Writes half widths + 1 of the discs with the nearest centres, for eight rows; 0 where none is within the radius.
    HWY_INLINE void writeWidths(size_t group, size_t cols) {
        const D8 d;
        for (size_t i = 0; i < cols; i += kBlock8) {
            NearestGroup nearest{hn::Zero(d), hn::Zero(d)};
            for (size_t next = group + 1; next < kGroups; ++next) {
                nearest.addGroup(hn::LoadU(d, bits_[next] + i));
                if (nearest.allFound()) break;
            }
            const M8 beyond = hn::Eq(nearest.bits, hn::Zero(d));
            const V8 skipped =
                hn::SaturatedAdd(nearest.skipped, hn::IfThenElseZero(beyond, hn::LoadU(d, skippedBelow_ + i)));
            const V8 lowest = lowestBit(hn::Or(nearest.bits, hn::IfThenElseZero(beyond, hn::LoadU(d, bitsBelow_ + i))));
            alignas(64) L08 below[2][kBlock8];
            hn::StoreU(skipped, d, below[0]);
            hn::StoreU(lowest, d, below[1]);
            for (size_t k = 0; k < kBlock8; k += kBlock16) {
                writeWidths(bits_[group] + i + k, below[0] + k, below[1] + k, i + k);
            }
        }
    }

    HWY_INLINE void writeWidths(const L08* bits, const L08* skipped, const L08* lowest, size_t x) {
        const D16 d;
        const V16 one = hn::Set(d, 1);
        const V16 own = promoted(bits);
        const V16 last = promoted(lowest);
        V16 below[9];
        below[8] = hn::IfThenElse(hn::Eq(last, hn::Set(d, 255)), hn::Set(d, kFar),
                                  hn::Add(hn::ShiftLeft<3>(promoted(skipped)), last));
        for (size_t k = 8; k-- > 0;) {
            const auto isCentre = hn::TestBit(own, hn::Set(d, static_cast<uint16_t>(1 << k)));
            below[k] = hn::IfThenZeroElse(isCentre, hn::Add(below[k + 1], one));
        }
        V16 above = hn::LoadU(d, above_ + x);
        for (size_t k = 0; k < 8; ++k) {
            above = hn::Min(hn::Add(above, one), hn::Set(d, kFar));
            above = hn::IfThenZeroElse(hn::TestBit(own, hn::Set(d, static_cast<uint16_t>(1 << k))), above);
            hn::StoreU(halfWidths(hn::Min(above, below[k])), d, widths_[k] + x);
        }
        hn::StoreU(above, d, above_ + x);
    }
    static HWY_INLINE V16 promoted(const L08* row) {
        return hn::PromoteTo(D16(), hn::LoadU(hn::Rebind<uint8_t, D16>(), row));
    }

    /// The half width at distance d is the integral part of sqrt(r * r + r - d * d). Single precision separates the
    /// roots of different integers below 2^22.
    HWY_INLINE V16 halfWidths(V16 distances) const {
        const D16 d;
        const V16 radius = hn::Set(d, static_cast<uint16_t>(radius_));
        const auto far = hn::Gt(distances, radius);
        if (hn::AllTrue(d, far)) return hn::Zero(d);
        const hn::Half<D16> half;
        const V16 near = hn::Min(distances, radius);
        const auto first = roots(hn::PromoteTo(DI32(), hn::LowerHalf(half, near)));
        const auto second = roots(hn::PromoteTo(DI32(), hn::UpperHalf(half, near)));
        return hn::IfThenZeroElse(far, hn::Combine(d, second, first));
    }
    HWY_INLINE hn::Vec<hn::Half<D16>> roots(hn::Vec<DI32> distances) const {
        const DF32 d;
        const auto distance = hn::ConvertTo(d, distances);
        const auto square = hn::Set(d, static_cast<float>(radius_ * radius_ + radius_));
        const auto root = hn::Sqrt(hn::Sub(square, hn::Mul(distance, distance)));
        return hn::DemoteTo(hn::Half<D16>(), hn::ConvertTo(DI32(), hn::Add(root, hn::Set(d, 1.0F))));
    }

    /// Draws columns left to left + cols - 1 of the destination, and what their discs cover to the left of them.
    HWY_INLINE void drawRow(L08* out, size_t y, size_t left, size_t cols) {
        const D16x8 d;
        const uint16_t* const widths = widths_[y % 8];
        alignas(16) static constexpr uint16_t iota[8] = {0, 1, 2, 3, 4, 5, 6, 7};
        const size_t paddedCols = (cols + 7) / 8 * 8;  // the columns past the last one have no centres
        if (coveredEnd_[y] >= left + cols &&
            coveredStart_[y] <= std::max(left - static_cast<size_t>(radius_), firstColumn())) {
            // All pixels that the strip's discs cover are drawn, except those to the right of the strip.
            fill(out + left, cols);
            coveredEnd_[y] = std::max(coveredEnd_[y], left + farthestEnd(widths, cols));
            return;
        }

        // How far left the discs of the columns from x on extend, counted from the end of the strip.
        V16x8 leftEnds = hn::Zero(d);
        for (size_t x = paddedCols; x > 0;) {
            x -= 8;
            const V16x8 toEnd = hn::Sub(hn::Set(d, static_cast<uint16_t>(paddedCols - x)), hn::Load(d, iota));
            const V16x8 width = hn::LoadU(d, widths + x);
            const V16x8 own = hn::IfThenZeroElse(hn::Eq(width, hn::Zero(d)), hn::Add(width, toEnd));
            V16x8 farthest = hn::Max(own, hn::ShiftRightLanes<1>(d, own));
            farthest = hn::Max(farthest, hn::ShiftRightLanes<2>(d, farthest));
            farthest = hn::Max(farthest, hn::ShiftRightLanes<4>(d, farthest));
            farthest = hn::Max(farthest, leftEnds);
            leftEnds = hn::Broadcast<0>(farthest);
            hn::StoreU(hn::VecFromMask(d, hn::Gt(farthest, toEnd)), d, covered_ + x);
        }
        // How far right the discs of the columns up to x extend, counted from the start of the strip.
        V16x8 rightEnds = hn::Set(d, static_cast<uint16_t>(std::max(coveredEnd_[y], left) - left));
        V16x8 uncovered = hn::Zero(d);
        for (size_t x = 0; x < paddedCols; x += 8) {
            const V16x8 columns = hn::Add(hn::Set(d, static_cast<uint16_t>(x)), hn::Load(d, iota));
            const V16x8 width = hn::LoadU(d, widths + x);
            const V16x8 own = hn::IfThenZeroElse(hn::Eq(width, hn::Zero(d)), hn::Add(width, columns));
            V16x8 farthest = hn::Max(own, hn::ShiftLeftLanes<1>(d, own));
            farthest = hn::Max(farthest, hn::ShiftLeftLanes<2>(d, farthest));
            farthest = hn::Max(farthest, hn::ShiftLeftLanes<4>(d, farthest));
            farthest = hn::Max(farthest, rightEnds);
            rightEnds = hn::Broadcast<7>(farthest);
            const V16x8 covered = hn::Or(hn::LoadU(d, covered_ + x), hn::VecFromMask(d, hn::Gt(farthest, columns)));
            uncovered = hn::Or(uncovered, hn::Not(covered));
            const hn::Rebind<uint8_t, D16x8> d8;
            const auto low = hn::BitCast(hn::RebindToSigned<D16x8>(), hn::ShiftRight<8>(covered));
            hn::StoreU(hn::DemoteTo(d8, low), d8, bytes_ + x);
        }
        draw(out + left, cols);

        const size_t leftEnd = hn::GetLane(leftEnds);  // 1 + columns from leftmost covered to strip end
        if (leftEnd > paddedCols + 1) {
            const size_t start = left - (leftEnd - 1 - paddedCols);
            if (start < coveredStart_[y]) fill(out + start, coveredStart_[y] - start);
            coveredStart_[y] = std::min(coveredStart_[y], start);
        }
        if (!hn::AllTrue(d, hn::Eq(uncovered, hn::Zero(d)))) coveredStart_[y] = left + cols;
        coveredEnd_[y] = std::max(coveredEnd_[y], left + hn::GetLane(rightEnds));
    }

    size_t firstColumn() const { return static_cast<size_t>(radius_); }

    static HWY_INLINE size_t farthestEnd(const uint16_t* widths, size_t cols) {
        const D16 d;
        V16 farthest = hn::Zero(d);
        for (size_t x = 0; x < cols; x += kBlock16) {
            const V16 width = hn::LoadU(d, widths + x);
            const V16 end = hn::Add(width, hn::Iota(d, static_cast<uint16_t>(x)));
            farthest = hn::Max(farthest, hn::IfThenZeroElse(hn::Eq(width, hn::Zero(d)), end));
        }
        return hn::GetLane(hn::MaxOfLanes(d, farthest));
    }

    HWY_INLINE void draw(L08* out, size_t cols) const {
        eachBlock(cols, [=, this](size_t i, auto part) HWY_ATTR {
            const D8 d;
            const M8 covered = hn::Ne(hn::LoadU(d, bytes_ + i), hn::Zero(d));
            if (hn::AllFalse(d, covered)) return;
            storeVector(d, out + i, part, drawn_(loadVector(d, out + i, part), covered));
        });
    }

    HWY_INLINE void fill(L08* out, size_t n) const {
        eachBlock(n, [=, this](size_t i, auto part) HWY_ATTR {
            const D8 d;
            const M8 all = hn::Eq(hn::Zero(d), hn::Zero(d));
            storeVector(d, out + i, part, drawn_(loadVector(d, out + i, part), all));
        });
    }

    const Frame& frame_;
    const Drawn drawn_;
    const ptrdiff_t radius_;
    size_t coveredEnd_[kRows];    // in each row of the band, one past the last covered column
    size_t coveredStart_[kRows];  // in each row, every pixel from here to the next strip is drawn
    L08 bits_[kGroups][kCols];
    L08 skippedBelow_[kCols], bitsBelow_[kCols];
    uint16_t above_[kCols];
    uint16_t widths_[8][kCols];
    uint16_t covered_[kCols];
    L08 bytes_[kCols + kPadding];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
