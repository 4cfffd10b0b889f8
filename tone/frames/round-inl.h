// SPDX-License-Identifier: MIT

// Frames that are drawn by rows of centres, compiled once for every level.
#if defined(OMNAR_TONE_FRAMES_ROUND_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAMES_ROUND_INL_H_
#undef OMNAR_TONE_FRAMES_ROUND_INL_H_
#else
#define OMNAR_TONE_FRAMES_ROUND_INL_H_
#endif

#include "tone/frames/centres-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

constexpr size_t kRoundScratch = 17408;
constexpr size_t kWidestRound = kRoundScratch / 2 / kBlock8;

/// Each row of centres draws the rows of its discs, a block of pixels at a time. The rows that are being drawn, 2 * reach + 1
/// of them, go round in scratch of their own: in rows of the target, which often lie a multiple of a power of two apart,
/// loads would wait for stores that only look as if they overlapped.
///
/// `discs.draw(levels, rows)` gives `rows` what a row of centres draws on a block of pixels, dy rows above it and below.
/// Theirs is the first of the levels, with a reach more at either side.
template <class Discs, Hard kind>
class RoundWalk {
public:
    /// Whether there is room for the rows of a tile that is a vector wide.
    static bool fits(size_t reach) { return (2 * reach + 1) * kBlock8 <= kRoundScratch; }

    explicit RoundWalk(const Frame& frame)
        : frame_(frame),
          reach_(frame.disc.reach),
          height_(2 * reach_ + 1),
          most_(columnsOfTile(height_)),
          discs_(frame.disc) {}

    HWY_INLINE void draw() {
        const size_t cols = frame_.centres.cols + 2 * reach_;
        for (size_t left = 0; left < cols; left += most_) drawTile(left, std::min(most_, cols - left));
    }

private:
    static constexpr size_t kMostCols = kRoundScratch / 5;

    /// Rows of scratch are an odd number of vectors apart if that costs little, so that they do not fall on the same places
    /// of a cache.
    static size_t columnsOfTile(size_t height) {
        const size_t vectors = std::min(kRoundScratch / height, kMostCols) / kBlock8;
        return (vectors > 6 && vectors % 2 == 0 ? vectors - 1 : vectors) * kBlock8;
    }

    HWY_INLINE void drawTile(size_t left, size_t cols) {
        const Entries entries = entriesOf(frame_, left, cols);
        std::memset(levels_, 0, sizeof levels_);
        std::memset(rows_, 0, sizeof rows_);
        const size_t rows = frame_.centres.rows + 2 * reach_;
        for (size_t y = 0; y < rows; ++y) {
            if (y < frame_.centres.rows) {
                const bool any = writeLevels<kind>(frame_, static_cast<ptrdiff_t>(y), entries.column, entries.count,
                                                   levels_ + entries.first);
                for (size_t x = 0; any && x < cols; x += kBlock8) {
                    discs_.draw(levels_ + x, Rows{rows_ + x, most_, height_, (y + reach_) % height_});
                }
            }
            pour<kind>(rows_ + y % height_ * most_, frame_.target.row(static_cast<ptrdiff_t>(y)) + left, cols,
                       y + 2 < rows ? 2 * frame_.target.pitch() : 0);
        }
    }

    /// A block of pixels in each of the rows that go round.
    struct Rows {
        L08* block;
        size_t pitch, height, middle;

        HWY_INLINE void above(size_t dy, V8 drawn) const {
            raise(middle >= dy ? middle - dy : middle + height - dy, drawn);
        }
        HWY_INLINE void below(size_t dy, V8 drawn) const {
            raise(middle + dy < height ? middle + dy : middle + dy - height, drawn);
        }
        HWY_INLINE void raise(size_t row, V8 drawn) const {
            const D8 d;
            L08* const pixels = block + row * pitch;
            hn::StoreU(hn::Max(hn::LoadU(d, pixels), drawn), d, pixels);
        }
    };

    const Frame& frame_;
    const size_t reach_;
    const size_t height_;  // rows that go round
    const size_t most_;    // columns of a tile
    const Discs discs_;
    L08 levels_[kMostCols + 2 * kRoom];  // the more there are at the sides, the fewer columns a tile has
    L08 rows_[kRoundScratch];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
