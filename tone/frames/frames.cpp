// SPDX-License-Identifier: MIT

// Hard and soft frames around the shapes of a mask: the exported functions.

#include <algorithm>
#include <cmath>
#include <limits>

#include "buffers/planes.h"
#include "tone/frames/kernels.h"

using namespace omnar;

namespace {

/// A hard frame of width 1 draws the full 3 x 3 square and ignores the caller's table. This table gives that square.
constexpr int squareTable[] = {1, 1, 1, 1, 0, 1, 1, 1, 1};

Disc hardDisc(const int* table, std::uint32_t tableRadius, std::uint32_t radius) {
    return radius == 1 ? Disc{squareTable, 1, 1} : Disc{table, tableRadius, radius};
}

/// `extent` less `radius` at both ends, at least 0.
std::size_t inset(std::size_t extent, std::size_t radius) { return extent - std::min(extent, 2 * radius); }

/// A frame in a buffer of the source's size. Pixels nearer to the buffer's edge than the radius are no centres, so that
/// every disc lies inside.
Frame frameWithin(const L08* src, L08* dst, std::uint32_t rowLength, std::uint32_t width, std::uint32_t height,
                  Disc disc) {
    const Plane<const L08> source(src, rowLength, height, disc.radius, disc.radius);
    return {
        {inset(width, disc.radius), inset(height, disc.radius)}, source, source, {dst, rowLength, height, 0, 0}, disc};
}

void draw(const Frame& frame, void (*FrameKernels::*kernel)(const Frame&)) {
    if (!frame.centres.empty()) (kernelsFor(frame).*kernel)(frame);
}

}  // namespace

/// Checks what a frame reads and writes, which is nothing if it has no centres.
#define OMNAR_EXPECT_FRAME(frame, tableIsRead)                                                                    \
    OMNAR_EXPECT_NOT_NULL_IF(!(frame).centres.empty(), ", unless nothing is drawn", src, dst);                    \
    OMNAR_EXPECT_NOT_NULL_IF(!(frame).centres.empty() && (tableIsRead), ", if it is read", distTable);            \
    OMNAR_EXPECT_AS(tableRadius, tableRadius >= (frame).disc.radius || (frame).centres.empty() || !(tableIsRead), \
                    "tableRadius >= the width of the discs, if distTable is read")

int* CreateDistTableForSoftFrame(unsigned int tableRadius) {
    const std::size_t side = 2 * std::size_t{tableRadius} + 1;
    constexpr auto limit = static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max());
    int* const table = new int[side > limit / side ? limit : side * side];
    int* entry = table;
    const std::int64_t radius = tableRadius;
    for (std::int64_t dy = -radius; dy <= radius; ++dy) {
        for (std::int64_t dx = -radius; dx <= radius; ++dx) {
            *entry++ = static_cast<int>(std::lround(std::sqrt(static_cast<double>(dx * dx + dy * dy))));
        }
    }
    return table;
}

void HardFrameL08toL08(const L08* src, L08* dst, unsigned int width, unsigned int height, const int* distTable,
                       unsigned int tableRadius, unsigned int frameWidth, bool solid) {
    const Frame frame = frameWithin(src, dst, width, width, height, hardDisc(distTable, tableRadius, frameWidth));
    OMNAR_EXPECT_FRAME(frame, frameWidth != 1);
    draw(frame, solid ? &FrameKernels::solid : &FrameKernels::values);
}

void HardFrameDownL08toL08(const L08* src, L08* dst, unsigned int width, unsigned int height, const int* distTable,
                           unsigned int tableRadius, unsigned int frameWidth) {
    const Frame frame = frameWithin(src, dst, width, width, height, hardDisc(distTable, tableRadius, frameWidth));
    OMNAR_EXPECT_FRAME(frame, frameWidth != 1);
    draw(frame, &FrameKernels::erase);
}

void HardFrameL08toL08DifferentXYFlat(const L08* src, L08* dst, unsigned int rowLength, unsigned int,
                                      unsigned int width, unsigned int height, const int* distTable,
                                      unsigned int tableRadius, unsigned int frameWidth, unsigned int) {
    const Frame frame = frameWithin(src, dst, rowLength, width, height, hardDisc(distTable, tableRadius, frameWidth));
    OMNAR_EXPECT_FRAME(frame, frameWidth != 1);
    OMNAR_EXPECT_AS(width, width <= rowLength || frame.centres.empty(), "width <= rowLength, unless nothing is drawn");
    draw(frame, &FrameKernels::solid);
}

void HardFrameL08toL08DifferentSize(const L08* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                    unsigned int srcY, L08* dst, unsigned int dstWidth, unsigned int dstHeight,
                                    unsigned int w, unsigned int h, const int* distTable, unsigned int tableRadius,
                                    unsigned int frameWidth, bool solid) {
    // Width 0 draws discs of radius 1 by the caller's table, one pixel farther up and left than width 1: where the
    // region itself lies.
    const Disc disc = frameWidth == 0 ? Disc{distTable, tableRadius, 1} : hardDisc(distTable, tableRadius, frameWidth);
    const std::uint32_t corner = frameWidth == 0 ? 0 : 1;
    // Unless the width is 1, values are read as if srcX were 0.
    const std::uint32_t valuesX = frameWidth == 1 ? srcX : 0;
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Region region = clip(w, h, source, Plane(dst, dstWidth, dstHeight, 0, 0));
    // Pixels on the region's own border are no centres.
    const Frame frame{{inset(region.cols, 1), inset(region.rows, 1)},
                      {src, srcWidth, srcHeight, srcX + 1, srcY + 1},
                      {src, srcWidth, srcHeight, valuesX + 1, srcY + 1},
                      {dst, dstWidth, dstHeight, corner, corner},
                      disc};
    OMNAR_EXPECT_AS(dstWidth,
                    clip(w, h, source).cols + 2 * std::uint64_t{frameWidth} <= dstWidth || frame.centres.empty(),
                    "columns that src leaves of the region + 2 * frameWidth <= dstWidth, unless nothing is drawn");
    OMNAR_EXPECT_AS(dstHeight,
                    clip(w, h, source).rows + 2 * std::uint64_t{frameWidth} <= dstHeight || frame.centres.empty(),
                    "rows that src leaves of the region + 2 * frameWidth <= dstHeight, unless nothing is drawn");
    OMNAR_EXPECT_FRAME(frame, frameWidth != 1);
    draw(frame, solid ? &FrameKernels::solid : &FrameKernels::values);
}

void SoftFrameL08toL08(const L08* src, L08* dst, unsigned int width, unsigned int height, const int* distTable,
                       unsigned int tableRadius, unsigned int frameWidth) {
    const Frame frame = frameWithin(src, dst, width, width, height, {distTable, tableRadius, frameWidth});
    OMNAR_EXPECT_FRAME(frame, frameWidth != 0);
    // Width 0 draws nothing: the fall-off divides by the width.
    if (frameWidth != 0) draw(frame, &FrameKernels::soft);
}
