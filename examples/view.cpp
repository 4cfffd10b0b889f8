// SPDX-License-Identifier: MIT
#include "view.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "failure.h"

namespace example {
namespace {

/// A side of the repeat in view pixels, truncated, at least 1. Values above 2^31 - 1 are limited; checkPositions()
/// rejects them.
unsigned int zoomedSide(unsigned int side, double zoom) {
    return std::max(static_cast<unsigned int>(std::min<double>(side * zoom, INT32_MAX)), 1U);
}

/// One coordinate of a view position: the tile that holds it, and the file position without the drop.
struct TilePosition {
    TilePosition(std::int64_t position, unsigned int side, double zoom) {
        const std::int64_t viewSide = zoomedSide(side, zoom);
        tile = position / viewSide - (position % viewSide < 0 ? 1 : 0);
        file = static_cast<std::int64_t>(static_cast<double>(position - tile * viewSide) / zoom) + tile * side;
    }

    std::int64_t tile;
    std::int64_t file;
};

bool fits(std::int64_t position) { return position >= INT32_MIN && position <= INT32_MAX; }

/// Whether the positions along the axis that the drop shifts fit in 32 bits. They grow along this axis and lose the
/// drop for each tile along the other one: the extremes are in the corners.
bool positionsFit(const Repeat& repeat, const Rectangle& view) {
    const std::int64_t right = std::int64_t{view.x} + view.width - 1;
    const std::int64_t bottom = std::int64_t{view.y} + view.height - 1;
    if (!fits(right) || !fits(bottom)) return false;

    const bool isBrick = repeat.kind == eDropHorizontal;
    const unsigned int shiftedSide = isBrick ? repeat.width : repeat.height;
    const unsigned int crossedSide = isBrick ? repeat.height : repeat.width;
    const TilePosition firstShifted(isBrick ? view.x : view.y, shiftedSide, repeat.zoom);
    const TilePosition lastShifted(isBrick ? right : bottom, shiftedSide, repeat.zoom);
    const TilePosition firstCrossed(isBrick ? view.y : view.x, crossedSide, repeat.zoom);
    const TilePosition lastCrossed(isBrick ? bottom : right, crossedSide, repeat.zoom);
    const std::int64_t maxShift = -std::int64_t{repeat.drop} * firstCrossed.tile;
    const std::int64_t minShift = -std::int64_t{repeat.drop} * lastCrossed.tile;
    return fits(firstShifted.file) && fits(lastShifted.file) && fits(maxShift) && fits(minShift) &&
           fits(firstShifted.file + minShift) && fits(lastShifted.file + maxShift);
}

void checkPositions(const Repeat& repeat, const Rectangle& view) {
    const unsigned int side = std::max(repeat.width, repeat.height);
    if (side > INT32_MAX / 2) throw Failure("the inks are too large for 32-bit positions");
    if (side * repeat.zoom > INT32_MAX) throw Failure("at this zoom a repeat is larger than 2147483647 view pixels");
    if (!positionsFit(repeat, view)) throw Failure("the view reaches beyond the range of 32-bit positions");
}

/// A piece of the repeat that a rectangle shows.
struct Piece {
    unsigned int x, y, width, height;  ///< in the repeat
    unsigned int left, top;            ///< in the rectangle
};

/// The pieces of the repeat, five or fewer, that an unzoomed rectangle no larger than the repeat shows.
std::vector<Piece> findPieces(const Rectangle& rectangle, const Repeat& repeat) {
    const unsigned int drop = repeat.drop % repeat.height;  // a drop of the height has no effect
    int count = 0;
    int x[5], width[5], y[5], height[5];
    CalcPosAndSizeInRepBuffer(rectangle.x, rectangle.y, rectangle.width, rectangle.height, repeat.width, repeat.height,
                              repeat.kind, static_cast<int>(drop), &count, x, width, y, height, false);
    std::vector<Piece> pieces;
    for (int i = 0; i < count; ++i) {
        // The last piece starts at the corner of the rectangle. The distance of another piece from it, folded into the
        // repeat, is the position of that piece in the rectangle.
        CPoint corner{};
        SetInRapp(x[i] - x[count - 1], y[i] - y[count - 1], repeat.width, repeat.height, drop, repeat.kind, &corner.x,
                  &corner.y);
        const auto u = [](int value) { return static_cast<unsigned int>(value); };
        pieces.push_back({u(x[i]), u(y[i]), u(width[i]), u(height[i]), u(corner.x), u(corner.y)});
    }
    return pieces;
}

/// Folds a position of 0 to 2 * side - 1.
unsigned int folded(int position, unsigned int side) {
    const unsigned int p = static_cast<unsigned int>(position);
    return p < side ? p : p - side;
}

}  // namespace

unsigned int Repeat::viewWidth() const { return zoomedSide(width, zoom); }
unsigned int Repeat::viewHeight() const { return zoomedSide(height, zoom); }

CPoint Repeat::filePosition(int x, int y) const {
    CPoint file{};
    VPToFP(x, y, &file.x, &file.y, width, height, drop, kind, zoom, zoom, true);
    return file;
}

View::View(const Repeat& repeat, std::vector<Ink> inks, TRC paper, const Rectangle& visible)
    : repeat_(repeat), inks_(std::move(inks)), paper_(paper), visible_(visible) {
    checkPositions(repeat, visible);
    if (repeat.zoom == 1.0 && repeat.kind == eDropVertical) return;
    columns_.reserve(visible.width);
    for (unsigned int i = 0; i < visible.width; ++i) {
        columns_.push_back(repeat.filePosition(visible.x + static_cast<int>(i), 0));
    }
}

void View::drawRows(unsigned int top, unsigned int count, TRC* pixels) const {
    const Rectangle stripe{visible_.x, visible_.y + static_cast<int>(top), visible_.width, count};
    std::fill_n(pixels, std::size_t{stripe.width} * stripe.height, paper_);
    if (columns_.empty()) {
        drawByPieces(stripe, pixels);
    } else {
        drawByPositions(stripe, pixels);
    }
}

// The stripe is divided into rectangles no larger than the repeat. Each ink is blended piece by piece.
void View::drawByPieces(const Rectangle& stripe, TRC* pixels) const {
    for (unsigned int top = 0; top < stripe.height; top += repeat_.height) {
        for (unsigned int left = 0; left < stripe.width; left += repeat_.width) {
            const Rectangle part{stripe.x + static_cast<int>(left), stripe.y + static_cast<int>(top),
                                 std::min(repeat_.width, stripe.width - left),
                                 std::min(repeat_.height, stripe.height - top)};
            for (const Piece& piece : findPieces(part, repeat_)) {
                for (const Ink& ink : inks_) {
                    AlphaBlendColorToTRC(ink.color, ink.plane.pixels.data(), repeat_.width, repeat_.height, piece.x,
                                         piece.y, pixels, stripe.width, stripe.height, left + piece.left,
                                         top + piece.top, ink.opacity, piece.width, piece.height, false);
                }
            }
        }
    }
}

// A view pixel shows the file pixel that VPToFP gives for it. Before folding, this position is the sum of one part that
// depends on the column and one that depends on the row, since the drop counts columns of tiles in half-drop layout and
// rows of tiles in brick layout. Both parts are 0 at (0, 0). So the file position of (x, y) is the folded sum of those
// of (x, 0) and (0, y): a table of the columns and one call per row give every position.
void View::drawByPositions(const Rectangle& stripe, TRC* pixels) const {
    std::vector<std::size_t> indices(stripe.width);
    std::vector<L08> coverage(stripe.width);
    for (unsigned int i = 0; i < stripe.height; ++i, pixels += stripe.width) {
        const CPoint row = repeat_.filePosition(0, stripe.y + static_cast<int>(i));
        std::transform(columns_.begin(), columns_.end(), indices.begin(), [&](const CPoint& column) {
            return std::size_t{folded(column.y + row.y, repeat_.height)} * repeat_.width +
                   folded(column.x + row.x, repeat_.width);
        });
        for (const Ink& ink : inks_) {
            const L08* const plane = ink.plane.pixels.data();
            std::transform(indices.begin(), indices.end(), coverage.begin(),
                           [plane](std::size_t index) { return plane[index]; });
            AlphaBlendColorToTRC(ink.color, coverage.data(), stripe.width, 1, 0, 0, pixels, stripe.width, 1, 0, 0,
                                 ink.opacity, stripe.width, 1, false);
        }
    }
}

}  // namespace example
