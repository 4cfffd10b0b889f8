// SPDX-License-Identifier: MIT

// Drawing the boundary of a mask. This file is compiled once for each vector level.
#include <algorithm>
#include <bit>

#include "buffers/level.h"
#include "buffers/overlap.h"
#include "buffers/planes.h"
#include "buffers/region.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "objects/draw_contour.cpp"
#include "buffers/foreach_level.h"
#include "hwy/highway.h"

#ifndef OMNAR_OBJECTS_DRAW_CONTOUR_CPP_
#define OMNAR_OBJECTS_DRAW_CONTOUR_CPP_
namespace omnar {
namespace {

/// Draws the boundary pixels among pixels 0..n-1 of a row. The rows above and below lie `pitch` pixels away; all three
/// have a border pixel at both ends.
using DrawRow = void(const L08* row, std::size_t pitch, TRC* destination, TRC color, std::size_t n);

/// The reference, run by run: draws the ends of each run, and the pixels between them with a zero above or below. A run
/// that continues past an end of the row does not end there.
void drawRuns(const L08* row, std::size_t pitch, TRC* destination, TRC color, std::size_t n) {
    bool inside = row[-1] != 0;
    for (std::size_t i = 0; i < n; ++i) {
        if (!inside && row[i] != 0) {
            destination[i] = color;
            inside = true;
        }
        if (!inside) continue;
        if (row[i] == 0) {
            if (i != 0) destination[i - 1] = color;
            inside = false;
        } else if ((row - pitch)[i] == 0 || (row + pitch)[i] == 0) {
            destination[i] = color;
        }
    }
}

}  // namespace
}  // namespace omnar
#endif

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
namespace {
#if OMNAR_VECTOR_TARGET
namespace hn = hwy::HWY_NAMESPACE;

/// A non-zero pixel is on the boundary unless all four neighbours are non-zero.
template <class D>
HWY_INLINE void drawVector(D d, const L08* row, size_t pitch, TRC* destination, TRC color) {
    const auto zero = hn::Zero(d);
    const auto isZero = hn::Eq(hn::LoadU(d, row), zero);
    if (hn::AllTrue(d, isZero)) return;
    const auto beside = hn::Min(hn::LoadU(d, row - 1), hn::LoadU(d, row + 1));
    const auto across = hn::Min(hn::LoadU(d, row - pitch), hn::LoadU(d, row + pitch));
    const auto boundary = hn::AndNot(isZero, hn::Eq(hn::Min(beside, across), zero));
    if (hn::AllFalse(d, boundary)) return;

    uint64_t bits = 0;
    hn::StoreMaskBits(d, boundary, reinterpret_cast<uint8_t*>(&bits));
    for (; bits != 0; bits &= bits - 1) destination[std::countr_zero(bits)] = color;
}

/// Draws all but the last pixel of a row that is longer than a vector. The last vector overlaps the previous one.
template <class D>
HWY_INLINE void drawVectors(D d, const L08* row, size_t pitch, TRC* destination, TRC color, size_t n) {
    const size_t last = n - 1 - hn::Lanes(d);
    for (size_t i = 0; i < last; i += hn::Lanes(d)) drawVector(d, row + i, pitch, destination + i, color);
    drawVector(d, row + last, pitch, destination + last, color);
}

/// The reference draws the last pixel, whose right neighbour does not count.
void drawRow(const L08* row, size_t pitch, TRC* destination, TRC color, size_t n) {
    const hn::ScalableTag<uint8_t> wide;
    const hn::CappedTag<uint8_t, 16> narrow;
    size_t done = n - 1;
    if (n > hn::Lanes(wide)) {
        drawVectors(wide, row, pitch, destination, color, n);
    } else if (n > hn::Lanes(narrow)) {
        drawVectors(narrow, row, pitch, destination, color, n);
    } else {
        done = 0;
    }
    drawRuns(row + done, pitch, destination + done, color, n - done);
}

constexpr DrawRow* rowDrawer = drawRow;
#endif
}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {
namespace {

constexpr DrawRow* rowDrawer = drawRuns;
constinit const Levels<DrawRow*> rowDrawers{&rowDrawer OMNAR_VECTOR_TABLES(rowDrawer)};

/// An extent without the border of one pixel at both ends.
constexpr std::size_t withoutBorder(std::size_t extent) { return extent > 2 ? extent - 2 : 0; }

}  // namespace
}  // namespace omnar

using namespace omnar;

void DrawContourOfL08toTRC(const unsigned char* mask, unsigned int maskWidth, unsigned int maskHeight,
                           unsigned int maskX, unsigned int maskY, unsigned int* target, unsigned int targetWidth,
                           unsigned int targetHeight, unsigned int targetX, unsigned int targetY, unsigned int w,
                           unsigned int h, unsigned int colour) {
    const Plane bordered = OMNAR_FIRST_PLANE(mask);
    const Plane destination = OMNAR_PLANE(target);
    const Region outer = clip(w, h, bordered);
    const Region region{std::min(withoutBorder(outer.cols), destination.colsLeft()),
                        std::min(withoutBorder(outer.rows), destination.rowsLeft())};
    OMNAR_EXPECT_MEMORY(region, mask, target);
    if (region.empty()) return;

    const Plane inner = bordered.from(1);
    const std::size_t pitch = maskWidth, neighbourhood = pitch + 1;  // from a pixel to its first and its last neighbour
    DrawRow* const drawApart = rowDrawers.current();
    for (std::ptrdiff_t y = 0; y < static_cast<std::ptrdiff_t>(region.rows); ++y) {
        const L08* const row = inner.row(y + 1);
        const bool overlap =
            !apart(row - neighbourhood, region.cols + 2 * neighbourhood, destination.row(y), region.cols);
        (overlap ? drawRuns : drawApart)(row, pitch, destination.row(y), colour, region.cols);
    }
}
#endif
