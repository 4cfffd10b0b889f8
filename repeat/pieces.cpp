// SPDX-License-Identifier: MIT

// The pieces of the repeat buffer that a rectangle on the plane covers or leaves uncovered, in half-drop layout.

#include <algorithm>

#include "buffers/host/contract.h"
#include "repeat/placing.h"

using namespace omnar;

namespace {

/// The caller's arrays and the number of entries written.
struct Pieces {
    int *x, *w, *y, *h;
    int count = 0;

    void write(int i, Wrapping left, Wrapping width, Wrapping top, Wrapping height) const {
        x[i] = left.value();
        w[i] = width.value();
        y[i] = top.value();
        h[i] = height.value();
    }
    void add(Wrapping left, Wrapping width, Wrapping top, Wrapping height) { write(count++, left, width, top, height); }
};

struct Position {
    Wrapping x, y;
};

/// A rectangle with its corner in the tile.
struct Rectangle {
    Wrapping x, y, w, h;

    Wrapping right() const { return x + w; }
    Wrapping bottom() const { return y + h; }
};

struct Repeat {
    Wrapping w, h;
    DropLayout<WholeDrop> layout;

    Wrapping drop() const { return layout.drop(1); }
    Position place(Wrapping x, Wrapping y) const {
        omnar::place(x, y, w, h, layout);
        return {x, y};
    }
    Rectangle placeRectangle(Wrapping x, Wrapping y, Wrapping width, Wrapping height) const {
        const Position corner = place(x, y);
        return {corner.x, corner.y, width, height};
    }

    bool contains(Rectangle r) const { return r.right().bits() <= w.bits() && r.bottom().bits() <= h.bits(); }
    bool isLargerThan(Rectangle r) const { return r.w.bits() < w.bits() && r.h.bits() < h.bits(); }
};

/// The part beyond the right edge continues at the left edge, moved up by the drop. Its rows above or below the tile
/// continue at the opposite edge.
void addRightOverhang(Pieces& pieces, Rectangle r, Repeat repeat) {
    const Wrapping width = r.right() - repeat.w;
    const Wrapping top = r.y - repeat.drop();
    const Wrapping above = std::min(r.h, repeat.drop() - r.y);
    const Wrapping below = top - repeat.h + r.h;
    if (top + r.h > 0) {
        pieces.add(0, width, std::max<Wrapping>(0, top), top < 0 ? r.h - above : std::min(r.h, repeat.h - top));
    }
    if (top < 0) pieces.add(0, width, repeat.h + top, above);
    if (below > 0) pieces.add(0, width, std::max<Wrapping>(0, top - repeat.h), std::min(r.h, below));
}

/// Adds what a rectangle that crosses an edge covers. All comparisons are signed.
void addCoveredAcrossEdge(Pieces& pieces, Rectangle r, Repeat repeat) {
    const Wrapping width = std::min(r.w, repeat.w - r.x);
    if (r.right() > repeat.w) addRightOverhang(pieces, r, repeat);
    if (r.bottom() > repeat.h) pieces.add(r.x, width, 0, std::max<Wrapping>(0, r.bottom() - repeat.h));
    pieces.add(std::max<Wrapping>(0, std::min(r.x, repeat.w - 1)), width,
               std::max<Wrapping>(0, std::min(r.y, repeat.h - 1)), std::min(r.h, repeat.h - r.y));
}

/// Adds what a rectangle inside the tile leaves uncovered: a strip on each side that has room for one.
void addUncoveredInside(Pieces& pieces, Rectangle r, Repeat repeat) {
    if (r.x > 0) pieces.add(0, r.x, 0, repeat.h);
    if (r.right().bits() < repeat.w.bits()) pieces.add(r.right(), repeat.w - r.right(), 0, repeat.h);
    if (r.y > 0) pieces.add(r.x, r.w, 0, r.y);
    if (r.bottom().bits() < repeat.h.bits()) pieces.add(r.x, r.w, r.bottom(), repeat.h - r.bottom());
}

/// Adds the uncovered rows of columns that are covered from row `top` to row `bottom`, exclusive. They cross the tile's
/// bottom edge if `top` is greater.
void addUncoveredRows(Pieces& pieces, Wrapping x, Wrapping w, Wrapping top, Wrapping bottom, Repeat repeat) {
    if (top <= bottom) {
        pieces.add(x, w, 0, top);
        pieces.add(x, w, bottom, repeat.h - bottom);
    } else {
        pieces.add(x, w, bottom, top - bottom);
    }
}

/// Adds what a rectangle that crosses an edge and is smaller than the repeat leaves uncovered. (x, y) is its corner on
/// the plane.
void addUncoveredAcrossEdge(Pieces& pieces, Rectangle r, Wrapping x, Wrapping y, Repeat repeat) {
    const Position topRight = repeat.place(x + r.w, y);
    const Wrapping bottomLeft = repeat.place(x, y + r.h).y;
    if (r.x < topRight.x) {
        pieces.add(0, r.x, 0, repeat.h);
        pieces.add(r.right(), repeat.w - r.right(), 0, repeat.h);
        pieces.add(r.x, r.w, bottomLeft, r.y - bottomLeft);
    } else {
        const Wrapping bottomRight = repeat.place(x + r.w, y + r.h).y;
        pieces.add(topRight.x, r.x - topRight.x, 0, repeat.h);
        addUncoveredRows(pieces, r.x, repeat.w - r.x, r.y, bottomLeft, repeat);
        addUncoveredRows(pieces, 0, topRight.x, topRight.y, bottomRight, repeat);
    }
}

void addCovered(Pieces& pieces, Wrapping x, Wrapping y, Wrapping w, Wrapping h, Repeat repeat,
                bool wholeRepeatIfLarger) {
    const Rectangle rectangle = repeat.placeRectangle(x, y, w, h);
    if (repeat.contains(rectangle)) {
        pieces.add(rectangle.x, w, rectangle.y, h);
    } else if (wholeRepeatIfLarger && !repeat.isLargerThan(rectangle)) {
        pieces.add(0, repeat.w, 0, repeat.h);
    } else {
        addCoveredAcrossEdge(pieces, rectangle, repeat);
    }
}

void addUncovered(Pieces& pieces, Wrapping x, Wrapping y, Wrapping w, Wrapping h, Repeat repeat) {
    const Rectangle rectangle = repeat.placeRectangle(x, y, w, h);
    if (repeat.contains(rectangle)) {
        addUncoveredInside(pieces, rectangle, repeat);
    } else if (repeat.isLargerThan(rectangle)) {
        addUncoveredAcrossEdge(pieces, rectangle, x, y, repeat);
    } else {
        pieces.write(0, 0, repeat.w, 0, repeat.h);  // not counted: hosts that read entry 0 get the whole repeat
    }
}

}  // namespace

/// Checks the outputs that a half-drop layout or no layout writes, and the sizes that placing divides by.
#define OMNAR_EXPECT_PIECES()                                                                                    \
    OMNAR_EXPECT_NOT_NULL_IF(true, ", unless kind is eDropHorizontal", count);                                   \
    OMNAR_EXPECT_NOT_NULL_IF(layout.isHalfDrop(), ", if kind is eDropVertical", pieceX, pieceW, pieceY, pieceH); \
    OMNAR_EXPECT_PLACEABLE(x, y, repW, repH, layout)

void CalcPosAndSizeInRepBuffer(int x, int y, unsigned int w, unsigned int h, unsigned int repW, unsigned int repH,
                               _EDropKind kind, int drop, int* count, int* pieceX, int* pieceW, int* pieceY,
                               int* pieceH, bool wholeRepeatIfLarger) {
    const DropLayout layout(kind, WholeDrop{drop});
    if (layout.isBrick()) return;
    OMNAR_EXPECT_PIECES();
    Pieces pieces{pieceX, pieceW, pieceY, pieceH};
    if (layout.isHalfDrop()) addCovered(pieces, x, y, w, h, {repW, repH, layout}, wholeRepeatIfLarger);
    *count = pieces.count;
}

void CalcPosAndSizeInRepBufferInv(int x, int y, unsigned int w, unsigned int h, unsigned int repW, unsigned int repH,
                                  _EDropKind kind, int drop, int* count, int* pieceX, int* pieceW, int* pieceY,
                                  int* pieceH) {
    const DropLayout layout(kind, WholeDrop{drop});
    if (layout.isBrick()) return;
    OMNAR_EXPECT_PIECES();
    Pieces pieces{pieceX, pieceW, pieceY, pieceH};
    if (layout.isHalfDrop()) addUncovered(pieces, x, y, w, h, {repW, repH, layout});
    *count = pieces.count;
}
