// SPDX-License-Identifier: MIT

// Connected-component labelling of two-level images.

#include <OmnarRaster.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <type_traits>

#include "buffers/host/contract.h"
#include "buffers/host/large_block.h"
#include "objects/area.h"
#include "objects/bit_rows.h"
#include "objects/buffer.h"
#include "objects/canvas.h"
#include "objects/run_components.h"
#include "objects/run_kernels.h"

using namespace omnar;

namespace {

/// Consecutive labels that wrap around at the ends of their type.
template <class Px>
class LabelSequence {
public:
    LabelSequence(Px first, Px object, Px reserved, bool ascending, int limit)
        : current_(first), object_(object), reserved_(reserved), ascending_(ascending), last_(ascending ? limit : 1) {}

    Px current() const { return current_; }
    void advance(int steps) {
        const auto bits = static_cast<Bits>(current_);
        current_ = static_cast<Px>(ascending_ ? bits + static_cast<Bits>(steps) : bits - static_cast<Bits>(steps));
    }
    /// The labels of `usable` objects from the current label on.
    ObjectLabels<Px> objectLabels(int usable, Px unlabelled) const {
        return {current_, ascending_ ? 1 : UINT32_MAX, static_cast<std::uint32_t>(usable), unlabelled};
    }

    /// True if no object can be given the current label.
    bool isRefused() const { return current_ == object_ || current_ == reserved_; }
    /// True if the current label, reached by advance(), ends the scan.
    bool isLast() const { return current_ == last_; }

    /// How many objects can be labelled before a label is refused or ends the scan.
    int usable() const {
        if (isRefused()) return 0;
        return static_cast<int>(
            std::min({stepsTo(object_), stepsTo(reserved_), stepsTo(last_), std::int64_t{INT_MAX}}));
    }

private:
    using Bits = std::make_unsigned_t<Px>;

    /// 1 or more: to the current label it is once round.
    std::int64_t stepsTo(int label) const {
        if (label != static_cast<Px>(label)) return INT64_MAX;
        const auto lower = static_cast<Bits>(ascending_ ? current_ : label);
        const auto upper = static_cast<Bits>(ascending_ ? label : current_);
        return std::int64_t{static_cast<Bits>(upper - lower - 1)} + 1;
    }

    Px current_, object_, reserved_;
    bool ascending_;
    int last_;
};

/// Labels the first labels.usable() objects. Returns the number of all objects; none if memory is lacking, and then no
/// pixel has changed.
template <class Px>
std::optional<int> labelAtOnce(const Buffer<Px>& buffer, const Area& area, Px object,
                               const LabelSequence<Px>& labels) try {
    const auto cols = static_cast<std::size_t>(area.cols()), rows = static_cast<std::size_t>(area.rows());
    if (!RunComponents::canHold(cols, rows)) return std::nullopt;
    const auto pixels = [&](std::size_t row) { return buffer.address(area.left, area.top + static_cast<int>(row)); };

    const RunKernels<Px>& kernels = runKernels<Px>();
    const BitRows bits(cols, rows);
    for (std::size_t row = 0; row < rows; ++row) kernels.mark(pixels(row), cols, object, bits.row(row));
    RunComponents components(bits);
    const LargeArray<Px> runLabels(cols / 2 + 2 + spareLabels);
    const ObjectLabels<Px> objectLabels = labels.objectLabels(labels.usable(), object);
    for (std::size_t row = 0; row < rows; ++row) {
        const std::size_t runs = components.runCount(row);
        const std::size_t unscanned = row == rows - 1 ? runs : bits.lastIsAlone(row) ? 1 : 0;
        if (kernels.label(components.number(row, unscanned), runs, objectLabels, runLabels.data() + 1)) {
            kernels.paint(pixels(row), cols, bits.row(row), runLabels.data());
        }
    }
    // A pixel alone in the last column may be part of an object that is first met in a later row.
    for (std::size_t row = 0; row < rows; ++row) {
        if (bits.lastIsAlone(row)) pixels(row)[cols - 1] = objectLabels.label(components.lastOfRow(row));
    }
    return components.objects();
} catch (const COmnarException&) {
    return std::nullopt;
}

/// How many of a row's leading zeros the scan skips as background, even if 0 is the object value: groups of 8 bytes
/// that are followed by more than one pixel.
template <class Px>
int skippedZeros(int zeros, int cols) {
    constexpr int group = 8 / static_cast<int>(sizeof(Px));
    int skipped = 0;
    while (skipped < cols - group - 1 && zeros - skipped >= group) skipped += group;
    return skipped;
}

/// Scans the area and fills each object as it is met. A scan can be resumed on another canvas of the same pixels.
template <class Px>
class Scan {
public:
    Scan(const Area& area, Px object, const LabelSequence<Px>& labels, int count)
        : cols_(area.right - area.left),
          rows_(area.bottom - area.top),
          object_(object),
          labels_(labels),
          count_(count) {}

    int count() const { return count_; }

    /// Returns false if stop() ended the scan early.
    template <Canvas<Px> C, class Stop>
    bool resume(C& canvas, Stop stop) {
        for (; row_ < rows_; ++row_, column_ = -1) {
            if (column_ < 0) {
                column_ = object_ == 0 ? skippedZeros<Px>(canvas.countLeading(row_, cols_, Px{0}), cols_) : 0;
                lag_ = 0;
            }
            for (;; ++column_) {
                column_ = canvas.find(row_, column_, cols_ + lag_, object_);
                if (column_ == cols_ + lag_) break;
                if (stop()) return false;
                if (labels_.isRefused()) {
                    ++lag_;
                } else {
                    canvas.fill(column_ - lag_, row_, labels_.current());
                    ++count_;
                }
                labels_.advance(1);
                if (labels_.isLast()) return true;
            }
        }
        return true;
    }

private:
    int cols_, rows_;  // without the area's last column and row, which are not scanned
    Px object_;
    LabelSequence<Px> labels_;
    int count_;
    int row_ = 0;
    int column_ = -1;  // negative before a row
    int lag_ = 0;      // labels refused in this row: seeds lie this far left of the object pixels that are met
};

/// Continues at `count` objects; returns their number at the end. Seeds that lag may lie in the background, which is
/// then filled once per object. After painting as many pixels that way as the area has, the scan continues on a graph
/// of components, if there is memory for it.
template <class Px>
int labelOneByOne(const Buffer<Px>& buffer, const Area& area, Px object, Px reserved, const LabelSequence<Px>& labels,
                  int count) {
    Scan<Px> scan(area, object, labels, count);
    PixelCanvas<Px> pixels(buffer, area, object);
    const std::int64_t limit = std::int64_t{area.cols()} * area.rows();
    if (scan.resume(pixels, [&] { return pixels.repainted() > limit; })) return scan.count();
    const auto never = [] { return false; };
    try {
        ComponentCanvas<Px> components(buffer, area, object, reserved);
        Scan<Px> continued = scan;
        continued.resume(components, never);
        components.paint();
        return continued.count();
    } catch (const COmnarException&) {
        scan.resume(pixels, never);
        return scan.count();
    }
}

template <class Px>
int label(const Buffer<Px>& buffer, const Area& area, Px object, Px reserved, LabelSequence<Px> labels) {
    // Fills reach the whole area, but its last column and row are not scanned.
    if (area.cols() == 1 || area.rows() == 1) return 0;
    int count = 0;
    const int usable = labels.usable();
    // labelAtOnce() skips no zeros.
    if (usable > 0 && object != 0) {
        if (const std::optional<int> objects = labelAtOnce(buffer, area, object, labels)) {
            count = std::min(usable, *objects);
            labels.advance(count);
            if (count == *objects || labels.isLast()) return count;
        }
    }
    return labelOneByOne(buffer, area, object, reserved, labels, count);
}

}  // namespace

template <class T>
int ColorBinaryObjects(T* buffer, int width, int height, int areaX, int areaY, int areaW, int areaH, T reservedValue,
                       T objectValue, T firstLabel, bool ascending, int labelLimit) {
    const Buffer<T> pixels = OMNAR_BUFFER(buffer);
    OMNAR_EXPECT_NOT_NULL(g_pLargeAllocator);
    return label(pixels, Area::within(width, height, areaX, areaY, areaW, areaH), objectValue, reservedValue,
                 LabelSequence<T>(firstLabel, objectValue, reservedValue, ascending, labelLimit));
}

template int ColorBinaryObjects(unsigned char*, int, int, int, int, int, int, unsigned char, unsigned char,
                                unsigned char, bool, int);
template int ColorBinaryObjects(int*, int, int, int, int, int, int, int, int, int, bool, int);
