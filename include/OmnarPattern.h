// SPDX-License-Identifier: MIT
/// @file OmnarPattern.h
/// Views of an endless repeating pattern, drawn by the functions of OmnarRaster.h.
///
/// A Pattern is a tile that repeats over the plane, layers that are printed over one another, and a paper colour. A
/// Painter draws any rectangle of it at one zoom into a true-colour buffer:
///
///     using namespace omnar::pattern;
///     Pattern pattern;
///     pattern.repeat = {640, 640, 320, Layout::halfDrop};
///     pattern.layers = {Ink{leaves, 0x3F5D4A}, Ink{flowers, 0xC0564B, 200}};
///     Painter painter(pattern, 1.5);
///     painter.draw({scrollX, scrollY, 1600, 1000}, pixels, 1600, 1000);
///
/// @section planes Memory
/// Layers refer to memory of the caller, which must stay and be readable as long as a painter of the pattern exists.
/// Call Painter::update() after pixels of a layer changed. A painter keeps the rows of a layer that it has scaled: 4 MiB,
/// or two bytes (of a picture eight) for each pixel of the layer and of the view, at most. Without that memory it draws
/// the same, more slowly.
///
/// @section threads Threads
/// There is no global state and no thread. A painter is used by one thread at a time; any number of painters may draw from
/// one pattern at once. Rectangles that are drawn apart, by whichever painters, fit together without a seam.
///
/// @section errors Errors
/// `std::invalid_argument` for an argument that breaks its rule, `std::out_of_range` for a view whose positions leave 32
/// bits, `std::bad_alloc` without memory for a few rows. The message names the argument or the corner. Nothing is drawn
/// then.
#ifndef OMNAR_PATTERN_H
#define OMNAR_PATTERN_H

#include <OmnarRaster.h>

#include <cstddef>
#include <memory>
#include <variant>
#include <vector>

#if defined(OMNAR_PATTERN_STATIC)
#define OMNAR_PATTERN_API
#elif defined(_WIN32) && defined(OMNAR_PATTERN_BUILDING)
#define OMNAR_PATTERN_API __declspec(dllexport)
#elif defined(_WIN32)
#define OMNAR_PATTERN_API __declspec(dllimport)
#else
#define OMNAR_PATTERN_API __attribute__((visibility("default")))
#endif

namespace omnar::pattern {

/// How neighbouring tiles are offset.
enum class Layout {
    straight,  ///< tiles in rows and columns
    halfDrop,  ///< each tile column is shifted down by the drop against the column to its left
    brick      ///< each tile row is shifted right by the drop against the row above it
};

/// The tile, in file pixels.
struct Repeat {
    unsigned int width = 0;            ///< 1..2^30
    unsigned int height = 0;           ///< 1..2^30
    unsigned int drop = 0;             ///< any value; counts modulo the height (brick: the width), not read if straight
    Layout layout = Layout::straight;  ///< one of the layouts
};

/// A layer of one colour: blended by the weight coverage * opacity / 255.
struct Ink {
    const L08* coverage = nullptr;  ///< the tile, width x height samples, 0 for no ink, 255 for full ink
    TRC color = 0;                  ///< colour in bits 0..23; bits 24..31 are not used
    unsigned char opacity = 255;    ///< 0..255
};

/// A layer of true colour: blended by the weight alpha * opacity / 255.
struct Picture {
    const TRC* pixels = nullptr;  ///< the tile, width x height pixels
    unsigned char opacity = 255;  ///< 0..255
};

/// An endless pattern. Each view pixel is the paper, moved by the layers in their order.
struct Pattern {
    Repeat repeat;                                   ///< the tile
    std::vector<std::variant<Ink, Picture>> layers;  ///< from the paper upwards
    TRC paper = 0xFFFFFFFF;                          ///< all four bytes of a pixel without ink
};

/// A rectangle; its right and bottom edges, too, are within 32 bits.
struct Rectangle {
    int x = 0;                ///< left column
    int y = 0;                ///< top row
    unsigned int width = 0;   ///< columns
    unsigned int height = 0;  ///< rows
};

/// What a view pixel shows.
enum class Quality {
    exact,  ///< the file pixel that VPToFP(), folded, gives for it
    smooth  ///< with a zoom below 1, the mean of the file pixels under it; otherwise as `exact`
};

/// Draws a pattern at one zoom.
class OMNAR_PATTERN_API Painter {
public:
    /// @param pattern  what to draw; copied, except for the pixels of its layers
    /// @param zoom  view pixels per file pixel, finite and above 0; a tile may have 2147483647 view pixels a side
    /// @param quality  what a view pixel shows
    Painter(Pattern pattern, double zoom, Quality quality = Quality::exact);
    Painter(Painter&&) noexcept;  ///< leaves a painter that can only be assigned to or destroyed
    Painter& operator=(
        Painter&&) noexcept;  ///< leaves a painter that can only be assigned to or destroyed @return itself
    ~Painter();               ///< releases the scaled rows

    /// Draws a rectangle of the pattern, all four bytes of each pixel.
    /// @param view  the rectangle, in view pixels; the plane's origin is the top-left corner of a tile
    /// @param[out] dst  destination buffer
    /// @param dstWidth  width of the destination in pixels, at least dstX + view.width
    /// @param dstHeight  height of the destination in pixels, at least dstY + view.height
    /// @param dstX  left column of the rectangle in the destination
    /// @param dstY  top row of the rectangle in the destination
    void draw(const Rectangle& view, TRC* dst, unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX = 0,
              unsigned int dstY = 0);

    /// Throws what draw() would for this view.
    /// @param view  the rectangle, in view pixels
    void check(const Rectangle& view) const;

    /// Returns the tile at the origin.
    /// @return its rectangle in view pixels; all tiles have its size
    Rectangle tile() const;

    /// Takes over changed pixels of a layer.
    /// @param layer  index of the layer
    /// @param changed  the pixels that changed, in file pixels, within the tile
    void update(std::size_t layer, const Rectangle& changed);

    /// Returns where pixels of the tile show in a view, for drawing these parts again.
    /// @param changed  the pixels, in file pixels, within the tile
    /// @param view  the rectangle that is visible, in view pixels
    /// @return rectangles within the view, in view pixels, which do not overlap
    std::vector<Rectangle> shownIn(const Rectangle& changed, const Rectangle& view) const;

    /// Returns the pixel of the tile that lies at a view position.
    /// @param x  view column
    /// @param y  view row
    /// @return the file position, folded into the tile
    CPoint filePosition(int x, int y) const;

    /// Returns where a pixel of the tile begins in the view, in the tile at the origin or in another one. Where zooms
    /// leave the pixel out, it is where the next one begins.
    /// @param file  the file position, within the tile
    /// @param tileX  number of the tile column, counted from the one at the origin
    /// @param tileY  number of the tile row
    /// @return the view position
    CPoint viewPosition(CPoint file, int tileX = 0, int tileY = 0) const;

private:
    class Work;
    std::unique_ptr<Work> work_;
};

}  // namespace omnar::pattern

#endif
