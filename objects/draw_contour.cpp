// SPDX-License-Identifier: MIT

// Marking the boundary pixels of a mask. This file is compiled once for each vector level.
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

/// Marks what pixels 0..n-1 of a mask's row have of the boundary. The rows above and below lie a pitch away; all three
/// have a border pixel on either side.
using MarkRow = void(const L08* row, std::size_t pitch, TRC* target, TRC colour, std::size_t n);

/// Run by run: the ends of a run are marked, and in between what has a clear pixel above or below. A run that goes on
/// behind an end of the row has no end there.
void markRuns(const L08* row, std::size_t pitch, TRC* target, TRC colour, std::size_t n) {
    bool inside = row[-1] != 0;
    for (std::size_t i = 0; i < n; ++i) {
        if (!inside && row[i] != 0) {
            target[i] = colour;
            inside = true;
        }
        if (!inside) continue;
        if (row[i] == 0) {
            if (i != 0) target[i - 1] = colour;
            inside = false;
        } else if ((row - pitch)[i] == 0 || (row + pitch)[i] == 0) {
            target[i] = colour;
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

/// Marks a vector of pixels. Those that are set are on the boundary unless all four neighbours are set, too.
template <class D>
HWY_INLINE void markVector(D d, const L08* row, size_t pitch, TRC* target, TRC colour) {
    const auto zero = hn::Zero(d);
    const auto clear = hn::Eq(hn::LoadU(d, row), zero);
    if (hn::AllTrue(d, clear)) return;
    const auto beside = hn::Min(hn::LoadU(d, row - 1), hn::LoadU(d, row + 1));
    const auto across = hn::Min(hn::LoadU(d, row - pitch), hn::LoadU(d, row + pitch));
    const auto boundary = hn::AndNot(clear, hn::Eq(hn::Min(beside, across), zero));
    if (hn::AllFalse(d, boundary)) return;

    uint64_t bits = 0;
    hn::StoreMaskBits(d, boundary, reinterpret_cast<uint8_t*>(&bits));
    for (; bits != 0; bits &= bits - 1) target[std::countr_zero(bits)] = colour;
}

/// Marks all but the last pixel of a row of more than a vector. The last vector overlaps the one before it.
template <class D>
HWY_INLINE void markVectors(D d, const L08* row, size_t pitch, TRC* target, TRC colour, size_t n) {
    const size_t last = n - 1 - hn::Lanes(d);
    for (size_t i = 0; i < last; i += hn::Lanes(d)) markVector(d, row + i, pitch, target + i, colour);
    markVector(d, row + last, pitch, target + last, colour);
}

/// Vector twin of omnar::markRuns, which does the row's last pixel here, too: what is to the right of it does not count.
void markRow(const L08* row, size_t pitch, TRC* target, TRC colour, size_t n) {
    const hn::ScalableTag<uint8_t> wide;
    const hn::CappedTag<uint8_t, 16> narrow;
    size_t done = n - 1;
    if (n > hn::Lanes(wide)) {
        markVectors(wide, row, pitch, target, colour, n);
    } else if (n > hn::Lanes(narrow)) {
        markVectors(narrow, row, pitch, target, colour, n);
    } else {
        done = 0;
    }
    markRuns(row + done, pitch, target + done, colour, n - done);
}

constexpr MarkRow* marker = markRow;
#endif
}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {
namespace {

constexpr MarkRow* marker = markRuns;
constinit const Levels<MarkRow*> markers{&marker OMNAR_VECTOR_TABLES(marker)};

/// What the border of one pixel on either side leaves.
constexpr std::size_t inner(std::size_t extent) { return extent > 2 ? extent - 2 : 0; }

}  // namespace
}  // namespace omnar

using namespace omnar;

void DrawContourOfL08toTRC(const unsigned char* mask, unsigned int maskWidth, unsigned int maskHeight,
                           unsigned int maskX, unsigned int maskY, unsigned int* target, unsigned int targetWidth,
                           unsigned int targetHeight, unsigned int targetX, unsigned int targetY, unsigned int w,
                           unsigned int h, unsigned int colour) {
    const Plane outer = OMNAR_FIRST_PLANE(mask);
    Plane destination = OMNAR_PLANE(target);
    const Region bordered = clip(w, h, outer);
    Region region{std::min(inner(bordered.cols), destination.colsLeft()),
                  std::min(inner(bordered.rows), destination.rowsLeft())};
    OMNAR_EXPECT_MEMORY(region, mask, target);
    if (region.empty()) return;

    const std::size_t pitch = maskWidth, reach = pitch + 1;  // from a pixel to the first and the last of its neighbours
    for (Plane rows = outer.columnsFrom(1);;) {
        rows.advance();
        const L08* const row = rows.row();
        const bool free = apart(row - reach, region.cols + 2 * reach, destination.row(), region.cols);
        MarkRow* const mark = free ? markers.current() : markRuns;
        mark(row, pitch, destination.row(), colour, region.cols);

        if (--region.rows == 0) return;
        destination.advance();
    }
}
#endif
