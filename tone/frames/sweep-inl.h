// SPDX-License-Identifier: MIT

// Wide frames that draw one value wherever a disc covers, compiled once for every level.
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

/// The nearest centres of columns in one direction: how many groups of eight rows hold none, and the centres of the first
/// group that holds some, as bits.
struct NearestGroup {
    V8 skipped, bits;

    /// Looks into the next group.
    HWY_INLINE void lookInto(V8 next) {
        const D8 d;
        const V8 none = hn::VecFromMask(d, hn::Eq(bits, hn::Zero(d)));
        bits = hn::Or(bits, hn::And(none, next));
        skipped = hn::SaturatedAdd(
            skipped, hn::And(hn::And(none, hn::Set(d, 1)), hn::VecFromMask(d, hn::Eq(bits, hn::Zero(d)))));
    }
    HWY_INLINE bool allFound() const { return hn::AllFalse(D8(), hn::Eq(bits, hn::Zero(D8()))); }
};

/// A band of rows is swept from left to right, a tile of columns at a time. In each row a column covers as far to either
/// side as the disc with the nearest centre of the column: its half width. To the right, the farthest end so far is carried
/// along; to the left, what a tile covers of those before it is drawn at once. So no tile needs the columns of a reach
/// at its sides, and the scratch does not grow with the reach.
template <bool ofShape, class Drawn>
class SweepWalk {
public:
    SweepWalk(const Frame& frame, Drawn drawn)
        : frame_(frame), drawn_(drawn), reach_(static_cast<ptrdiff_t>(frame.disc.reach)) {}

    HWY_INLINE void draw() {
        const size_t rows = frame_.centres.rows + 2 * frame_.disc.reach;
        for (size_t top = 0; top < rows; top += kRows) drawBand(top, std::min(kRows, rows - top));
    }

private:
    static constexpr size_t kCols = 256, kGroups = 32, kRows = 8 * kGroups;
    static constexpr uint16_t kFar = 0x7FFF;

    // Sixteen bytes at any level: ends are carried along a row from one such vector to the next.
    using D16x8 = hn::FixedTag<uint16_t, 8>;
    using V16x8 = hn::Vec<D16x8>;

    HWY_INLINE void drawBand(size_t top, size_t rows) {
        const auto reach = static_cast<size_t>(reach_);
        std::fill_n(end_, rows, reach);
        std::fill_n(coveredFrom_, rows, reach);
        const auto j = static_cast<ptrdiff_t>(top) - reach_;
        for (size_t left = 0; left < frame_.centres.cols; left += kCols) {
            const size_t cols = std::min(kCols, frame_.centres.cols - left);
            writeBits(j, left, cols);
            lookUp(j, left, cols);
            lookDown(j + static_cast<ptrdiff_t>(kRows), left, cols);
            for (size_t group = 0; 8 * group < rows; ++group) {
                writeWidths(group, cols);
                for (size_t y = 8 * group; y < std::min(rows, 8 * group + 8); ++y) {
                    drawRow(frame_.target.row(static_cast<ptrdiff_t>(top + y)), y, left + reach, cols);
                }
            }
        }
        for (size_t y = 0; y < rows; ++y) {
            const size_t right = frame_.centres.cols + reach;
            if (end_[y] > right) {
                fill(frame_.target.row(static_cast<ptrdiff_t>(top + y)) + right, end_[y] - right);
            }
        }
    }

    /// The centres of the band itself, whose first row is row j of the frame.
    HWY_INLINE void writeBits(ptrdiff_t j, size_t left, size_t cols) {
        std::memset(bits_, 0, sizeof bits_);
        for (size_t group = 0; group < kGroups; ++group, j += 8) {
            coverBlocks(cols, [=, this](size_t i, auto part) HWY_ATTR {
                hn::StoreU(centreBits<ofShape>(frame_, j, left + i, part), D8(), bits_[group] + i);
            });
        }
    }

    /// The nearest centres below the band, whose end is row j, as far as they are within reach.
    HWY_INLINE void lookDown(ptrdiff_t j, size_t left, size_t cols) {
        std::memset(skippedBelow_, 0, sizeof skippedBelow_);
        std::memset(bitsBelow_, 0, sizeof bitsBelow_);
        const ptrdiff_t end = std::min(j + reach_, static_cast<ptrdiff_t>(frame_.centres.rows));
        bool found = false;
        for (; j < end && !found; j += 8) found = lookIntoGroup(j, left, cols, skippedBelow_, bitsBelow_);
    }

    /// The nearest centres above the band, whose first row is row j, as distances from the row above it.
    HWY_INLINE void lookUp(ptrdiff_t j, size_t left, size_t cols) {
        L08 skipped[kCols] = {}, bits[kCols] = {};
        const ptrdiff_t end = std::max<ptrdiff_t>(j - reach_, 0);
        bool found = false;
        for (ptrdiff_t group = j - 8; group + 8 > end && !found; group -= 8) {
            found = lookIntoGroup(group, left, cols, skipped, bits);
        }
        for (size_t i = 0; i < kCols; ++i) {
            above_[i] = bits[i] == 0 ? kFar : static_cast<uint16_t>(8 * skipped[i] + std::countl_zero(bits[i]));
        }
    }

    /// True if every column has its nearest centre now.
    HWY_INLINE bool lookIntoGroup(ptrdiff_t j, size_t left, size_t cols, L08* skipped, L08* bits) {
        const D8 d;
        bool found = true;
        for (size_t i = 0; i < cols; i += kBlock8) {
            NearestGroup nearest{hn::LoadU(d, skipped + i), hn::LoadU(d, bits + i)};
            if (i + kBlock8 <= cols) {
                if (nearest.allFound()) continue;
                nearest.lookInto(centreBits<ofShape>(frame_, j, left + i, All()));
            } else {
                nearest.lookInto(centreBits<ofShape>(frame_, j, left + i, First{cols - i}));
            }
            hn::StoreU(nearest.skipped, d, skipped + i);
            hn::StoreU(nearest.bits, d, bits + i);
            found = found && nearest.allFound();
        }
        return found;
    }

    /// Half widths + 1 of the discs with the nearest centres, for eight rows; 0 where none is within reach.
    HWY_INLINE void writeWidths(size_t group, size_t cols) {
        const D8 d;
        for (size_t i = 0; i < cols; i += kBlock8) {
            NearestGroup nearest{hn::Zero(d), hn::Zero(d)};
            for (size_t next = group + 1; next < kGroups; ++next) {
                nearest.lookInto(hn::LoadU(d, bits_[next] + i));
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
        const V16 own = wide(bits);
        const V16 last = wide(lowest);
        V16 below[9];
        below[8] = hn::IfThenElse(hn::Eq(last, hn::Set(d, 255)), hn::Set(d, kFar),
                                  hn::Add(hn::ShiftLeft<3>(wide(skipped)), last));
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
    static HWY_INLINE V16 wide(const L08* from) {
        return hn::PromoteTo(D16(), hn::LoadU(hn::Rebind<uint8_t, D16>(), from));
    }

    /// A disc covers what is within the root of r * r + r, and so is its half width: the root of what is left of that.
    /// Single precision tells the roots of different whole numbers below 2^22 apart.
    HWY_INLINE V16 halfWidths(V16 distances) const {
        const D16 d;
        const V16 reach = hn::Set(d, static_cast<uint16_t>(reach_));
        const auto far = hn::Gt(distances, reach);
        if (hn::AllTrue(d, far)) return hn::Zero(d);
        const hn::Half<D16> half;
        const V16 near = hn::Min(distances, reach);
        const auto first = roots(hn::PromoteTo(DI32(), hn::LowerHalf(half, near)));
        const auto second = roots(hn::PromoteTo(DI32(), hn::UpperHalf(half, near)));
        return hn::IfThenZeroElse(far, hn::Combine(d, second, first));
    }
    HWY_INLINE hn::Vec<hn::Half<D16>> roots(hn::Vec<DI32> distances) const {
        const DF32 d;
        const auto distance = hn::ConvertTo(d, distances);
        const auto square = hn::Set(d, static_cast<float>(reach_ * reach_ + reach_));
        const auto root = hn::Sqrt(hn::Sub(square, hn::Mul(distance, distance)));
        return hn::DemoteTo(hn::Half<D16>(), hn::ConvertTo(DI32(), hn::Add(root, hn::Set(d, 1.0F))));
    }

    /// Draws columns left to left + cols - 1 of the target, and what their discs cover to the left of them.
    HWY_INLINE void drawRow(L08* out, size_t y, size_t left, size_t cols) {
        const D16x8 d;
        const uint16_t* const widths = widths_[y % 8];
        alignas(16) static constexpr uint16_t iota[8] = {0, 1, 2, 3, 4, 5, 6, 7};
        const size_t all = (cols + 7) / 8 * 8;  // the columns past the last one have no centres
        if (end_[y] >= left + cols && coveredFrom_[y] <= std::max(left - static_cast<size_t>(reach_), firstColumn())) {
            // All that the tile's discs reach is covered, but for what is to the right of the tile.
            fill(out + left, cols);
            end_[y] = std::max(end_[y], left + farthestEnd(widths, cols));
            return;
        }

        // How far the discs of the columns from x on reach to the left, from the end of the tile.
        V16x8 starts = hn::Zero(d);
        for (size_t x = all; x > 0;) {
            x -= 8;
            const V16x8 toEnd = hn::Sub(hn::Set(d, static_cast<uint16_t>(all - x)), hn::Load(d, iota));
            const V16x8 width = hn::LoadU(d, widths + x);
            const V16x8 own = hn::IfThenZeroElse(hn::Eq(width, hn::Zero(d)), hn::Add(width, toEnd));
            V16x8 most = hn::Max(own, hn::ShiftRightLanes<1>(d, own));
            most = hn::Max(most, hn::ShiftRightLanes<2>(d, most));
            most = hn::Max(most, hn::ShiftRightLanes<4>(d, most));
            most = hn::Max(most, starts);
            starts = hn::Broadcast<0>(most);
            hn::StoreU(hn::VecFromMask(d, hn::Gt(most, toEnd)), d, covered_ + x);
        }
        // And where those of the columns up to x end, as seen from the start of the tile.
        V16x8 ends = hn::Set(d, static_cast<uint16_t>(std::max(end_[y], left) - left));
        V16x8 uncovered = hn::Zero(d);
        for (size_t x = 0; x < all; x += 8) {
            const V16x8 at = hn::Add(hn::Set(d, static_cast<uint16_t>(x)), hn::Load(d, iota));
            const V16x8 width = hn::LoadU(d, widths + x);
            const V16x8 own = hn::IfThenZeroElse(hn::Eq(width, hn::Zero(d)), hn::Add(width, at));
            V16x8 most = hn::Max(own, hn::ShiftLeftLanes<1>(d, own));
            most = hn::Max(most, hn::ShiftLeftLanes<2>(d, most));
            most = hn::Max(most, hn::ShiftLeftLanes<4>(d, most));
            most = hn::Max(most, ends);
            ends = hn::Broadcast<7>(most);
            const V16x8 covered = hn::Or(hn::LoadU(d, covered_ + x), hn::VecFromMask(d, hn::Gt(most, at)));
            uncovered = hn::Or(uncovered, hn::Not(covered));
            const hn::Rebind<uint8_t, D16x8> d8;
            const auto low = hn::BitCast(hn::RebindToSigned<D16x8>(), hn::ShiftRight<8>(covered));
            hn::StoreU(hn::DemoteTo(d8, low), d8, bytes_ + x);
        }
        draw(out + left, cols);

        const size_t behind = hn::GetLane(starts);  // one more than from the end of the tile to where they start
        if (behind > all + 1) {
            const size_t from = left - (behind - 1 - all);
            if (from < coveredFrom_[y]) fill(out + from, coveredFrom_[y] - from);
            coveredFrom_[y] = std::min(coveredFrom_[y], from);
        }
        if (!hn::AllTrue(d, hn::Eq(uncovered, hn::Zero(d)))) coveredFrom_[y] = left + cols;
        end_[y] = std::max(end_[y], left + hn::GetLane(ends));
    }

    size_t firstColumn() const { return static_cast<size_t>(reach_); }

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
    const ptrdiff_t reach_;
    size_t end_[kRows];          // of what is covered, in each row of the band: one past the last column
    size_t coveredFrom_[kRows];  // from here to the tile that comes next all is drawn
    L08 bits_[kGroups][kCols];
    L08 skippedBelow_[kCols], bitsBelow_[kCols];
    uint16_t above_[kCols];
    uint16_t widths_[8][kCols];
    uint16_t covered_[kCols];
    L08 bytes_[kCols + kRoom];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
