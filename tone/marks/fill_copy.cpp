// SPDX-License-Identifier: MIT

// Fills and copies of regions of true colour.

#include <algorithm>
#include <array>
#include <utility>

#include "buffers/planes.h"
#include "tone/marks/mark.h"

using namespace omnar;

namespace {

void fill(TRC* row, std::size_t n, TRC color) { process({n, 1}, Plane<TRC>(row, n), Assign{Flat{color}}, markRows); }

/// Floor division of a position by the size of a chessboard's cells: the cell and the offset in it.
struct CellPosition {
    std::int64_t size;
    std::int64_t cell;
    std::int64_t offset;

    CellPosition(std::int64_t position, std::int64_t cellSize)
        : size(cellSize), cell(position / cellSize), offset(position % cellSize) {
        if (offset >= 0) return;
        --cell;
        offset += size;
    }

    /// Advances to the next position.
    void advance() {
        if (++offset < size) return;
        offset = 0;
        ++cell;
    }
};

/// Completes a row whose first `drawn` pixels, at least one period, are drawn.
void repeat(TRC* row, std::size_t n, std::size_t drawn, std::size_t period) {
    while (drawn < n) {
        const std::size_t back = drawn / period * period;
        const std::size_t count = std::min(back, n - drawn);
        std::copy_n(row + drawn - back, count, row + drawn);
        drawn += count;
    }
}

/// Fills a row with runs of alternating colours. The first run may be shorter.
void fillInTurns(TRC* row, std::size_t n, std::size_t firstRun, std::size_t run, TRC color, TRC other) {
    const std::size_t period = 2 * run;
    std::size_t drawn = std::min(firstRun, n);
    fill(row, drawn, color);
    while (drawn < n && drawn < period) {
        std::swap(color, other);
        const std::size_t count = std::min(run, n - drawn);
        fill(row + drawn, count, color);
        drawn += count;
    }
    repeat(row, n, drawn, period);
}

/// Runs too short for one call each: a row starts with a copy of several of them.
class ShortRuns {
public:
    static constexpr std::size_t kLongest = 32;

    ShortRuns(std::size_t run, TRC color, TRC other) : period_(2 * run) {
        for (std::size_t i = 0; i < runs_.size();) {
            for (const std::size_t end = std::min(i + run, runs_.size()); i < end; ++i) runs_[i] = color;
            std::swap(color, other);
        }
    }

    /// Fills a row that starts with pixel `first` of the period.
    void fillRow(TRC* row, std::size_t n, std::size_t first) const {
        const std::size_t drawn = std::min(n, runs_.size() - first);
        std::copy_n(runs_.data() + first, drawn, row);
        repeat(row, n, drawn, period_);
    }

private:
    std::size_t period_;
    std::array<TRC, 6 * kLongest> runs_;
};

/// True if no row of the region shares memory with the row that it is copied to.
[[maybe_unused]] bool rowsApart(Plane<const TRC> source, Plane<TRC> destination, Region region) {
    for (std::size_t row = 0; row < region.rows; ++row) {
        if (row != 0) {
            source.advance();
            destination.advance();
        }
        if (!apart(source.row(), region.cols, destination.row(), region.cols)) return false;
    }
    return true;
}

}  // namespace

/// The region is cut at the bottom edge, not at the right one.
#define OMNAR_EXPECT_FILLABLE(region)                                              \
    OMNAR_EXPECT_CORNER(x, y, width, height);                                      \
    OMNAR_EXPECT_AS(h, std::uint64_t{h} + y <= UINT32_MAX, "y + h <= 4294967295"); \
    OMNAR_EXPECT_AS(w, (region).empty() || std::uint64_t{x} + w <= width,          \
                    "x + w <= width, unless the cut region is empty");             \
    OMNAR_EXPECT_MEMORY(region, data)

void FillTRCBuffer(TRC* data, unsigned int width, unsigned int height, unsigned int x, unsigned int y, unsigned int w,
                   unsigned int h, unsigned int color) {
    const Plane rows = OMNAR_PLANE_HERE(data);
    const Region region{w, clip(w, h, rows).rows};
    OMNAR_EXPECT_FILLABLE(region);
    process(region, rows, Assign{Flat{color}}, markRows);
}

void ChessboardFillTRCBuffer(TRC* data, unsigned int width, unsigned int height, unsigned int x, unsigned int y,
                             unsigned int w, unsigned int h, int originX, int originY, unsigned int color1,
                             unsigned int color2, unsigned int cellSize) {
    Plane rows = OMNAR_PLANE_HERE(data);
    const Region region{w, clip(w, h, rows).rows};
    OMNAR_EXPECT_FILLABLE(region);
    OMNAR_EXPECT_AS(cellSize, cellSize != 0 || region.empty(), "not 0, unless the cut region is empty");
    if (region.empty()) return;

    // Columns count from originX + x, rows from originY.
    const CellPosition left(std::int64_t{originX} + x, cellSize);
    const auto before = static_cast<std::size_t>(left.offset);
    const bool areShort = cellSize <= ShortRuns::kLongest;
    const ShortRuns runs(areShort ? cellSize : 1, color1, color2);
    CellPosition top(originY, cellSize);
    for (std::size_t row = 0;; rows.advance(), top.advance()) {
        const bool odd = (left.cell + top.cell) % 2 != 0;
        if (areShort) {
            runs.fillRow(rows.row(), region.cols, before + (odd ? cellSize : 0));
        } else {
            fillInTurns(rows.row(), region.cols, cellSize - before, cellSize, odd ? color2 : color1,
                        odd ? color1 : color2);
        }
        if (++row == region.rows) return;
    }
}

void Copy2DTRCBufferToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                          unsigned int srcY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                          unsigned int dstY, unsigned int w, unsigned int h) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    OMNAR_EXPECT_AS(dst, rowsApart(source, destination, region),
                    "no row shares memory with the row of src that it is "
                    "copied from");
    process(region, destination, Assign{From{source}}, markRows);
}

void CopyTRCToTRCIfNotKeyColor(const TRC* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                               unsigned int srcY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                               unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h,
                               unsigned int keyColor) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    mark<Whole<TRC>>(region, destination, From{source}, Binary{NotKeyColor{source, keyColor}, 255});
}
