// SPDX-License-Identifier: MIT

// Hard frames of width 1, the most common, whose disc is the 3 x 3 square, and of width 0, which draw on their centres
// alone. Compiled once per vector level.
#if defined(OMNAR_TONE_FRAMES_NARROW_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAMES_NARROW_INL_H_
#undef OMNAR_TONE_FRAMES_NARROW_INL_H_
#else
#define OMNAR_TONE_FRAMES_NARROW_INL_H_
#endif

#include "tone/frames/centres-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// Each row of centres is spread by one pixel to either side. Each row of the destination takes the maximum of three
/// such rows, which are kept in a ring. Centres count as 255 unless the mode is `values`.
template <HardMode mode>
class NarrowWalk {
public:
    explicit NarrowWalk(const Frame& frame) : frame_(frame) {}

    HWY_INLINE void draw() {
        const size_t cols = frame_.centres.cols + 2;
        for (size_t left = 0; left < cols; left += kCols) drawStrip(left, std::min(kCols, cols - left));
    }

private:
    static constexpr size_t kCols = 4096;

    HWY_INLINE void drawStrip(size_t left, size_t cols) {
        const Entries entries = entriesOf(frame_, left, cols);
        std::memset(centres_, 0, sizeof centres_);
        std::memset(spread_, 0, sizeof spread_);
        size_t endRow = 0;  // of the destination: one past the last row that a centre so far draws on
        for (size_t y = 0; y < frame_.centres.rows + 2; ++y) {
            L08* const spread = spread_[y % 3];
            if (y < frame_.centres.rows && writeValues<mode>(frame_, static_cast<ptrdiff_t>(y), entries.column,
                                                             entries.count, centres_ + entries.first)) {
                endRow = y + 3;
                for (size_t x = 0; x < cols; x += kBlock8) {
                    const D8 d;
                    const V8 neighbours = hn::Max(hn::LoadU(d, centres_ + x), hn::LoadU(d, centres_ + x + 2));
                    hn::StoreU(hn::Max(neighbours, hn::LoadU(d, centres_ + x + 1)), d, spread + x);
                }
            } else {
                std::memset(spread, 0, cols);
            }
            if (y < endRow) drawRow(frame_.destination.row(static_cast<ptrdiff_t>(y)) + left, cols);
        }
    }

    HWY_INLINE void drawRow(L08* out, size_t cols) const {
        eachBlock(cols, [=, this](size_t i, auto part) HWY_ATTR {
            const D8 d;
            const V8 above = hn::Max(hn::LoadU(d, spread_[0] + i), hn::LoadU(d, spread_[1] + i));
            const V8 spread = hn::Max(above, hn::LoadU(d, spread_[2] + i));
            if (hn::AllTrue(d, hn::Eq(spread, hn::Zero(d)))) return;
            const V8 old = loadVector(d, out + i, part);
            if constexpr (mode == HardMode::erase) {
                storeVector(d, out + i, part, hn::AndNot(spread, old));
            } else {
                storeVector(d, out + i, part, hn::Max(spread, old));
            }
        });
    }

    const Frame& frame_;
    L08 centres_[kCols + 2 * kPadding];  // pixel x is entry x + 1
    L08 spread_[3][kCols + kPadding];
};

/// Frames of width 0 touch the buffer's edge, outside of which all is ground: the pixels at the edge are processed one
/// by one.
template <HardMode mode>
class DotWalk {
public:
    explicit DotWalk(const Frame& frame) : frame_(frame) {}

    HWY_INLINE void draw() {
        const auto rows = static_cast<ptrdiff_t>(frame_.centres.rows);
        const auto cols = static_cast<ptrdiff_t>(frame_.centres.cols);
        for (ptrdiff_t j = 0; j < rows; ++j) {
            const bool inside = j > 0 && j < rows - 1 && cols > 2;
            for (ptrdiff_t i = 0; i < cols; i += inside ? cols - 1 : 1) drawPixel(i, j);
            if (inside) drawInside(j, static_cast<size_t>(cols) - 2);
        }
    }

private:
    static constexpr bool centresInShape = mode != HardMode::erase;

    void drawPixel(ptrdiff_t i, ptrdiff_t j) const {
        if (!frame_.isCentre<centresInShape>(i, j)) return;
        L08& pixel = frame_.destination.row(j)[i];
        if constexpr (mode == HardMode::values) {
            pixel = std::max(pixel, frame_.values.row(j)[i]);
        } else {
            pixel = centresInShape ? 255 : 0;
        }
    }

    HWY_INLINE void drawInside(ptrdiff_t j, size_t n) const {
        L08* const out = frame_.destination.row(j) + 1;
        const L08* const valueRow = frame_.values.row(j) + 1;
        eachCentre<centresInShape>(frame_, j, 1, n, [=](size_t i, auto part, M8 which) HWY_ATTR {
            const D8 d;
            if (hn::AllFalse(d, which)) return;
            const V8 old = loadVector(d, out + i, part);
            if constexpr (mode == HardMode::erase) {
                storeVector(d, out + i, part, hn::IfThenZeroElse(which, old));
            } else {
                const V8 drawn = mode == HardMode::values ? loadVector(d, valueRow + i, part) : hn::Set(d, 255);
                storeVector(d, out + i, part, hn::Max(old, hn::IfThenElseZero(which, drawn)));
            }
        });
    }

    const Frame& frame_;
};

template <HardMode mode>
HWY_INLINE void drawNarrow(const Frame& frame) {
    frame.disc.radius == 0 ? drawWith<DotWalk<mode>>(frame) : drawWith<NarrowWalk<mode>>(frame);
}

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
