// SPDX-License-Identifier: MIT

/// @file
/// What a labelling scan searches and fills: the pixels themselves, or the graph of their connected components, which
/// is painted at the end. Both give the same results. Columns and rows count from the corner of the area.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <numeric>

#include "buffers/host/large_vector.h"
#include "objects/area.h"
#include "objects/buffer.h"
#include "objects/component_graph.h"
#include "objects/flood_fill.h"
#include "objects/run_kernels.h"
#include "objects/runs.h"
#include "objects/union_find.h"

namespace omnar {

template <class C, class Px>
concept Canvas = requires(C canvas, int column, int row, int n, Px value) {
    /// How many of the row's first n pixels hold the value before the first that does not.
    { canvas.countLeading(row, n, value) } -> std::same_as<int>;
    /// The first column of [column, n) that holds the value, or n. Columns past the buffer's right edge continue in the
    /// next row.
    { canvas.find(row, column, n, value) } -> std::same_as<int>;
    /// Fills the connected component of a pixel of the area.
    canvas.fill(column, row, value);
};

/// Fills at once: a component is painted as often as it is filled.
template <class Px>
class PixelCanvas {
public:
    PixelCanvas(const Buffer<Px>& buffer, const Area& area, Px object)
        : buffer_(buffer), area_(area), object_(object), flood_(buffer, area) {}

    int countLeading(int row, int n, Px value) const {
        return static_cast<int>(runKernels<Px>().countEqual(pixels(row), static_cast<std::size_t>(n), value));
    }

    int find(int row, int begin, int end, Px value) const {
        const auto n = static_cast<std::size_t>(end - begin);
        return begin + static_cast<int>(runKernels<Px>().countDifferent(pixels(row) + begin, n, value));
    }

    void fill(int column, int row, Px value) {
        const bool isObject = pixels(row)[column] == object_;
        const std::int64_t painted = flood_.fill(area_.left + column, area_.top + row, value);
        if (!isObject) repainted_ += painted;
    }

    /// The number of pixels that were painted without holding the object value.
    std::int64_t repainted() const { return repainted_; }

private:
    const Px* pixels(int row) const { return buffer_.address(area_.left, area_.top + row); }

    Buffer<Px> buffer_;
    Area area_;
    Px object_;
    FloodFill<Px> flood_;
    std::int64_t repainted_ = 0;
};

/// Fills the components of a graph; paint() writes the pixels. Throws a COmnarException if memory is lacking.
template <class Px>
class ComponentCanvas {
public:
    /// No component is ever filled with `object` or `reserved`.
    ComponentCanvas(const Buffer<Px>& buffer, const Area& area, Px object, Px reserved)
        : buffer_(buffer), area_(area), cols_(area.cols()), rows_(area.rows()), graph_(object, reserved) {
        splitRows();
        joinRuns();
        buildGraph();
    }

    int countLeading(int row, int n, Px value) {
        return valueOf(firstRun(row)) == value ? std::min(n, endOf(firstRun(row), row)) : 0;
    }

    int find(int row, int begin, int end, Px value) {
        const int inside = std::min(end, cols_);
        if (begin < inside) {
            for (std::size_t run = runAt(begin, row); run != firstRun(row + 1) && begins_[run] < inside; ++run) {
                if (valueOf(run) == value) return std::max(begin, begins_[run]);
            }
        }
        int column = std::max(begin, inside);
        while (column < end && valuePastArea(column, row) != value) ++column;
        return column;
    }

    void fill(int column, int row, Px value) { graph_.fill(components_[runAt(column, row)], value); }

    void paint() {
        for (int row = 0; row < rows_; ++row) {
            for (std::size_t run = firstRun(row); run != firstRun(row + 1); ++run) {
                const Px value = valueOf(run);
                Px* const pixels = buffer_.address(area_.left, area_.top + row);
                if (pixels[begins_[run]] != value) std::fill(pixels + begins_[run], pixels + endOf(run, row), value);
            }
        }
    }

private:
    std::size_t firstRun(int row) const { return firstRuns_[static_cast<std::size_t>(row)]; }
    int endOf(std::size_t run, int row) const { return run + 1 == firstRun(row + 1) ? cols_ : begins_[run + 1]; }
    Px valueOf(std::size_t run) { return graph_.valueOf(components_[run]); }

    /// The run that a pixel of the area is part of.
    std::size_t runAt(int column, int row) const {
        const int* const begins = begins_.data();
        const int* const next = std::upper_bound(begins + firstRun(row), begins + firstRun(row + 1), column);
        return static_cast<std::size_t>(next - begins) - 1;
    }

    /// The value of a pixel past the area's last column. The pixel may lie in the area again, in a later row.
    Px valuePastArea(int column, int row) {
        const std::int64_t position = std::int64_t{area_.left} + column;
        const int x = static_cast<int>(position % buffer_.width);
        const int y = area_.top + row + static_cast<int>(position / buffer_.width);
        const bool inside = x >= area_.left && x <= area_.right;
        return inside ? valueOf(runAt(x - area_.left, y - area_.top)) : *buffer_.address(x, y);
    }

    void splitRows() {
        const Plane<const Px> plane = buffer_.plane(area_.left, area_.top);
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

    /// Calls visit(upper, lower) for each pair of runs that touch, in a row and the row above.
    template <class Visit>
    void forEachContact(int row, Visit visit) const {
        for (std::size_t upper = firstRun(row - 1), lower = firstRun(row); lower != firstRun(row + 1);) {
            visit(upper, lower);
            const int upperEnd = endOf(upper, row - 1), lowerEnd = endOf(lower, row);
            upper += upperEnd <= lowerEnd ? 1 : 0;
            lower += lowerEnd <= upperEnd ? 1 : 0;
        }
    }

    /// Makes components_ a union-find forest: the root of a run is the first run of its component.
    void joinRuns() {
        components_.resize(begins_.size());
        std::iota(components_.begin(), components_.end(), 0);
        for (int row = 1; row < rows_; ++row) {
            const Px* const upperRow = buffer_.address(area_.left, area_.top + row - 1);
            const Px* const lowerRow = buffer_.address(area_.left, area_.top + row);
            forEachContact(row, [&](std::size_t upper, std::size_t lower) {
                if (upperRow[begins_[upper]] != lowerRow[begins_[lower]]) return;
                const std::int32_t a = findRoot(components_.data(), static_cast<std::int32_t>(upper));
                const std::int32_t b = findRoot(components_.data(), static_cast<std::int32_t>(lower));
                components_[static_cast<std::size_t>(std::max(a, b))] = std::min(a, b);
            });
        }
    }

    /// Replaces the parents in components_ by nodes of the graph.
    void buildGraph() {
        for (int row = 0; row < rows_; ++row) {
            for (std::size_t run = firstRun(row); run != firstRun(row + 1); ++run) {
                // A parent is an earlier run, and has its component already.
                const auto parent = static_cast<std::size_t>(components_[run]);
                components_[run] = parent == run
                                       ? graph_.add(*buffer_.address(area_.left + begins_[run], area_.top + row))
                                       : components_[parent];
                graph_.enlarge(components_[run], static_cast<std::uint32_t>(endOf(run, row) - begins_[run]));
            }
        }
        for (int row = 0; row < rows_; ++row) {
            for (std::size_t run = firstRun(row); run + 1 != firstRun(row + 1); ++run) {
                graph_.connect(components_[run], components_[run + 1]);
            }
            if (row == 0) continue;
            forEachContact(row, [&](std::size_t upper, std::size_t lower) {
                if (components_[upper] != components_[lower]) graph_.connect(components_[upper], components_[lower]);
            });
        }
    }

    Buffer<Px> buffer_;
    Area area_;
    int cols_, rows_;
    LargeVector<int> begins_;               ///< the first column of each run of equal pixels, row by row
    LargeVector<std::size_t> firstRuns_;    ///< the first run of each row, and the number of all runs
    LargeVector<std::int32_t> components_;  ///< of each run
    ComponentGraph<Px> graph_;
};

}  // namespace omnar
