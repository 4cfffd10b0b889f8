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
/// among the centres of a window as wide as the disc is there; from the outermost row to the middle one the windows only
/// grow, one column at either side at a time.
class LevelWalk {
public:
    explicit LevelWalk(const Frame& frame) : frame_(frame), reach_(frame.disc.reach), halfWidths_(frame.disc) {}

    HWY_INLINE void draw() {
        const size_t cols = frame_.centres.cols + 2 * reach_;
        const size_t most = (kCols - 2 * reach_) / kBlock8 * kBlock8;
        for (size_t left = 0; left < cols; left += most) {
            const size_t n = std::min(most, cols - left);
            const size_t first = std::max(left, 2 * reach_) - left;
            const size_t count = std::min(left + n, frame_.centres.cols) + 2 * reach_ - left - first;
            std::memset(levels_, 0, sizeof levels_);
            for (size_t y = 0; y < frame_.centres.rows; ++y) {
                const auto j = static_cast<ptrdiff_t>(y);
                writeLevels(frame_, j, left + first - 2 * reach_, count, levels_ + first);
                drawRow(frame_.target.row(j + static_cast<ptrdiff_t>(reach_)) + left, n);
            }
        }
    }

private:
    static constexpr size_t kCols = 2048;

    /// The last block overlaps the one before: raising a pixel twice changes nothing.
    HWY_INLINE void drawRow(L08* middle, size_t n) {
        if (n < kBlock8) return drawBlock(middle, 0, First{n});
        for (size_t x = 0; x < n; x += kBlock8) drawBlock(middle, std::min(x, n - kBlock8), All());
    }

    /// Pixels x and on of the discs' rows. Their windows begin at entry x of the levels and are 2 * reach + 1 wide.
    HWY_INLINE void drawBlock(L08* middle, size_t x, auto part) {
        const D8 d;
        V8 all = hn::Zero(d);
        for (size_t i = 0; i < kBlock8 + 2 * reach_; i += kBlock8) all = hn::Or(all, hn::LoadU(d, levels_ + x + i));
        if (hn::AllTrue(d, hn::Eq(all, hn::Zero(d)))) return;

        const L08* const own = levels_ + x + reach_;
        const auto pitch = static_cast<ptrdiff_t>(frame_.target.pitch());
        V8 greatest = hn::LoadU(d, own);
        size_t width = 0;
        for (size_t dy = reach_ + 1; dy-- > 0;) {
            for (; width < halfWidths_.of[dy]; ++width) {
                greatest = hn::Max(greatest, hn::Max(hn::LoadU(d, own - width - 1), hn::LoadU(d, own + width + 1)));
            }
            for (L08* const row :
                 {middle - static_cast<ptrdiff_t>(dy) * pitch, middle + static_cast<ptrdiff_t>(dy) * pitch}) {
                storeVector(d, row + x, part, hn::Max(greatest, loadVector(d, row + x, part)));
            }
        }
    }

    const Frame& frame_;
    const size_t reach_;
    const HalfWidths halfWidths_;
    L08 levels_[kCols + 2 * kRoom];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
