// SPDX-License-Identifier: MIT
/// @file
/// Drawing views of a repeating pattern.
#pragma once

#include <OmnarRaster.h>

#include <cstdint>
#include <vector>

#include "png_file.h"

namespace example {

/// A rectangle of view pixels. Its right and bottom edges fit in 32 bits, too.
struct Rectangle {
    int x = 0;
    int y = 0;
    unsigned int width = 0;
    unsigned int height = 0;
};

/// An ink with its colour and opacity.
struct Ink {
    InkPlane plane;
    TRC color = 0;
    unsigned char opacity = 255;
};

/// The size of the repeat, its layout on the plane, and the zoom.
struct Repeat {
    unsigned int width = 0;  ///< in file pixels, like height and drop
    unsigned int height = 0;
    unsigned int drop = 0;
    _EDropKind kind = eDropVertical;
    double zoom = 1.0;  ///< view pixels per file pixel

    /// The size of a zoomed repeat, truncated to view pixels so that repeats abut.
    unsigned int viewWidth() const;
    unsigned int viewHeight() const;

    /// The pixel of the repeat at a view position.
    CPoint filePosition(int x, int y) const;
};

/// A rectangle of the endless pattern, drawn row by row.
class View {
public:
    /// The inks are printed in order. Each has the size of the repeat. Throws a Failure if a position within the view
    /// does not fit in 32 bits.
    View(const Repeat& repeat, std::vector<Ink> inks, TRC paper, const Rectangle& visible);

    const Rectangle& visible() const { return visible_; }

    /// Draws `count` rows into `pixels`, from row `top` of the view on. Threads may draw rows of one view concurrently.
    void drawRows(unsigned int top, unsigned int count, TRC* pixels) const;

private:
    void drawByPieces(const Rectangle& stripe, TRC* pixels) const;
    void drawByPositions(const Rectangle& stripe, TRC* pixels) const;

    Repeat repeat_;
    std::vector<Ink> inks_;
    TRC paper_;
    Rectangle visible_;
    std::vector<CPoint> columns_;  ///< the file positions of the columns in view row 0; empty if drawn by pieces
};

}  // namespace example
