// SPDX-License-Identifier: MIT

// Frames drawn by rows of centres. Compiled once per vector level.
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
constexpr size_t kMaxRoundRadius = kRoundScratch / 2 / kBlock8;

/// Each row of centres draws the rows of its discs, one block of pixels at a time. The 2 * radius + 1 rows being drawn
/// are a ring in scratch: rows of the destination are often a multiple of a power of two apart, which makes loads wait
/// for earlier stores at the same low address bits.
///
/// `discs.draw(values, rows)` calls `rows.above(dy, drawn)` and `rows.below(dy, drawn)` with what a row of centres
/// draws on a block of pixels, dy rows above and below it. `values` starts `radius` entries before the block.
template <class Discs, HardMode mode>
class RoundWalk {
public:
    /// True if scratch holds the rows of a strip one vector wide.
    static bool fits(size_t radius) { return (2 * radius + 1) * kBlock8 <= kRoundScratch; }

    explicit RoundWalk(const Frame& frame)
        : frame_(frame),
          radius_(frame.disc.radius),
          height_(2 * radius_ + 1),
          stripCols_(columnsOfStrip(height_)),
          discs_(frame.disc) {}

    HWY_INLINE void draw() {
        const size_t cols = frame_.centres.cols + 2 * radius_;
        for (size_t left = 0; left < cols; left += stripCols_) drawStrip(left, std::min(stripCols_, cols - left));
    }

private:
    static constexpr size_t kMaxCols = kRoundScratch / 5;

    /// Rows of scratch are an odd number of vectors apart if that costs at most one in eight, so that they use
    /// different cache sets.
    static size_t columnsOfStrip(size_t height) {
        const size_t vectors = std::min(kRoundScratch / height, kMaxCols) / kBlock8;
        return (vectors > 6 && vectors % 2 == 0 ? vectors - 1 : vectors) * kBlock8;
    }

    HWY_INLINE void drawStrip(size_t left, size_t cols) {
        const Entries entries = entriesOf(frame_, left, cols);
        std::memset(values_, 0, sizeof values_);
        std::memset(rows_, 0, sizeof rows_);
        const size_t rows = frame_.centres.rows + 2 * radius_;
        for (size_t y = 0; y < rows; ++y) {
            if (y < frame_.centres.rows) {
                const bool any = writeValues<mode>(frame_, static_cast<ptrdiff_t>(y), entries.column, entries.count,
                                                   values_ + entries.first);
                for (size_t x = 0; any && x < cols; x += kBlock8) {
                    discs_.draw(values_ + x, Rows{rows_ + x, stripCols_, height_, (y + radius_) % height_});
                }
            }
            flushRow<mode>(rows_ + y % height_ * stripCols_, frame_.destination.row(static_cast<ptrdiff_t>(y)) + left,
                           cols, y + 2 < rows ? 2 * frame_.destination.pitch() : 0);
        }
    }

    /// A block of pixels in each row of the ring.
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
    const size_t radius_;
    const size_t height_;     // rows of the ring
    const size_t stripCols_;  // columns of a strip
    const Discs discs_;
    L08 values_[kMaxCols + 2 * kPadding];  // a larger radius leaves fewer columns for a strip
    L08 rows_[kRoundScratch];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
