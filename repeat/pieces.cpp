// SPDX-License-Identifier: MIT

// The pieces of the repeat buffer that a rectangle on the plane covers, and those that it leaves uncovered.

#include <algorithm>

#include "buffers/host/contract.h"
#include "repeat/placing.h"

using namespace omnar;

namespace {

/// The caller's four arrays, and how many entries are filled.
struct Pieces {
    int *x, *w, *y, *h;
    int count = 0;

    void set(int i, Wrapping left, Wrapping width, Wrapping top, Wrapping height) const {
        x[i] = left.value();
        w[i] = width.value();
        y[i] = top.value();
        h[i] = height.value();
    }
    void add(Wrapping left, Wrapping width, Wrapping top, Wrapping height) { set(count++, left, width, top, height); }
};

struct Position {
    Wrapping x, y;
};

struct Repeat {
    Wrapping w, h, drop;

    Position place(Wrapping x, Wrapping y) const {
        omnar::place(x, y, w, h, eDropVertical, wholeDrop(drop));
        return {x, y};
    }
};

/// A rectangle whose corner was placed into the repeat.
struct Rectangle {
    Wrapping x, y, w, h;

    bool fits(Repeat repeat) const { return (x + w).bits() <= repeat.w.bits() && (y + h).bits() <= repeat.h.bits(); }
    bool narrowerThan(Repeat repeat) const { return w.bits() < repeat.w.bits(); }
    bool lowerThan(Repeat repeat) const { return h.bits() < repeat.h.bits(); }
};

/// What runs off the right edge comes back at the left, moved up by the drop. There it may stick out above the tile or
/// below it, and that part comes back at the other end.
void addRightOverhang(Pieces& pieces, Rectangle r, Repeat repeat) {
    const Wrapping width = r.x + r.w - repeat.w;
    const Wrapping top = r.y - repeat.drop;
    const Wrapping above = std::min(r.h, repeat.drop - r.y);
    const Wrapping below = top - repeat.h + r.h;
    if (top + r.h > 0) {
        pieces.add(0, width, std::max<Wrapping>(0, top), top < 0 ? r.h - above : std::min(r.h, repeat.h - top));
    }
    if (top < 0) pieces.add(0, width, repeat.h + top, above);
    if (below > 0) pieces.add(0, width, std::max<Wrapping>(0, top - repeat.h), std::min(r.h, below));
}

/// A rectangle that crosses an edge. All comparisons are signed.
void addCovered(Pieces& pieces, Rectangle r, Repeat repeat) {
    const Wrapping width = std::min(r.w, repeat.w - r.x);
    if (r.x + r.w > repeat.w) addRightOverhang(pieces, r, repeat);
    if (r.y + r.h > repeat.h) pieces.add(r.x, width, 0, std::max<Wrapping>(0, r.y + r.h - repeat.h));
    pieces.add(std::max<Wrapping>(0, std::min(r.x, repeat.w - 1)), width,
               std::max<Wrapping>(0, std::min(r.y, repeat.h - 1)), std::min(r.h, repeat.h - r.y));
}

/// A rectangle that lies inside the tile: a strip on each side where there is room.
void addAround(Pieces& pieces, Rectangle r, Repeat repeat) {
    const Wrapping right = r.x + r.w;
    const Wrapping bottom = r.y + r.h;
    if (r.x > 0) pieces.add(0, r.x, 0, repeat.h);
    if (right.bits() < repeat.w.bits()) pieces.add(right, repeat.w - right, 0, repeat.h);
    if (r.y > 0) pieces.add(r.x, r.w, 0, r.y);
    if (bottom.bits() < repeat.h.bits()) pieces.add(r.x, r.w, bottom, repeat.h - bottom);
}

/// Columns that are covered from `top` down to `end`, possibly by way of the tile's lower edge.
void addUncoveredRows(Pieces& pieces, Wrapping x, Wrapping w, Wrapping top, Wrapping end, Repeat repeat) {
    if (top <= end) {
        pieces.add(x, w, 0, top);
        pieces.add(x, w, end, repeat.h - end);
    } else {
        pieces.add(x, w, end, top - end);
    }
}

/// A rectangle that crosses an edge and is smaller than the repeat both ways. `x` and `y` are its corner on the plane.
void addBetween(Pieces& pieces, Rectangle r, Wrapping x, Wrapping y, Repeat repeat) {
    const Position topRight = repeat.place(x + r.w, y);
    const Wrapping bottomLeft = repeat.place(x, y + r.h).y;
    if (r.x < topRight.x) {
        pieces.add(0, r.x, 0, repeat.h);
        pieces.add(r.x + r.w, repeat.w - r.x - r.w, 0, repeat.h);
        pieces.add(r.x, r.w, bottomLeft, r.y - bottomLeft);
    } else {
        const Wrapping bottomRight = repeat.place(x + r.w, y + r.h).y;
        pieces.add(topRight.x, r.x - topRight.x, 0, repeat.h);
        addUncoveredRows(pieces, r.x, repeat.w - r.x, r.y, bottomLeft, repeat);
        addUncoveredRows(pieces, 0, topRight.x, topRight.y, bottomRight, repeat);
    }
}

/// True if placing the corner never divides by a size of 0. Only half-drop layout places it.
[[maybe_unused]] bool placesCorner(int x, int y, unsigned int repW, unsigned int repH, _EDropKind kind, int drop) {
    return kind != eDropVertical || placeable(x, y, repW, repH, kind, wholeDrop(drop));
}

}  // namespace

/// Checks the outputs as far as the kind has them written, and the sizes as far as they are divided by.
#define OMNAR_EXPECT_PIECES()                                                                                      \
    OMNAR_EXPECT_NOT_NULL_IF(kind != eDropHorizontal, ", unless kind is eDropHorizontal", count);                  \
    OMNAR_EXPECT_NOT_NULL_IF(kind == eDropVertical, ", if kind is eDropVertical", pieceX, pieceW, pieceY, pieceH); \
    OMNAR_EXPECT_AS(repW, repW != 0 || placesCorner(x, y, repW, repH, kind, drop),                                 \
                    "not 0, unless placing never divides by it");                                                  \
    OMNAR_EXPECT_AS(repH, repH != 0 || placesCorner(x, y, repW, repH, kind, drop),                                 \
                    "not 0, unless placing never divides by it")

void CalcPosAndSizeInRepBuffer(int x, int y, unsigned int w, unsigned int h, unsigned int repW, unsigned int repH,
                               _EDropKind kind, int drop, int* count, int* pieceX, int* pieceW, int* pieceY,
                               int* pieceH, bool wholeRepeatIfLarger) {
    OMNAR_EXPECT_PIECES();
    if (kind == eDropHorizontal) return;
    *count = 0;
    if (kind != eDropVertical) return;

    const Repeat repeat{repW, repH, drop};
    const Position corner = repeat.place(x, y);
    const Rectangle rectangle{corner.x, corner.y, w, h};
    Pieces pieces{pieceX, pieceW, pieceY, pieceH};
    if (rectangle.fits(repeat)) {
        pieces.add(rectangle.x, w, rectangle.y, h);
    } else if (wholeRepeatIfLarger && !(rectangle.narrowerThan(repeat) && rectangle.lowerThan(repeat))) {
        pieces.add(0, repW, 0, repH);
    } else {
        addCovered(pieces, rectangle, repeat);
    }
    *count = pieces.count;
}

void CalcPosAndSizeInRepBufferInv(int x, int y, unsigned int w, unsigned int h, unsigned int repW, unsigned int repH,
                                  _EDropKind kind, int drop, int* count, int* pieceX, int* pieceW, int* pieceY,
                                  int* pieceH) {
    OMNAR_EXPECT_PIECES();
    if (kind == eDropHorizontal) return;
    *count = 0;
    if (kind != eDropVertical) return;

    const Repeat repeat{repW, repH, drop};
    const Position corner = repeat.place(x, y);
    const Rectangle rectangle{corner.x, corner.y, w, h};
    Pieces pieces{pieceX, pieceW, pieceY, pieceH};
    if (rectangle.fits(repeat)) {
        addAround(pieces, rectangle, repeat);
    } else if (rectangle.narrowerThan(repeat) && rectangle.lowerThan(repeat)) {
        addBetween(pieces, rectangle, x, y, repeat);
    } else {
        pieces.set(0, 0, repW, 0, repH);  // entered, but not counted: hosts that look at it see the whole repeat
    }
    *count = pieces.count;
}
