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

/// A repeat's side in view pixels: cut to whole pixels, and never vanishing. What 32 bits cannot hold is cut here and
/// refused by checkPositions().
unsigned int zoomed(unsigned int side, double zoom) {
    return std::max(static_cast<unsigned int>(std::min<double>(side * zoom, INT32_MAX)), 1U);
}

/// One axis of an unfolded position: the tile that holds a view position, and the file position without the drop.
struct Place {
    Place(std::int64_t position, unsigned int side, double zoom) {
        const std::int64_t viewSide = zoomed(side, zoom);
        tile = position / viewSide - (position % viewSide < 0 ? 1 : 0);
        file = static_cast<std::int64_t>(static_cast<double>(position - tile * viewSide) / zoom) + tile * side;
    }

    std::int64_t tile;
    std::int64_t file;
};

bool fits(std::int64_t position) { return position >= INT32_MIN && position <= INT32_MAX; }

/// Whether the positions along the axis that the drop moves stay within 32 bits. They grow along that axis and shrink,
/// a drop for each tile, across it: the extremes lie in the corners.
bool positionsFit(const Repeat& repeat, const Rectangle& view) {
    const std::int64_t right = std::int64_t{view.x} + view.width - 1;
    const std::int64_t bottom = std::int64_t{view.y} + view.height - 1;
    if (!fits(right) || !fits(bottom)) return false;

    const bool brick = repeat.kind == eDropHorizontal;
    const unsigned int along = brick ? repeat.width : repeat.height;
    const unsigned int across = brick ? repeat.height : repeat.width;
    const Place first(brick ? view.x : view.y, along, repeat.zoom);
    const Place last(brick ? right : bottom, along, repeat.zoom);
    const std::int64_t most = -std::int64_t{repeat.drop} * Place(brick ? view.y : view.x, across, repeat.zoom).tile;
    const std::int64_t least = -std::int64_t{repeat.drop} * Place(brick ? bottom : right, across, repeat.zoom).tile;
    return fits(first.file) && fits(last.file) && fits(most) && fits(least) && fits(first.file + least) &&
           fits(last.file + most);
}

void checkPositions(const Repeat& repeat, const Rectangle& view) {
    const unsigned int side = std::max(repeat.width, repeat.height);
    if (side > INT32_MAX / 2) throw Failure("the inks are too large for 32-bit positions");
    if (side * repeat.zoom > INT32_MAX) throw Failure("at this zoom a repeat is larger than 2147483647 view pixels");
    if (!positionsFit(repeat, view)) throw Failure("the view reaches beyond the range of 32-bit positions");
}

/// A rectangle of the repeat and where it shows, counted from the corner of the rectangle that it is a piece of.
struct Piece {
    unsigned int x, y, width, height;
    unsigned int toX, toY;
};

/// What an unzoomed rectangle, no larger than the repeat, shows of the repeat: up to five pieces.
std::vector<Piece> piecesOf(const Rectangle& rectangle, const Repeat& repeat) {
    const unsigned int drop = repeat.drop % repeat.height;  // a whole height of drop changes nothing
    int count = 0;
    int x[5], width[5], y[5], height[5];
    CalcPosAndSizeInRepBuffer(rectangle.x, rectangle.y, rectangle.width, rectangle.height, repeat.width, repeat.height,
                              repeat.kind, static_cast<int>(drop), &count, x, width, y, height, false);
    std::vector<Piece> pieces;
    for (int i = 0; i < count; ++i) {
        // The last piece begins where the rectangle does. How far another one is from it, folded into the repeat, is how
        // far into the rectangle that piece goes.
        CPoint to{};
        SetInRapp(x[i] - x[count - 1], y[i] - y[count - 1], repeat.width, repeat.height, drop, repeat.kind, &to.x,
                  &to.y);
        const auto u = [](int value) { return static_cast<unsigned int>(value); };
        pieces.push_back({u(x[i]), u(y[i]), u(width[i]), u(height[i]), u(to.x), u(to.y)});
    }
    return pieces;
}

/// `position`, less than two sides away from 0, within one side.
unsigned int wrapped(int position, unsigned int side) {
    const unsigned int p = static_cast<unsigned int>(position);
    return p < side ? p : p - side;
}

}  // namespace

unsigned int Repeat::viewWidth() const { return zoomed(width, zoom); }
unsigned int Repeat::viewHeight() const { return zoomed(height, zoom); }

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

// Unzoomed, each ink is laid through the pieces of the repeat that a rectangle no larger than the repeat is made of; the
// stripe is cut into such rectangles.
void View::drawByPieces(const Rectangle& stripe, TRC* pixels) const {
    for (unsigned int top = 0; top < stripe.height; top += repeat_.height) {
        for (unsigned int left = 0; left < stripe.width; left += repeat_.width) {
            const Rectangle part{stripe.x + static_cast<int>(left), stripe.y + static_cast<int>(top),
                                 std::min(repeat_.width, stripe.width - left),
                                 std::min(repeat_.height, stripe.height - top)};
            for (const Piece& piece : piecesOf(part, repeat_)) {
                for (const Ink& ink : inks_) {
                    AlphaBlendColorToTRC(ink.color, ink.plane.pixels.data(), repeat_.width, repeat_.height, piece.x,
                                         piece.y, pixels, stripe.width, stripe.height, left + piece.toX,
                                         top + piece.toY, ink.opacity, piece.width, piece.height, false);
                }
            }
        }
    }
}

// Zoomed, every view pixel shows the file pixel that VPToFP gives for it. Before it is folded, that position is the sum
// of a part that depends on the column alone and one that depends on the row alone (the drop is counted by tile columns
// in one layout and by tile rows in the other), and column 0 and row 0 add nothing. So the file position of (x, y) is
// that of (x, 0) plus that of (0, y), folded again: a table of the columns and one call a row give every position.
void View::drawByPositions(const Rectangle& stripe, TRC* pixels) const {
    std::vector<std::size_t> places(stripe.width);
    std::vector<L08> coverage(stripe.width);
    for (unsigned int i = 0; i < stripe.height; ++i, pixels += stripe.width) {
        const CPoint row = repeat_.filePosition(0, stripe.y + static_cast<int>(i));
        std::transform(columns_.begin(), columns_.end(), places.begin(), [&](const CPoint& column) {
            return std::size_t{wrapped(column.y + row.y, repeat_.height)} * repeat_.width +
                   wrapped(column.x + row.x, repeat_.width);
        });
        for (const Ink& ink : inks_) {
            const L08* const plane = ink.plane.pixels.data();
            std::transform(places.begin(), places.end(), coverage.begin(),
                           [plane](std::size_t place) { return plane[place]; });
            AlphaBlendColorToTRC(ink.color, coverage.data(), stripe.width, 1, 0, 0, pixels, stripe.width, 1, 0, 0,
                                 ink.opacity, stripe.width, 1, false);
        }
    }
}

}  // namespace example
