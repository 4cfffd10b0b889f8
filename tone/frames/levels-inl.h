// SPDX-License-Identifier: MIT

// Frames that carry the levels of their centres, compiled once for every level.
#if defined(OMNAR_TONE_FRAMES_LEVELS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAMES_LEVELS_INL_H_
#undef OMNAR_TONE_FRAMES_LEVELS_INL_H_
#else
#define OMNAR_TONE_FRAMES_LEVELS_INL_H_
#endif

#include "tone/frames/round-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// Each row of centres draws the rows of its discs. Those that lie dy rows away show, at each pixel, the greatest level
/// among the centres of a window as wide as the disc is there; from the outermost row to the middle one the windows
/// only grow, one column at either side at a time. They are given to `rows` for a block of pixels; theirs is the first of
/// the levels, with a reach more at either side.
HWY_INLINE void eachWindow(const L08* levels, size_t reach, const uint16_t* halfWidths, auto rows) {
    if (!anyOf(levels, kBlock8 + 2 * reach)) return;

    const D8 d;
    const L08* const own = levels + reach;
    V8 greatest = hn::LoadU(d, own);
    size_t width = 0;
    for (size_t dy = reach + 1; dy-- > 0;) {
        for (; width < halfWidths[dy]; ++width) {
            greatest = hn::Max(greatest, hn::Max(hn::LoadU(d, own - width - 1), hn::LoadU(d, own + width + 1)));
        }
        rows.below(dy, greatest);
        if (dy != 0) rows.above(dy, greatest);
    }
}

/// Discs that show the greatest level of their centres.
class LevelDiscs {
public:
    explicit LevelDiscs(const Disc& disc) : reach_(disc.reach) {
        eachHalfWidth(disc, [this](size_t dy, size_t dx) { halfWidths_[dy] = static_cast<uint16_t>(dx); });
    }

    HWY_INLINE void draw(const L08* levels, auto rows) const { eachWindow(levels, reach_, halfWidths_, rows); }

private:
    const size_t reach_;
    uint16_t halfWidths_[kWidestRound + 1];
};

/// The same for tables of other distances: rows that are not those of a round disc are looked up pixel by pixel.
class OtherDiscs {
public:
    explicit OtherDiscs(const Disc& disc) : disc_(disc) {
        eachHalfWidth(disc, [this](size_t away, size_t width) {
            const auto dy = static_cast<ptrdiff_t>(away), dx = static_cast<ptrdiff_t>(width);
            halfWidths_[away] = static_cast<uint16_t>(width);
            isRound_[disc_.reach + away] = disc_.covers(dy, dx);
            isRound_[disc_.reach - away] = disc_.covers(-dy, dx);
        });
    }

    template <class Rows>
    HWY_INLINE void draw(const L08* levels, Rows rows) const {
        eachWindow(levels, disc_.reach, halfWidths_, OtherRows<Rows>{*this, levels + disc_.reach, rows});
    }

private:
    template <class Rows>
    struct OtherRows {
        const OtherDiscs& discs;
        const L08* own;
        const Rows rows;

        HWY_INLINE void above(size_t dy, V8 greatest) const {
            rows.above(dy, discs.greatestOf(own, -static_cast<ptrdiff_t>(dy), greatest));
        }
        HWY_INLINE void below(size_t dy, V8 greatest) const {
            rows.below(dy, discs.greatestOf(own, static_cast<ptrdiff_t>(dy), greatest));
        }
    };

    /// What the row that lies dy below shows, which a round disc would show as `ofRound`.
    HWY_INLINE V8 greatestOf(const L08* own, ptrdiff_t dy, V8 ofRound) const {
        const auto reach = static_cast<int>(disc_.reach);
        if (isRound_[reach + dy]) return ofRound;
        const int* const distances = disc_.row(dy);
        V8 greatest = hn::Zero(D8());
        for (int dx = -reach; dx <= reach; ++dx) {
            if (distances[dx] <= reach) greatest = hn::Max(greatest, hn::LoadU(D8(), own - dx));
        }
        return greatest;
    }

    const Disc disc_;
    uint16_t halfWidths_[kWidestRound + 1];
    bool isRound_[2 * kWidestRound + 1];
};

/// Frames so wide that the rows of their discs find no room in scratch: the target is drawn into at once.
class WideLevelWalk {
public:
    explicit WideLevelWalk(const Frame& frame) : frame_(frame), reach_(frame.disc.reach) {
        eachHalfWidth(frame.disc, [this](size_t dy, size_t dx) { halfWidths_[dy] = static_cast<uint16_t>(dx); });
    }

    HWY_INLINE void draw() {
        const size_t cols = frame_.centres.cols + 2 * reach_;
        for (size_t left = 0; left < cols; left += kCols) drawTile(left, std::min(kCols, cols - left));
    }

private:
    static constexpr size_t kCols = 1024;

    HWY_INLINE void drawTile(size_t left, size_t cols) {
        const Entries entries = entriesOf(frame_, left, cols);
        std::memset(levels_, 0, sizeof levels_);
        for (size_t y = 0; y < frame_.centres.rows; ++y) {
            const auto row = static_cast<ptrdiff_t>(y);
            if (!writeLevels(frame_, row, entries.column, entries.count, levels_ + entries.first)) continue;
            L08* const middle = frame_.target.row(row + static_cast<ptrdiff_t>(reach_)) + left;
            eachBlock(cols, [=, this](size_t i, auto part) HWY_ATTR {
                eachWindow(levels_ + i, reach_, halfWidths_,
                           Rows<decltype(part)>{middle + i, frame_.target.pitch(), part});
            });
        }
    }

    /// A block of pixels of the target, in each row of the discs.
    template <class Part>
    struct Rows {
        L08* block;
        ptrdiff_t pitch;
        Part part;

        HWY_INLINE void above(size_t dy, V8 levels) const { raise(block - static_cast<ptrdiff_t>(dy) * pitch, levels); }
        HWY_INLINE void below(size_t dy, V8 levels) const { raise(block + static_cast<ptrdiff_t>(dy) * pitch, levels); }
        HWY_INLINE void raise(L08* pixels, V8 levels) const {
            storeVector(D8(), pixels, part, hn::Max(levels, loadVector(D8(), pixels, part)));
        }
    };

    const Frame& frame_;
    const size_t reach_;
    uint16_t halfWidths_[widestReach + 1];
    L08 levels_[kCols + 2 * widestReach + 2 * kRoom];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
