// SPDX-License-Identifier: MIT

// Wide soft frames, compiled once for every level. Around each block of the target the rows of the source are visited from
// the nearest ones on, until no centre that is farther away could draw more than what the block's pixels have.
#if defined(OMNAR_TONE_FRAMES_GATHER_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_FRAMES_GATHER_INL_H_
#undef OMNAR_TONE_FRAMES_GATHER_INL_H_
#else
#define OMNAR_TONE_FRAMES_GATHER_INL_H_
#endif

#include <cmath>
#include <cstdlib>

#include "tone/frames/soft-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

using VF32 = hn::Vec<DF32>;
constexpr size_t kBlock32 = hn::MaxLanes(DF32());

/// A block of the target. Each pixel has one number, whole and exact in single precision, which centres improve.
struct Tile {
    static constexpr size_t kRows = 32, kCols = 128;

    size_t rows, cols;
    float best[kRows][kCols];

    template <class Act>
    HWY_INLINE static void eachVector(Act act) {
        for (size_t x = 0; x < kCols; x += kBlock32) act(x);
    }
    HWY_INLINE float least(size_t y) const {
        VF32 all = hn::LoadU(DF32(), best[y]);
        eachVector([&, this](size_t x) HWY_ATTR { all = hn::Min(all, hn::LoadU(DF32(), best[y] + x)); });
        return hn::GetLane(hn::MinOfLanes(DF32(), all));
    }
    HWY_INLINE float greatest(size_t y) const {
        VF32 all = hn::LoadU(DF32(), best[y]);
        eachVector([&, this](size_t x) HWY_ATTR { all = hn::Max(all, hn::LoadU(DF32(), best[y] + x)); });
        return hn::GetLane(hn::MaxOfLanes(DF32(), all));
    }
};

/// The centres of a row of the source that may matter: the levels of columns -sides to cols + sides - 1 of the tile, as far
/// as the frame has them, and 0 for pixels that are none.
struct CentreRow {
    const L08* levels;
    ptrdiff_t first;  // column of the first level
    size_t count;
    ptrdiff_t y;  // row of the tile, or above or below it

    size_t rowsAway(size_t row) const { return static_cast<size_t>(std::abs(y - static_cast<ptrdiff_t>(row))); }
};

/// Where centres have one level, the nearest of them draws the most: the number is the square of its distance, or 0 for
/// pixels that hold what a centre draws at distance `near` and that nothing farther away can raise.
class NearestOfOneLevel {
public:
    NearestOfOneLevel(const Disc& disc, uint32_t near, L08 level)
        : reach_(disc.reach),
          limit_(static_cast<float>(disc.reach * disc.reach + disc.reach)),
          enough_(softened(level, static_cast<int>(near), disc.reach)),
          fall_(disc.reach, level) {}

    /// False if no pixel of the row can be raised.
    HWY_INLINE bool begin(Tile& tile, size_t y, const L08* old) {
        worst_[y] = 0;
        for (size_t x = 0; x < Tile::kCols; ++x) {
            tile.best[y][x] = x >= tile.cols || old[x] >= enough_ ? 0.0F : limit_ + 1.0F;
            worst_[y] = std::max(worst_[y], tile.best[y][x]);
        }
        return worst_[y] != 0;
    }

    /// How far away a centre may be and still be the nearest of a pixel.
    HWY_INLINE size_t reach(const Tile& tile) {
        float worst = 0;
        for (size_t y = 0; y < tile.rows; ++y) {
            worst_[y] = tile.greatest(y);
            worst = std::max(worst, worst_[y]);
        }
        return worst > limit_ ? reach_ : std::min(reach_, static_cast<size_t>(std::sqrt(worst)));
    }

    HWY_INLINE void visit(Tile& tile, const CentreRow& row) {
        float toAny[Tile::kCols], toOthers[Tile::kCols];
        writeSquares(tile, row, toAny, toOthers);
        for (size_t y = 0; y < tile.rows; ++y) {
            const size_t away = row.rowsAway(y);
            const auto square = static_cast<float>(away * away);
            if (square >= worst_[y]) continue;
            const float* const squares = away == 0 ? toOthers : toAny;
            Tile::eachVector([&](size_t x) HWY_ATTR {
                const DF32 d;
                const VF32 distance = hn::Add(hn::LoadU(d, squares + x), hn::Set(d, square));
                hn::StoreU(hn::Min(distance, hn::LoadU(d, tile.best[y] + x)), d, tile.best[y] + x);
            });
        }
    }

    /// What the numbers come to. The root is rounded half up: to d for squares above d * d - d, and up to d * d + d.
    HWY_INLINE hn::Vec<DI32> levels(VF32 squares) const {
        const DF32 d;
        const VF32 root = hn::Floor(hn::Sqrt(squares));
        const VF32 up = hn::IfThenElseZero(hn::Gt(squares, hn::Add(hn::Mul(root, root), root)), hn::Set(d, 1.0F));
        const auto drawn = fall_.at(hn::Add(root, up));
        return hn::IfThenElseZero(hn::RebindMask(DI32(), hn::Gt(squares, hn::Zero(d))), drawn);
    }

private:
    /// Squares of the distances along the row to its nearest centre, and to the nearest other than the pixel itself.
    HWY_INLINE void writeSquares(const Tile& tile, const CentreRow& row, float* toAny, float* toOthers) const {
        constexpr int far = 4096;  // its square is beyond any reach, and exact
        const auto isCentre = [&](ptrdiff_t x) {
            const ptrdiff_t i = x - row.first;
            return i >= 0 && i < static_cast<ptrdiff_t>(row.count) && row.levels[i] != 0;
        };
        ptrdiff_t before = std::min<ptrdiff_t>(row.first + static_cast<ptrdiff_t>(row.count), 0);
        while (--before >= row.first && row.levels[before - row.first] == 0) {
        }
        int distance = before < row.first ? far : static_cast<int>(-before);
        int left[Tile::kCols];
        const auto cols = static_cast<ptrdiff_t>(tile.cols);
        for (ptrdiff_t x = 0; x < cols; ++x) {
            left[x] = std::min(distance, far);
            distance = isCentre(x) ? 1 : distance + 1;
        }
        const ptrdiff_t end = row.first + static_cast<ptrdiff_t>(row.count);
        ptrdiff_t after = std::max(row.first, cols);
        while (after < end && row.levels[after - row.first] == 0) ++after;
        distance = after < end ? static_cast<int>(after - cols) + 1 : far;
        for (ptrdiff_t x = cols; x-- > 0;) {
            const int others = std::min({left[x], distance, far});
            toOthers[x] = static_cast<float>(others * others);
            toAny[x] = isCentre(x) ? 0.0F : toOthers[x];
            distance = isCentre(x) ? 1 : distance + 1;
        }
        std::fill(toAny + cols, toAny + Tile::kCols, 0.0F);
        std::fill(toOthers + cols, toOthers + Tile::kCols, 0.0F);
    }

    const size_t reach_;
    const float limit_;
    const L08 enough_;
    const Fall fall_;
    float worst_[Tile::kRows];  // the greatest number of each row, or more
};

/// Where centres have many levels, the number is the greatest of their shares:
///
///     (reach + 1 - distance) * level        (/ reach is what is drawn)
class GreatestShare {
public:
    explicit GreatestShare(const Disc& disc)
        : disc_(disc), reach_(disc.reach), part_(1.0F / static_cast<float>(disc.reach)) {}

    /// Pixels have the greatest share that draws no more than what they hold.
    HWY_INLINE bool begin(Tile& tile, size_t y, const L08* old) {
        for (size_t x = 0; x < Tile::kCols; ++x) {
            tile.best[y][x] = static_cast<float>((size_t{x < tile.cols ? old[x] : L08{255}} + 1) * reach_ - 1);
        }
        least_[y] = 0;
        return true;
    }

    /// How far away a centre may be and still draw on a pixel.
    HWY_INLINE size_t reach(const Tile& tile) {
        float least = tile.least(0);
        for (size_t y = 0; y < tile.rows; ++y) {
            least_[y] = tile.least(y);
            least = std::min(least, least_[y]);
        }
        const auto hidden = static_cast<size_t>(least / 255);
        return hidden > reach_ ? 0 : reach_ - hidden + (hidden == 0 ? 0 : 1);
    }

    HWY_INLINE void visit(Tile& tile, const CentreRow& row) {
        eachLevel(row.levels, row.count, [&, this](size_t i, L08 level) HWY_ATTR {
            const ptrdiff_t x = row.first + static_cast<ptrdiff_t>(i);
            const auto cols = static_cast<ptrdiff_t>(tile.cols);
            const auto colsAway = static_cast<size_t>(x < 0 ? -x : x >= cols ? x - cols + 1 : 0);
            for (size_t y = 0; y < tile.rows; ++y) {
                const size_t away = std::max(row.rowsAway(y), colsAway);
                if (away > reach_ || static_cast<float>((reach_ + 1 - away) * level) <= least_[y]) continue;
                raise(tile, y, static_cast<ptrdiff_t>(y) - row.y, x, level);
            }
        });
    }

    HWY_INLINE hn::Vec<DI32> levels(VF32 shares) const {
        const DF32 d;
        return hn::ConvertTo(DI32(), hn::Mul(hn::Add(shares, hn::Set(d, 0.5F)), hn::Set(d, part_)));
    }

private:
    /// Raises a row that lies dy below a centre at column x. What the centre draws on itself is computed apart.
    HWY_INLINE void raise(Tile& tile, size_t y, ptrdiff_t dy, ptrdiff_t x, L08 level) const {
        const DF32 d;
        const auto cols = static_cast<ptrdiff_t>(tile.cols), reach = static_cast<ptrdiff_t>(reach_);
        const ptrdiff_t from = std::max<ptrdiff_t>(0, x - reach), end = std::min(cols, x + reach + 1);
        float* const best = tile.best[y];
        const int* const distances = disc_.row(dy) - x;
        const bool onItself = dy == 0 && x >= 0 && x < cols;
        const float own = onItself ? best[x] : 0;
        const VF32 most = hn::Set(d, static_cast<float>((reach_ + 1) * level));
        const VF32 factor = hn::Set(d, static_cast<float>(level));
        const auto raiseBlock = [=](ptrdiff_t i, auto part) HWY_ATTR {
            const VF32 distance = hn::ConvertTo(d, loadVector(DI32(), distances + i, part));
            const VF32 share = hn::Sub(most, hn::Mul(distance, factor));
            storeVector(d, best + i, part, hn::Max(share, loadVector(d, best + i, part)));
        };
        constexpr auto block = static_cast<ptrdiff_t>(kBlock32);
        ptrdiff_t i = from;
        for (; i + block <= end; i += block) raiseBlock(i, All());
        if (i < end) {
            end - from >= block ? raiseBlock(end - block, All()) : raiseBlock(i, First{static_cast<size_t>(end - i)});
        }
        if (onItself) best[x] = own;
    }

    const Disc& disc_;
    const size_t reach_;
    const float part_;
    float least_[Tile::kRows];  // the least number of each row, or less
};

template <class Numbers>
class GatherWalk {
public:
    GatherWalk(const Frame& frame, const Numbers& numbers)
        : frame_(frame), reach_(frame.disc.reach), numbers_(numbers) {}

    HWY_INLINE void draw() {
        const size_t rows = frame_.centres.rows + 2 * reach_, cols = frame_.centres.cols + 2 * reach_;
        for (size_t top = 0; top < rows; top += Tile::kRows) {
            for (size_t left = 0; left < cols; left += Tile::kCols) {
                tile_.rows = std::min(Tile::kRows, rows - top);
                tile_.cols = std::min(Tile::kCols, cols - left);
                top_ = static_cast<ptrdiff_t>(top) - static_cast<ptrdiff_t>(reach_);
                left_ = static_cast<ptrdiff_t>(left) - static_cast<ptrdiff_t>(reach_);
                bool open = false;
                for (size_t y = 0; y < tile_.rows; ++y) open |= numbers_.begin(tile_, y, targetRow(y));
                if (open && gather()) drawTile();
            }
        }
    }

private:
    /// False if no centre is near enough.
    HWY_INLINE bool gather() {
        const auto rows = static_cast<ptrdiff_t>(tile_.rows);
        bool any = false;
        size_t far = reach_;
        for (ptrdiff_t y = 0; y < rows; ++y) any |= visit(y, far);
        bool more = any;
        for (size_t k = 1; k <= far; ++k) {
            if (more && (k & 3) == 1) {
                far = std::min(far, numbers_.reach(tile_));
                more = false;
            }
            if (k > far) break;
            const auto away = static_cast<ptrdiff_t>(k);
            more |= visit(-away, far);
            more |= visit(rows - 1 + away, far);
            any |= more;
        }
        return any;
    }

    /// Visits the centres of a row, counted from the tile's first. False if there are none.
    HWY_INLINE bool visit(ptrdiff_t y, size_t far) {
        const ptrdiff_t j = top_ + y;
        if (j < 0 || j >= static_cast<ptrdiff_t>(frame_.centres.rows)) return false;
        const ptrdiff_t sides = static_cast<ptrdiff_t>(far);
        const ptrdiff_t from = std::max<ptrdiff_t>(0, left_ - sides);
        const ptrdiff_t end =
            std::min(left_ + static_cast<ptrdiff_t>(tile_.cols) + sides, static_cast<ptrdiff_t>(frame_.centres.cols));
        if (from >= end) return false;
        const auto count = static_cast<size_t>(end - from);
        if (!writeLevels(frame_, j, static_cast<size_t>(from), count, levels_)) return false;
        numbers_.visit(tile_, {levels_, from - left_, count, y});
        return true;
    }

    HWY_INLINE void drawTile() {
        const ptrdiff_t from = std::max<ptrdiff_t>(0, left_);
        const ptrdiff_t end =
            std::min(left_ + static_cast<ptrdiff_t>(tile_.cols), static_cast<ptrdiff_t>(frame_.centres.cols));
        for (size_t y = 0; y < tile_.rows; ++y) {
            Tile::eachVector([&, this](size_t x) HWY_ATTR {
                const hn::Rebind<uint8_t, DI32> d8;
                const auto drawn = numbers_.levels(hn::LoadU(DF32(), tile_.best[y] + x));
                hn::StoreU(hn::DemoteTo(d8, drawn), d8, bytes_ + x);
            });
            const ptrdiff_t j = top_ + static_cast<ptrdiff_t>(y);
            if (j >= 0 && j < static_cast<ptrdiff_t>(frame_.centres.rows) && from < end) {
                const auto count = static_cast<size_t>(end - from);
                writeLevels(frame_, j, static_cast<size_t>(from), count, levels_);
                eachLevel(levels_, count, [&, this](size_t i, L08 level) {
                    L08& pixel = bytes_[static_cast<size_t>(from - left_) + i];
                    pixel = std::max(pixel, softened(level, 0, frame_.disc.reach));
                });
            }
            L08* const out = targetRow(y);
            eachBlock(tile_.cols, [=, this](size_t i, auto part) HWY_ATTR {
                const D8 d;
                const V8 drawn = hn::LoadU(d, bytes_ + i);
                storeVector(d, out + i, part, hn::Max(drawn, loadVector(d, out + i, part)));
            });
        }
    }

    L08* targetRow(size_t y) const {
        const auto reach = static_cast<ptrdiff_t>(reach_);
        return frame_.target.row(top_ + reach + static_cast<ptrdiff_t>(y)) + left_ + reach;
    }

    const Frame& frame_;
    const size_t reach_;
    Numbers numbers_;
    ptrdiff_t top_ = 0, left_ = 0;  // of the tile, among the centres
    Tile tile_;
    L08 bytes_[Tile::kCols + kRoom];
    L08 levels_[Tile::kCols + 2 * widestReach + kRoom];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
