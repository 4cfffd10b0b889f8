// Frames that carry the levels of their centres, compiled once for every level.
#if defined(OMNAR_TONE_FRAME_LEVELS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAME_LEVELS_INL_H_
#undef OMNAR_TONE_FRAME_LEVELS_INL_H_
#else
#define OMNAR_TONE_FRAME_LEVELS_INL_H_
#endif

#include "tone/frame_centres-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// Each row of centres draws the rows of its discs. Those that lie dy rows away show, at each pixel, the greatest level
/// among the centres of a window as wide as the disc is there; from the outermost row to the middle one the windows
/// only grow, one column at either side at a time.
///
/// The rows that are being drawn, 2 * reach + 1 of them, go round in scratch of their own: in rows of the target, which
/// often lie a multiple of a power of two apart, loads would wait for stores that only look as if they overlapped.
class LevelWalk {
public:
    explicit LevelWalk(const Frame& frame)
        : frame_(frame),
          reach_(frame.disc.reach),
          halfWidths_(frame.disc),
          height_(2 * reach_ + 1),
          most_(kScratch / height_ / kBlock8 * kBlock8) {}

    HWY_INLINE void draw() {
        const size_t cols = frame_.centres.cols + 2 * reach_;
        for (size_t left = 0; left < cols; left += most_) drawTile(left, std::min(most_, cols - left));
    }

private:
    static constexpr size_t kScratch = 40960;
    static constexpr size_t kMostCols = kScratch / 3;

    HWY_INLINE void drawTile(size_t left, size_t cols) {
        const Entries entries = entriesOf(frame_, left, cols);
        std::memset(levels_, 0, sizeof levels_);
        std::memset(rows_, 0, sizeof rows_);
        for (size_t y = 0; y < frame_.centres.rows + 2 * reach_; ++y) {
            if (y < frame_.centres.rows) {
                writeLevels(frame_, static_cast<ptrdiff_t>(y), entries.column, entries.count, levels_ + entries.first);
                for (size_t x = 0; x < cols; x += kBlock8) drawBlock((y + reach_) % height_, x);
            }
            pour(rows_ + y % height_ * most_, frame_.target.row(static_cast<ptrdiff_t>(y)) + left, cols);
        }
    }

    /// Windows of the pixels from x on begin at entry x of the levels.
    HWY_INLINE void drawBlock(size_t middle, size_t x) {
        const D8 d;
        V8 all = hn::Zero(d);
        for (size_t i = 0; i < kBlock8 + 2 * reach_; i += kBlock8) all = hn::Or(all, hn::LoadU(d, levels_ + x + i));
        if (hn::AllTrue(d, hn::Eq(all, hn::Zero(d)))) return;

        const L08* const own = levels_ + x + reach_;
        V8 greatest = hn::LoadU(d, own);
        size_t width = 0;
        for (size_t dy = reach_ + 1; dy-- > 0;) {
            for (; width < halfWidths_.of[dy]; ++width) {
                greatest = hn::Max(greatest, hn::Max(hn::LoadU(d, own - width - 1), hn::LoadU(d, own + width + 1)));
            }
            raise(middle >= dy ? middle - dy : middle + height_ - dy, x, greatest);
            raise(middle + dy < height_ ? middle + dy : middle + dy - height_, x, greatest);
        }
    }

    HWY_INLINE void raise(size_t row, size_t x, V8 levels) {
        const D8 d;
        L08* const pixels = rows_ + row * most_ + x;
        hn::StoreU(hn::Max(hn::LoadU(d, pixels), levels), d, pixels);
    }

    const Frame& frame_;
    const size_t reach_;
    const HalfWidths halfWidths_;
    const size_t height_;  // rows that go round
    const size_t most_;    // columns of a tile
    L08 levels_[kMostCols + 2 * kRoom];
    L08 rows_[kScratch];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
