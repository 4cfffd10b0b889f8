// SPDX-License-Identifier: MIT
/// @file
/// Views of a repeating pattern.
#pragma once

#include <OmnarRaster.h>

#include <cstdint>
#include <vector>

#include "png_file.h"

namespace example {

/// A rectangle of view pixels; the right and bottom edges are still positions of 32 bits.
struct Rectangle {
    int x = 0;
    int y = 0;
    unsigned int width = 0;
    unsigned int height = 0;
};

/// An ink and how it is printed.
struct Ink {
    InkPlane plane;
    TRC color = 0;
    unsigned char opacity = 255;
};

/// How one repeat is laid over the plane and looked at.
struct Repeat {
    unsigned int width = 0;  ///< in file pixels, like height and drop
    unsigned int height = 0;
    unsigned int drop = 0;
    _EDropKind kind = eDropVertical;
    double zoom = 1.0;  ///< view pixels per file pixel

    /// The size of a zoomed repeat, a whole number of view pixels so that repeats abut.
    unsigned int viewWidth() const;
    unsigned int viewHeight() const;

    /// The pixel of the repeat that lies at a view position.
    CPoint filePosition(int x, int y) const;
};

/// A rectangle of the endless pattern, ready to be drawn piece by piece.
class View {
public:
    /// The inks are printed in their order; each is as large as the repeat. Throws a Failure if positions within the
    /// view do not fit in 32 bits.
    View(const Repeat& repeat, std::vector<Ink> inks, TRC paper, const Rectangle& visible);

    const Rectangle& visible() const { return visible_; }

    /// Draws `count` rows from `top` on, both counted within the view, into `pixels`. Any number of threads may draw
    /// rows of one view at once.
    void drawRows(unsigned int top, unsigned int count, TRC* pixels) const;

private:
    void drawByPieces(const Rectangle& stripe, TRC* pixels) const;
    void drawByPositions(const Rectangle& stripe, TRC* pixels) const;

    Repeat repeat_;
    std::vector<Ink> inks_;
    TRC paper_;
    Rectangle visible_;
    std::vector<CPoint>
        columns_;  ///< what the columns of the view add to a file position; empty for the way of the pieces
};

}  // namespace example
