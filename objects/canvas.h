// SPDX-License-Identifier: MIT

/// @file
/// Pictures in which a scan finds pixels and fills regions: one that works on the pixels, and one that works on a graph of
/// the regions and writes the pixels in the end. Both have the same functions with the same results. Columns and rows
/// are counted from the corner of the area.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>

#include "objects/area.h"
#include "objects/label_runs.h"
#include "objects/large_vector.h"
#include "objects/region_fill.h"
#include "objects/region_graph.h"
#include "objects/run_joining.h"
#include "objects/runs.h"

namespace omnar {

/// Fills at once, and paints a region as often as it is filled.
template <class Px>
class PixelCanvas {
public:
    PixelCanvas(const Image<Px>& image, const Area& area, Px object)
        : image_(image), area_(area), object_(object), region_(image, area) {}

    /// How many of the row's first n pixels hold the value, up to the first that does not.
    int leading(int row, int n, Px value) const {
        return static_cast<int>(runRows<Px>().same(pixels(row), static_cast<std::size_t>(n), value));
    }

    /// The first column from `from` on that holds the value, or `end`. Columns past the row's end are those of the next.
    int find(int row, int from, int end, Px value) const {
        return from +
               static_cast<int>(runRows<Px>().other(pixels(row) + from, static_cast<std::size_t>(end - from), value));
    }

    /// Fills the region of a pixel of the area.
    void fill(int column, int row, Px value) {
        const bool isObject = pixels(row)[column] == object_;
        const std::int64_t painted = region_.fill(area_.left + column, area_.top + row, value);
        if (!isObject) repainted_ += painted;
    }

    /// How many pixels were painted that did not hold the object value.
    std::int64_t repainted() const { return repainted_; }

private:
    const Px* pixels(int row) const { return image_.at(area_.left, area_.top + row); }

    Image<Px> image_;
    Area area_;
    Px object_;
    RegionFill<Px> region_;
    std::int64_t repainted_ = 0;
};

/// Fills in a graph, until paint(). Throws a COmnarException where there is no memory for that.
template <class Px>
class RegionCanvas {
public:
    /// No region is ever filled with the object value or the reserved one.
    RegionCanvas(const Image<Px>& image, const Area& area, Px object, Px reserved)
        : image_(image),
          area_(area),
          cols_(area.right - area.left + 1),
          rows_(area.bottom - area.top + 1),
          graph_(object, reserved) {
        cutRows();
        joinRuns();
        buildGraph();
    }

    int leading(int row, int n, Px value) {
        return valueOf(first(row)) == value ? std::min(n, endOf(first(row), row)) : 0;
    }

    int find(int row, int from, int end, Px value) {
        const int inside = std::min(end, cols_);
        if (from < inside) {
            for (std::size_t run = runAt(from, row); run != first(row + 1) && begins_[run] < inside; ++run) {
                if (valueOf(run) == value) return std::max(from, begins_[run]);
            }
        }
        int column = std::max(from, inside);
        while (column < end && valueAt(column, row) != value) ++column;
        return column;
    }

    void fill(int column, int row, Px value) { graph_.fill(regions_[runAt(column, row)], value); }

    void paint() {
        for (int row = 0; row < rows_; ++row) {
            for (std::size_t run = first(row); run != first(row + 1); ++run) {
                const Px value = valueOf(run);
                Px* const pixels = image_.at(area_.left, area_.top + row);
                if (pixels[begins_[run]] != value) std::fill(pixels + begins_[run], pixels + endOf(run, row), value);
            }
        }
    }

private:
    std::size_t first(int row) const { return firstRuns_[static_cast<std::size_t>(row)]; }
    int endOf(std::size_t run, int row) const { return run + 1 == first(row + 1) ? cols_ : begins_[run + 1]; }
    Px valueOf(std::size_t run) { return graph_.valueOf(regions_[run]); }

    /// The run that a pixel of the area is part of.
    std::size_t runAt(int column, int row) const {
        const int* const begins = begins_.data();
        return static_cast<std::size_t>(std::upper_bound(begins + first(row), begins + first(row + 1), column) -
                                        begins) -
               1;
    }

    /// Of a pixel past the area's last column.
    Px valueAt(int column, int row) {
        const std::int64_t place = std::int64_t{area_.left} + column;
        const int x = static_cast<int>(place % image_.width);
        const int y = area_.top + row + static_cast<int>(place / image_.width);
        const bool inside = x >= area_.left && x <= area_.right;
        return inside ? valueOf(runAt(x - area_.left, y - area_.top)) : *image_.at(x, y);
    }

    void cutRows() {
        const auto whole = [](int n) { return static_cast<std::uint32_t>(n); };
        const Plane<const Px> plane(image_.pixels, whole(image_.width), whole(image_.height), whole(area_.left),
                                    whole(area_.top));
        std::size_t runs = 0;
        forEachRun(plane, cols_, rows_, [&](const Run&, const Px*) { return ++runs != 0; });
        if (runs > INT32_MAX) throw COmnarException(outOfMemory, "canvas.h", __LINE__, 0);
        begins_.reserve(runs);
        firstRuns_.reserve(static_cast<std::size_t>(rows_) + 1);
        forEachRun(plane, cols_, rows_, [&](const Run& run, const Px*) {
            if (run.begin == 0) firstRuns_.push_back(begins_.size());
            begins_.push_back(run.begin);
            return true;
        });
        firstRuns_.push_back(runs);
    }

    /// Calls visit(upper, lower) for the runs that touch in a row and the one above.
    template <class Visit>
    void forTouching(int row, Visit visit) const {
        for (std::size_t upper = first(row - 1), lower = first(row); lower != first(row + 1);) {
            visit(upper, lower);
            const int upperEnd = endOf(upper, row - 1), lowerEnd = endOf(lower, row);
            upper += upperEnd <= lowerEnd ? 1 : 0;
            lower += lowerEnd <= upperEnd ? 1 : 0;
        }
    }

    /// Leads each run to the first one of its region.
    void joinRuns() {
        regions_.resize(begins_.size());
        std::iota(regions_.begin(), regions_.end(), 0);
        for (int row = 1; row < rows_; ++row) {
            const Px* const above = image_.at(area_.left, area_.top + row - 1);
            const Px* const here = image_.at(area_.left, area_.top + row);
            forTouching(row, [&](std::size_t upper, std::size_t lower) {
                if (above[begins_[upper]] != here[begins_[lower]]) return;
                const std::int32_t a = rootOf(regions_.data(), static_cast<std::int32_t>(upper));
                const std::int32_t b = rootOf(regions_.data(), static_cast<std::int32_t>(lower));
                regions_[static_cast<std::size_t>(std::max(a, b))] = std::min(a, b);
            });
        }
    }

    void buildGraph() {
        for (int row = 0; row < rows_; ++row) {
            for (std::size_t run = first(row); run != first(row + 1); ++run) {
                // Runs lead to earlier ones, which have their regions already.
                const auto before = static_cast<std::size_t>(regions_[run]);
                regions_[run] = before == run ? graph_.add(*image_.at(area_.left + begins_[run], area_.top + row))
                                              : regions_[before];
                graph_.enlarge(regions_[run], static_cast<std::uint32_t>(endOf(run, row) - begins_[run]));
            }
        }
        for (int row = 0; row < rows_; ++row) {
            for (std::size_t run = first(row); run + 1 != first(row + 1); ++run) {
                graph_.connect(regions_[run], regions_[run + 1]);
            }
            if (row == 0) continue;
            forTouching(row, [&](std::size_t upper, std::size_t lower) {
                if (regions_[upper] != regions_[lower]) graph_.connect(regions_[upper], regions_[lower]);
            });
        }
    }

    Image<Px> image_;
    Area area_;
    int cols_, rows_;
    LargeVector<int> begins_;             ///< the first columns of all runs of equal pixels, row by row
    LargeVector<std::size_t> firstRuns_;  ///< of each row, and one past the last run
    LargeVector<std::int32_t> regions_;   ///< of each run
    RegionGraph<Px> graph_;
};

}  // namespace omnar
