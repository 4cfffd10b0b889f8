// SPDX-License-Identifier: MIT

// Hard frames that draw the values of their centres. Compiled once per vector level.
#if defined(OMNAR_TONE_FRAMES_VALUES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAMES_VALUES_INL_H_
#undef OMNAR_TONE_FRAMES_VALUES_INL_H_
#else
#define OMNAR_TONE_FRAMES_VALUES_INL_H_
#endif

#include "tone/frames/round-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// A pixel dy rows from a row of centres takes the greatest value of the centres in a window as wide as row dy of the
/// disc. From the outermost row to the middle the windows grow by one column at either side at a time. `rows` gets the
/// maxima for a block of pixels. `values` starts `radius` entries before the block.
HWY_INLINE void eachWindow(const L08* values, size_t radius, const uint16_t* halfWidths, auto rows) {
    if (!anyOf(values, kBlock8 + 2 * radius)) return;

    const D8 d;
    const L08* const own = values + radius;
    V8 greatest = hn::LoadU(d, own);
    size_t width = 0;
    for (size_t dy = radius + 1; dy-- > 0;) {
        for (; width < halfWidths[dy]; ++width) {
            greatest = hn::Max(greatest, hn::Max(hn::LoadU(d, own - width - 1), hn::LoadU(d, own + width + 1)));
        }
        rows.below(dy, greatest);
        if (dy != 0) rows.above(dy, greatest);
    }
}

/// Discs that draw the greatest value of their centres.
class ValueDiscs {
public:
    explicit ValueDiscs(const Disc& disc) : radius_(disc.radius) {
        eachHalfWidth(disc, [this](size_t dy, size_t dx) { halfWidths_[dy] = static_cast<uint16_t>(dx); });
    }

    HWY_INLINE void draw(const L08* values, auto rows) const { eachWindow(values, radius_, halfWidths_, rows); }

private:
    const size_t radius_;
    uint16_t halfWidths_[kMaxRoundRadius + 1];
};

/// The same for discs that are not round: rows that differ from those of a round disc are looked up pixel by pixel.
class NonRoundDiscs {
public:
    explicit NonRoundDiscs(const Disc& disc) : disc_(disc) {
        eachHalfWidth(disc, [this](size_t away, size_t width) {
            const auto dy = static_cast<ptrdiff_t>(away), dx = static_cast<ptrdiff_t>(width);
            halfWidths_[away] = static_cast<uint16_t>(width);
            isRound_[disc_.radius + away] = disc_.isRoundRow(dy, dx);
            isRound_[disc_.radius - away] = disc_.isRoundRow(-dy, dx);
        });
    }

    template <class Rows>
    HWY_INLINE void draw(const L08* values, Rows rows) const {
        eachWindow(values, disc_.radius, halfWidths_, NonRoundRows<Rows>{*this, values + disc_.radius, rows});
    }

private:
    template <class Rows>
    struct NonRoundRows {
        const NonRoundDiscs& discs;
        const L08* own;
        const Rows rows;

        HWY_INLINE void above(size_t dy, V8 greatest) const {
            rows.above(dy, discs.greatestOf(own, -static_cast<ptrdiff_t>(dy), greatest));
        }
        HWY_INLINE void below(size_t dy, V8 greatest) const {
            rows.below(dy, discs.greatestOf(own, static_cast<ptrdiff_t>(dy), greatest));
        }
    };

    /// What row dy draws. `roundGreatest` is what a round disc draws there.
    HWY_INLINE V8 greatestOf(const L08* own, ptrdiff_t dy, V8 roundGreatest) const {
        const auto radius = static_cast<int>(disc_.radius);
        if (isRound_[radius + dy]) return roundGreatest;
        const int* const distances = disc_.row(dy);
        V8 greatest = hn::Zero(D8());
        for (int dx = -radius; dx <= radius; ++dx) {
            if (distances[dx] <= radius) greatest = hn::Max(greatest, hn::LoadU(D8(), own - dx));
        }
        return greatest;
    }

    const Disc disc_;
    uint16_t halfWidths_[kMaxRoundRadius + 1];
    bool isRound_[2 * kMaxRoundRadius + 1];
};

/// For radii whose rows exceed the scratch of RoundWalk: draws on the destination at once.
class WideValueWalk {
public:
    explicit WideValueWalk(const Frame& frame) : frame_(frame), radius_(frame.disc.radius) {
        eachHalfWidth(frame.disc, [this](size_t dy, size_t dx) { halfWidths_[dy] = static_cast<uint16_t>(dx); });
    }

    HWY_INLINE void draw() {
        const size_t cols = frame_.centres.cols + 2 * radius_;
        for (size_t left = 0; left < cols; left += kCols) drawStrip(left, std::min(kCols, cols - left));
    }

private:
    static constexpr size_t kCols = 1024;

    HWY_INLINE void drawStrip(size_t left, size_t cols) {
        const Entries entries = entriesOf(frame_, left, cols);
        std::memset(values_, 0, sizeof values_);
        for (size_t y = 0; y < frame_.centres.rows; ++y) {
            const auto row = static_cast<ptrdiff_t>(y);
            if (!writeValues(frame_, row, entries.column, entries.count, values_ + entries.first)) continue;
            L08* const middle = frame_.destination.row(row + static_cast<ptrdiff_t>(radius_)) + left;
            eachBlock(cols, [=, this](size_t i, auto part) HWY_ATTR {
                eachWindow(values_ + i, radius_, halfWidths_,
                           Rows<decltype(part)>{middle + i, frame_.destination.pitch(), part});
            });
        }
    }

    /// A block of pixels of the destination, in each row of the discs.
    template <class Part>
    struct Rows {
        L08* block;
        ptrdiff_t pitch;
        Part part;

        HWY_INLINE void above(size_t dy, V8 values) const { raise(block - static_cast<ptrdiff_t>(dy) * pitch, values); }
        HWY_INLINE void below(size_t dy, V8 values) const { raise(block + static_cast<ptrdiff_t>(dy) * pitch, values); }
        HWY_INLINE void raise(L08* pixels, V8 values) const {
            storeVector(D8(), pixels, part, hn::Max(values, loadVector(D8(), pixels, part)));
        }
    };

    const Frame& frame_;
    const size_t radius_;
    uint16_t halfWidths_[maxVectorRadius + 1];
    L08 values_[kCols + 2 * maxVectorRadius + 2 * kPadding];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
