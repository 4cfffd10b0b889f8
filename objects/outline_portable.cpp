// SPDX-License-Identifier: MIT
#include <algorithm>
#include <utility>

#include "objects/outline.h"

namespace omnar {
namespace {

/// The quotient rounded up. The divisor is positive.
constexpr std::int64_t ceilDivide(std::int64_t dividend, std::int64_t divisor) {
    return dividend / divisor + (dividend % divisor > 0 ? 1 : 0);
}

/// Marks in every row that an edge crosses the first pixel that does not lie left of the edge. Row y of the raster
/// corresponds to y + 1 of the outline, the pixel's top edge on the display. The edge includes its upper end only.
void markEdge(CPoint a, CPoint b, std::uint8_t mark, Raster raster) {
    if (a.y > b.y) std::swap(a, b);
    const std::int64_t dx = std::int64_t{b.x} - a.x, dy = std::int64_t{b.y} - a.y;
    for (int y = a.y, end = std::min(b.y, raster.height); y < end; ++y) {
        const std::int64_t x = a.x + ceilDivide(dx * (y + 1 - a.y), dy);
        if (x < raster.width) raster.row(y)[x] ^= mark;
    }
}

void markEdges(std::span<const CPoint> polygon, std::uint8_t mark, Raster raster) {
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        markEdge(polygon[i], polygon[i + 1 < polygon.size() ? i + 1 : 0], mark, raster);
    }
}

}  // namespace

/// From left to right, each mark toggles whether a row is inside the outline.
bool fillIntersectionPortable(const Outlines& outlines, Raster raster) noexcept {
    constexpr std::uint8_t insideRows = 1, insideColumns = 2, insideBoth = insideRows | insideColumns;
    std::fill_n(raster.pixels, raster.size(), std::uint8_t{0});
    markEdges(outlines.rowOutline, insideRows, raster);
    markEdges(outlines.columnOutline, insideColumns, raster);
    for (int y = 0; y < raster.height; ++y) {
        std::uint8_t inside = 0;
        for (std::uint8_t& pixel : std::span(raster.row(y), static_cast<std::size_t>(raster.width))) {
            inside ^= pixel;
            pixel = inside == insideBoth;
        }
    }
    return true;
}

}  // namespace omnar
