// SPDX-License-Identifier: MIT

// For each pixel of a tile, the distance to the nearest centre of its column; compiled once for every level. What a row
// of round discs covers, and how near they are, follows from the distances of one row alone.
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

// The scratch of a tile. Every entry for a column at either side of the tile's own, a reach of them, is computed once more
// for the next tile.
constexpr size_t kDistanceScratch = 20480;
constexpr uint32_t kWidestByDistances = 254;

/// No centre in this column, or too far to matter.
constexpr uint8_t kFar = 255;

/// What a row of entries is made from: the distance of each pixel to the nearest centre of its column other than itself,
/// and which pixels are centres.
struct Columns {
    V8 toOthers;
    M8 areCentres;

    HWY_INLINE V8 distances() const { return hn::IfThenZeroElse(areCentres, toOthers); }
};

/// Draws a frame in blocks of eight rows. Centres are kept as bits, a byte for the eight rows of a column. Those of narrow
/// frames are kept as far ahead as a reach, so that every row of the source is looked at once. Of wide frames only those of
/// the four blocks that are being drawn are there, and farther ahead the first centre of each column in four blocks.
///
/// `row.entries(columns)` gives what is kept of a row, a vector at a time, and `row.draw(...)` draws a row from it. Before
/// a row and after it are the entries of another, which are too far away to matter, or room that is 0.
template <bool ofShape, class Row>
class DistanceWalk {
public:
    explicit DistanceWalk(const Frame& frame, Row& row)
        : frame_(frame),
          row_(row),
          reach_(frame.disc.reach),
          isWide_(reach_ > kNarrow),
          bitBlocks_(isWide_ ? kBlocks : (reach_ + 7) / 8 + 1),
          groupsAhead_(isWide_ ? (reach_ + kGroupRows - 1) / kGroupRows : 0),
          pitch_((kDistanceScratch - 3 * kRoom) / (kFurtherRows + bitBlocks_ + groupsAhead_) / kBlock8 * kBlock8),
          spare_(scratch_ + kRoom),
          rows_(spare_ + pitch_),
          above_(rows_ + 8 * pitch_ + kRoom),
          bits_(above_ + pitch_),
          firsts_(bits_ + bitBlocks_ * pitch_) {}

    HWY_INLINE void draw() {
        const size_t cols = frame_.centres.cols + 2 * reach_;
        const size_t most = pitch_ - 2 * reach_;
        for (size_t left = 0; left < cols; left += most) drawTile(left, std::min(most, cols - left));
    }

private:
    static constexpr size_t kFurtherRows = 10;  // of scratch: above_, spare_ and rows_
    static constexpr size_t kNarrow = 32;
    static constexpr size_t kBlocks = 4, kGroupRows = 8 * kBlocks;
    static constexpr size_t kMostGroupsAhead = (kWidestByDistances + kGroupRows - 1) / kGroupRows;

    HWY_INLINE void drawTile(size_t left, size_t cols) {
        const Entries entries = entriesOf(frame_, left, cols);
        std::memset(scratch_, 0, sizeof scratch_);
        std::memset(above_, kFar, pitch_);
        const size_t rows = frame_.centres.rows + 2 * reach_, blocks = (rows + 7) / 8;
        size_t ready = 0, groupsReady = 1;  // the first group needs no more than its bits
        for (size_t block = 0; block < blocks; ++block) {
            for (; ready <= block + bitsAhead(block); ++ready) writeBits(ready, entries);
            if (isWide_) {
                for (; groupsReady <= block / kBlocks + groupsAhead_; ++groupsReady) writeFirsts(groupsReady, entries);
            }
            const size_t top = 8 * block, bottom = std::min(rows, top + 8);
            writeRows(block, cols + 2 * reach_);
            for (size_t y = top; y < bottom; ++y) {
                if (nearest_[y - top] > reach_) continue;
                const bool last = y + kRowsAhead >= rows;
                row_.draw(frame_.target.row(static_cast<ptrdiff_t>(y)) + left, rows_ + (y - top) * pitch_,
                          bitsOf(block), y - top, spare_, cols,
                          last ? 0 : static_cast<ptrdiff_t>(kRowsAhead) * frame_.target.pitch());
            }
        }
    }

    // What is drawn is most likely drawn two rows farther down, too, and is fetched for it.
    static constexpr size_t kRowsAhead = 2;

    /// How many blocks ahead of one have their bits.
    size_t bitsAhead(size_t block) const { return isWide_ ? kBlocks - 1 - block % kBlocks : bitBlocks_ - 1; }

    HWY_INLINE void writeBits(size_t block, const Entries& entries) {
        L08* const to = bitsOf(block) + entries.first;
        const ptrdiff_t j = static_cast<ptrdiff_t>(8 * block) - static_cast<ptrdiff_t>(reach_);
        const D8 d;
        V8 any = hn::Zero(d);
        coverBlocks(entries.count, [=, &any, this](size_t i, auto part) HWY_ATTR {
            const V8 bits = centreBits<ofShape>(frame_, j, entries.column + i, part);
            hn::StoreU(bits, d, to + i);
            any = hn::Or(any, bits);
        });
        holdsBits_[block % bitBlocks_] = !hn::AllTrue(d, hn::Eq(any, hn::Zero(d)));
    }

    /// The first centre of each column in a group of blocks, as rows from the first one.
    HWY_INLINE void writeFirsts(size_t group, const Entries& entries) {
        L08* const to = firstsOf(group) + entries.first;
        const ptrdiff_t j = static_cast<ptrdiff_t>(kGroupRows * group) - static_cast<ptrdiff_t>(reach_);
        const D8 d;
        const V8 far = hn::Set(d, kFar);
        std::memset(firstsOf(group), kFar, pitch_);
        V8 any = far;
        coverBlocks(entries.count, [=, &any, this](size_t i, auto part) HWY_ATTR {
            V8 first = far;
            for (size_t k = 0; k < kBlocks; ++k) {
                const auto row = static_cast<ptrdiff_t>(8 * k);
                const V8 bits = centreBits<ofShape>(frame_, j + row, entries.column + i, part);
                first = hn::Min(first, rowsTo(bits, 8 * k));
            }
            hn::StoreU(first, d, to + i);
            any = hn::Min(any, first);
        });
        holdsFirsts_[group % groupsAhead_] = !hn::AllTrue(d, hn::Eq(any, far));
    }

    HWY_INLINE void writeRows(size_t block, size_t entries) {
        const D8 d;
        const V8 one = hn::Set(d, 1), reach = hn::Set(d, static_cast<uint8_t>(reach_));
        const L08* const bits = bitsOf(block);
        V8 nearest[8];
        for (V8& each : nearest) each = hn::Set(d, kFar);
        for (size_t i = 0; i < entries; i += kBlock8) {
            V8 below[9];
            M8 areCentres[8];
            const V8 own = hn::LoadU(d, bits + i);
            V8 above = hn::LoadU(d, above_ + i);
            below[8] = nearestBelow(block, i);
            // Most columns have no centre near, inside shapes and far from them.
            if (hn::AllTrue(d, hn::Eq(own, hn::Zero(d))) && hn::AllFalse(d, hn::Lt(hn::Min(above, below[8]), reach))) {
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

    /// From the row after a block to the nearest centres at or below it.
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

    /// To the lowest bit, from that many rows farther up.
    static HWY_INLINE V8 rowsTo(V8 bits, size_t rows) {
        return hn::SaturatedAdd(lowestBit(bits), hn::Set(D8(), static_cast<uint8_t>(rows)));
    }

    L08* bitsOf(size_t block) const { return bits_ + block % bitBlocks_ * pitch_; }
    L08* firstsOf(size_t group) const { return firsts_ + group % groupsAhead_ * pitch_; }

    const Frame& frame_;
    Row& row_;
    const size_t reach_;
    const bool isWide_;
    const size_t bitBlocks_;    // whose bits are there
    const size_t groupsAhead_;  // groups of blocks below one that may hold centres within reach of it
    const size_t pitch_;
    L08* const spare_;   // a row for `row.draw()`
    L08* const rows_;    // eight rows of entries
    L08* const above_;   // from the row above a block to the nearest centres at or above it
    L08* const bits_;    // the centres of blocks, which go round
    L08* const firsts_;  // the first centres in groups of blocks, which go round
    L08 nearest_[8];     // distances in each row
    bool holdsBits_[kNarrow / 8 + 1], holdsFirsts_[kMostGroupsAhead];
    L08 scratch_[kDistanceScratch];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
