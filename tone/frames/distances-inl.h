// SPDX-License-Identifier: MIT

// The distance of each pixel to the nearest centre of its column, one strip of columns at a time. The distances of one
// row determine what round discs cover in it and how near the centres are. Compiled once per vector level.
#if defined(OMNAR_TONE_FRAMES_DISTANCES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAMES_DISTANCES_INL_H_
#undef OMNAR_TONE_FRAMES_DISTANCES_INL_H_
#else
#define OMNAR_TONE_FRAMES_DISTANCES_INL_H_
#endif

#include "tone/frames/centres-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

// Bytes of scratch for a strip. The `radius` columns at either side of a strip are computed again for the next one.
constexpr size_t kDistanceScratch = 20480;
constexpr uint32_t kMaxDistanceRadius = 254;

/// No centre in this column within 254 rows.
constexpr uint8_t kFar = 255;

/// What a row of entries is made from: the distance of each pixel to the nearest centre of its column other than
/// itself, and the mask of centres.
struct Columns {
    V8 otherDistances;
    M8 areCentres;

    HWY_INLINE V8 distances() const { return hn::IfThenZeroElse(areCentres, otherDistances); }
};

/// Draws a frame in blocks of eight rows. Centres are bits, one byte for the eight rows of a column. Narrow frames keep
/// the bits of `radius` rows ahead, so that each row of the source is examined once. Wide frames keep the bits of the
/// current group of four blocks only, and for the groups ahead the first centre of each column.
///
/// `row.entries(columns)` returns the entries of one vector of a row. `row.draw(...)` draws a row from its entries.
/// Before and after a row in scratch are entries of other rows, which are too far away to have an effect, or padding
/// that is 0.
template <bool centresInShape, class Row>
class DistanceWalk {
public:
    explicit DistanceWalk(const Frame& frame, Row& row)
        : frame_(frame),
          row_(row),
          radius_(frame.disc.radius),
          isWide_(radius_ > kMaxNarrowRadius),
          bitBlocks_(isWide_ ? kBlocks : (radius_ + 7) / 8 + 1),
          groupsAhead_(isWide_ ? (radius_ + kGroupRows - 1) / kGroupRows : 0),
          pitch_((kDistanceScratch - 3 * kPadding) / (kFurtherRows + bitBlocks_ + groupsAhead_) / kBlock8 * kBlock8),
          spare_(scratch_ + kPadding),
          rows_(spare_ + pitch_),
          above_(rows_ + 8 * pitch_ + kPadding),
          bits_(above_ + pitch_),
          firsts_(bits_ + bitBlocks_ * pitch_) {}

    HWY_INLINE void draw() {
        const size_t cols = frame_.centres.cols + 2 * radius_;
        const size_t stripCols = pitch_ - 2 * radius_;
        for (size_t left = 0; left < cols; left += stripCols) drawStrip(left, std::min(stripCols, cols - left));
    }

private:
    static constexpr size_t kFurtherRows = 10;  // of scratch: above_, spare_ and rows_
    static constexpr size_t kMaxNarrowRadius = 32;
    static constexpr size_t kBlocks = 4, kGroupRows = 8 * kBlocks;
    static constexpr size_t kMaxGroupsAhead = (kMaxDistanceRadius + kGroupRows - 1) / kGroupRows;

    HWY_INLINE void drawStrip(size_t left, size_t cols) {
        const Entries entries = entriesOf(frame_, left, cols);
        std::memset(scratch_, 0, sizeof scratch_);
        std::memset(above_, kFar, pitch_);
        const size_t rows = frame_.centres.rows + 2 * radius_, blocks = (rows + 7) / 8;
        size_t ready = 0, groupsReady = 1;  // the first group needs no more than its bits
        for (size_t block = 0; block < blocks; ++block) {
            for (; ready <= block + bitsAhead(block); ++ready) writeBits(ready, entries);
            if (isWide_) {
                for (; groupsReady <= block / kBlocks + groupsAhead_; ++groupsReady) writeFirsts(groupsReady, entries);
            }
            const size_t top = 8 * block, bottom = std::min(rows, top + 8);
            writeRows(block, cols + 2 * radius_);
            for (size_t y = top; y < bottom; ++y) {
                if (nearest_[y - top] > radius_) continue;
                const bool last = y + kRowsAhead >= rows;
                row_.draw(frame_.destination.row(static_cast<ptrdiff_t>(y)) + left, rows_ + (y - top) * pitch_,
                          bitsOf(block), y - top, spare_, cols,
                          last ? 0 : static_cast<ptrdiff_t>(kRowsAhead) * frame_.destination.pitch());
            }
        }
    }

    // A pixel that is drawn is most likely drawn again two rows below, which is prefetched.
    static constexpr size_t kRowsAhead = 2;

    /// The number of blocks after `block` whose bits are kept.
    size_t bitsAhead(size_t block) const { return isWide_ ? kBlocks - 1 - block % kBlocks : bitBlocks_ - 1; }

    HWY_INLINE void writeBits(size_t block, const Entries& entries) {
        L08* const row = bitsOf(block) + entries.first;
        const ptrdiff_t j = static_cast<ptrdiff_t>(8 * block) - static_cast<ptrdiff_t>(radius_);
        const D8 d;
        V8 any = hn::Zero(d);
        eachOverlappingBlock(entries.count, [=, &any, this](size_t i, auto part) HWY_ATTR {
            const V8 bits = centreBits<centresInShape>(frame_, j, entries.column + i, part);
            hn::StoreU(bits, d, row + i);
            any = hn::Or(any, bits);
        });
        holdsBits_[block % bitBlocks_] = !hn::AllTrue(d, hn::Eq(any, hn::Zero(d)));
    }

    /// Writes the first centre of each column in a group of blocks, as rows from the group's first row.
    HWY_INLINE void writeFirsts(size_t group, const Entries& entries) {
        L08* const row = firstsOf(group) + entries.first;
        const ptrdiff_t j = static_cast<ptrdiff_t>(kGroupRows * group) - static_cast<ptrdiff_t>(radius_);
        const D8 d;
        const V8 far = hn::Set(d, kFar);
        std::memset(firstsOf(group), kFar, pitch_);
        V8 any = far;
        eachOverlappingBlock(entries.count, [=, &any, this](size_t i, auto part) HWY_ATTR {
            V8 first = far;
            for (size_t k = 0; k < kBlocks; ++k) {
                const auto offset = static_cast<ptrdiff_t>(8 * k);
                const V8 bits = centreBits<centresInShape>(frame_, j + offset, entries.column + i, part);
                first = hn::Min(first, rowsTo(bits, 8 * k));
            }
            hn::StoreU(first, d, row + i);
            any = hn::Min(any, first);
        });
        holdsFirsts_[group % groupsAhead_] = !hn::AllTrue(d, hn::Eq(any, far));
    }

    HWY_INLINE void writeRows(size_t block, size_t entries) {
        const D8 d;
        const V8 one = hn::Set(d, 1), radius = hn::Set(d, static_cast<uint8_t>(radius_));
        const L08* const bits = bitsOf(block);
        V8 nearest[8];
        for (V8& rowNearest : nearest) rowNearest = hn::Set(d, kFar);
        for (size_t i = 0; i < entries; i += kBlock8) {
            V8 below[9];
            M8 areCentres[8];
            const V8 own = hn::LoadU(d, bits + i);
            V8 above = hn::LoadU(d, above_ + i);
            below[8] = nearestBelow(block, i);
            // Most columns have no centre near: the inside of shapes and the ground far from them.
            if (hn::AllTrue(d, hn::Eq(own, hn::Zero(d))) && hn::AllFalse(d, hn::Lt(hn::Min(above, below[8]), radius))) {
                const V8 far = row_.entries({hn::Set(d, kFar), hn::FirstN(d, 0)});
                for (size_t k = 0; k < 8; ++k) hn::StoreU(far, d, rows_ + k * pitch_ + i);
                hn::StoreU(hn::SaturatedAdd(above, hn::Set(d, 8)), d, above_ + i);
                continue;
            }
            for (size_t k = 8; k-- > 0;) {
                areCentres[k] = hn::TestBit(own, hn::Set(d, static_cast<uint8_t>(1 << k)));
                below[k] = hn::IfThenZeroElse(areCentres[k], hn::SaturatedAdd(below[k + 1], one));
            }
            for (size_t k = 0; k < 8; ++k) {
                const Columns columns{hn::SaturatedAdd(hn::Min(above, below[k + 1]), one), areCentres[k]};
                above = hn::IfThenZeroElse(areCentres[k], hn::SaturatedAdd(above, one));
                nearest[k] = hn::Min(nearest[k], columns.distances());
                hn::StoreU(row_.entries(columns), d, rows_ + k * pitch_ + i);
            }
            hn::StoreU(above, d, above_ + i);
        }
        for (size_t k = 0; k < 8; ++k) {
            L08 lanes[kBlock8];
            hn::StoreU(nearest[k], d, lanes);
            nearest_[k] = *std::min_element(lanes, lanes + kBlock8);
        }
    }

    /// Distances from the row after a block to the nearest centres at or below it.
    HWY_INLINE V8 nearestBelow(size_t block, size_t i) const {
        const D8 d;
        const V8 far = hn::Set(d, kFar);
        const size_t blocks = bitsAhead(block);
        V8 nearest = far;
        for (size_t k = 0; k < blocks; ++k) {
            if (!holdsBits_[(block + 1 + k) % bitBlocks_]) continue;
            nearest = hn::Min(nearest, rowsTo(hn::LoadU(d, bitsOf(block + 1 + k) + i), 8 * k));
            if (hn::AllFalse(d, hn::Eq(nearest, far))) return nearest;
        }
        for (size_t k = 0; k < groupsAhead_; ++k) {
            const size_t group = block / kBlocks + 1 + k;
            if (!holdsFirsts_[group % groupsAhead_]) continue;
            const V8 rows = hn::Set(d, static_cast<uint8_t>(8 * blocks + kGroupRows * k));
            nearest = hn::Min(nearest, hn::SaturatedAdd(hn::LoadU(d, firstsOf(group) + i), rows));
            if (hn::AllFalse(d, hn::Eq(nearest, far))) break;
        }
        return nearest;
    }

    /// Distances to the lowest bit, from `rows` rows above bit 0.
    static HWY_INLINE V8 rowsTo(V8 bits, size_t rows) {
        return hn::SaturatedAdd(lowestBit(bits), hn::Set(D8(), static_cast<uint8_t>(rows)));
    }

    L08* bitsOf(size_t block) const { return bits_ + block % bitBlocks_ * pitch_; }
    L08* firstsOf(size_t group) const { return firsts_ + group % groupsAhead_ * pitch_; }

    const Frame& frame_;
    Row& row_;
    const size_t radius_;
    const bool isWide_;
    const size_t bitBlocks_;    // blocks whose bits are kept
    const size_t groupsAhead_;  // groups of blocks below one that may hold centres within the radius
    const size_t pitch_;
    L08* const spare_;   // scratch row for `row.draw()`
    L08* const rows_;    // eight rows of entries
    L08* const above_;   // distances from the row above a block to the nearest centres at or above it
    L08* const bits_;    // centres of blocks, a ring of bitBlocks_ rows
    L08* const firsts_;  // first centres of groups of blocks, a ring of groupsAhead_ rows
    L08 nearest_[8];     // the least distance in each row
    bool holdsBits_[kMaxNarrowRadius / 8 + 1], holdsFirsts_[kMaxGroupsAhead];
    L08 scratch_[kDistanceScratch];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
