// SPDX-License-Identifier: MIT

// Labelling the objects of a two-level image.

#include <OmnarRaster.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <type_traits>

#include "buffers/host/contract.h"
#include "objects/area.h"
#include "objects/bit_rows.h"
#include "objects/canvas.h"
#include "objects/run_forest.h"
#include "objects/runs.h"

using namespace omnar;

namespace {

/// The labels, one after the other, wrapping around at the end of their type.
template <class Px>
class Labels {
public:
    Labels(Px first, Px object, Px reserved, bool ascending, int limit)
        : current_(first), object_(object), reserved_(reserved), ascending_(ascending), last_(ascending ? limit : 1) {}

    Px current() const { return current_; }
    void advance(int steps) {
        const auto bits = static_cast<Bits>(current_);
        current_ = static_cast<Px>(ascending_ ? bits + static_cast<Bits>(steps) : bits - static_cast<Bits>(steps));
    }
    /// Objects from the current label on; those past the usable labels have the value `none`.
    ObjectLabels<Px> ofObjects(int usable, Px none) const {
        return {current_, ascending_ ? 1 : UINT32_MAX, static_cast<std::uint32_t>(usable), none};
    }

    bool refused() const { return current_ == object_ || current_ == reserved_; }
    /// Whether the label that was stepped to ends the scan.
    bool ended() const { return current_ == last_; }

    /// How many objects can be given labels from here on before one is refused or ends the scan.
    int usable() const {
        if (refused()) return 0;
        return static_cast<int>(
            std::min({stepsTo(object_), stepsTo(reserved_), stepsTo(last_), std::int64_t{INT_MAX}}));
    }

private:
    using Bits = std::make_unsigned_t<Px>;

    /// At least 1: once round for the current label itself.
    std::int64_t stepsTo(int label) const {
        if (label != static_cast<Px>(label)) return INT64_MAX;
        const auto from = static_cast<Bits>(ascending_ ? current_ : label);
        const auto to = static_cast<Bits>(ascending_ ? label : current_);
        return std::int64_t{static_cast<Bits>(to - from - 1)} + 1;
    }

    Px current_, object_, reserved_;
    bool ascending_;
    int last_;
};

/// Labels the objects, up to as many as there are usable labels, all at once. Returns how many objects there are; none
/// if the memory for this is not to be had, and then no pixel has changed.
template <class Px>
std::optional<int> labelAtOnce(const Image<Px>& image, const Area& area, Px object, const Labels<Px>& labels) try {
    const auto cols = static_cast<std::size_t>(area.right) - static_cast<std::size_t>(area.left) + 1;
    const auto rows = static_cast<std::size_t>(area.bottom) - static_cast<std::size_t>(area.top) + 1;
    if (!RunForest::canHold(cols, rows)) return std::nullopt;
    const auto pixels = [&](std::size_t row) { return image.at(area.left, area.top + static_cast<int>(row)); };

    const BitRows bits(cols, rows);
    for (std::size_t row = 0; row < rows; ++row) runRows<Px>().mark(pixels(row), cols, object, bits.row(row));
    RunForest forest(bits);
    const LargeArray<Px> ofRuns(cols / 2 + 2 + spareLabels);
    const ObjectLabels<Px> ofObjects = labels.ofObjects(labels.usable(), object);  // the others keep their value
    const RunRows<Px>& rowsOfLevel = runRows<Px>();
    for (std::size_t row = 0; row < rows; ++row) {
        const std::size_t unscanned = row == rows - 1 ? forest.runsOf(row) : bits.lastIsAlone(row) ? 1 : 0;
        const std::int32_t* const nodes = forest.number(row, unscanned);
        if (rowsOfLevel.label(nodes, forest.runsOf(row), ofObjects, ofRuns.data() + 1)) {
            rowsOfLevel.paint(pixels(row), cols, bits.row(row), ofRuns.data());
        }
    }
    // A pixel alone in the last column may be part of an object that began further down.
    for (std::size_t row = 0; row < rows; ++row) {
        if (bits.lastIsAlone(row)) pixels(row)[cols - 1] = ofObjects.of(forest.lastOf(row));
    }
    return forest.objects();
} catch (const COmnarException&) {
    return std::nullopt;
}

/// A row's leading zeros that the scan takes for background without a look at the object value: whole groups of 8 bytes,
/// if more than one pixel of the row comes after them.
template <class Px>
int passedOver(int zeros, int cols) {
    constexpr int group = 8 / static_cast<int>(sizeof(Px));
    int passed = 0;
    while (passed < cols - group - 1 && zeros - passed >= group) passed += group;
    return passed;
}

/// A scan that fills object after object as it meets them. It can go on with another canvas of the same pixels.
template <class Px>
class Scan {
public:
    Scan(const Area& area, Px object, const Labels<Px>& labels, int count)
        : cols_(area.right - area.left),
          rows_(area.bottom - area.top),
          object_(object),
          labels_(labels),
          count_(count) {}

    int count() const { return count_; }

    /// Returns false if stop() had it stop before the end.
    template <class Canvas, class Stop>
    bool run(Canvas& canvas, Stop stop) {
        for (; row_ < rows_; ++row_, column_ = -1) {
            if (column_ < 0) {
                column_ = object_ == 0 ? passedOver<Px>(canvas.leading(row_, cols_, Px{0}), cols_) : 0;
                lag_ = 0;
            }
            for (;; ++column_) {
                column_ = canvas.find(row_, column_, cols_ + lag_, object_);
                if (column_ == cols_ + lag_) break;
                if (stop()) return false;
                if (labels_.refused()) {
                    ++lag_;
                } else {
                    canvas.fill(column_ - lag_, row_, labels_.current());
                    ++count_;
                }
                labels_.advance(1);
                if (labels_.ended()) return true;
            }
        }
        return true;
    }

private:
    int cols_, rows_;  // the last column and row of the area are not scanned
    Px object_;
    Labels<Px> labels_;
    int count_;
    int row_ = 0;
    int column_ = -1;  // below 0 before a row
    int lag_ = 0;  // by which seeds lie left of the pixels that were met, and the row ends later: the refused labels
};

/// While seeds lag they may lie in the background, which is then filled for one object after the other. Once as many pixels
/// were painted for that as the area has, the scan goes on in the graph of the regions, if there is memory for it. Goes
/// on from `count`, and returns the count in the end.
template <class Px>
int labelOneByOne(const Image<Px>& image, const Area& area, Px object, Px reserved, const Labels<Px>& labels,
                  int count) {
    Scan<Px> scan(area, object, labels, count);
    PixelCanvas<Px> pixels(image, area, object);
    const std::int64_t most = (std::int64_t{area.right} - area.left + 1) * (std::int64_t{area.bottom} - area.top + 1);
    if (scan.run(pixels, [&] { return pixels.repainted() > most; })) return scan.count();
    const auto never = [] { return false; };
    try {
        RegionCanvas<Px> regions(image, area, object, reserved);
        Scan<Px> rest = scan;
        rest.run(regions, never);
        regions.paint();
        return rest.count();
    } catch (const COmnarException&) {
        scan.run(pixels, never);
        return scan.count();
    }
}

template <class Px>
int label(const Image<Px>& image, const Area& area, Px object, Px reserved, Labels<Px> labels) {
    int count = 0;
    const int usable = labels.usable();
    // As an object, the value 0 is subject to what the scan passes over.
    if (usable > 0 && object != 0) {
        if (const std::optional<int> objects = labelAtOnce(image, area, object, labels)) {
            count = std::min(usable, *objects);
            labels.advance(count);
            if (count == *objects || labels.ended()) return count;
        }
    }
    return labelOneByOne(image, area, object, reserved, labels, count);
}

}  // namespace

template <class T>
int ColorBinaryObjects(T* buffer, int width, int height, int areaX, int areaY, int areaW, int areaH, T reservedValue,
                       T objectValue, T firstLabel, bool ascending, int labelLimit) {
    OMNAR_EXPECT_NOT_NULL(buffer);
    OMNAR_EXPECT_AS(width, width > 0, "1 or more");
    OMNAR_EXPECT_AS(height, height > 0, "1 or more");
    OMNAR_EXPECT_NOT_NULL(g_pLargeAllocator);
    // Fills reach the whole area, but its last row and column are not scanned.
    const Area area = Area::within(width, height, areaX, areaY, areaW, areaH);
    if (area.left == area.right || area.top == area.bottom) return 0;
    return label(Image<T>{buffer, width, height}, area, objectValue, reservedValue,
                 Labels<T>(firstLabel, objectValue, reservedValue, ascending, labelLimit));
}

template int ColorBinaryObjects(unsigned char*, int, int, int, int, int, int, unsigned char, unsigned char,
                                unsigned char, bool, int);
template int ColorBinaryObjects(int*, int, int, int, int, int, int, int, int, int, bool, int);
