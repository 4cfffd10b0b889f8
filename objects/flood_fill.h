// SPDX-License-Identifier: MIT
/// @file
/// Flood fill of 4-connected components of equal pixels, run by run.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "objects/area.h"
#include "objects/buffer.h"
#include "objects/run_kernels.h"

namespace omnar {

/// Keeps no record of visited pixels: they no longer hold the old value.
template <class Px>
class FloodFill {
public:
    FloodFill(const Buffer<Px>& buffer, const Area& area) : buffer_(buffer), area_(area) {}

    /// Gives `value` to every pixel that is connected to the seed by pixels of the seed's value. Only a step that would
    /// leave the area in its own direction is refused: a seed outside fills toward the area and, once there, stays
    /// inside. Returns the number of changed pixels.
    std::int64_t fill(int x, int y, Px value) {
        old_ = *buffer_.address(x, y);
        value_ = value;
        painted_ = 0;
        if (old_ == value_) return 0;
        const Columns run = paint(y, {x, x + 1});
        push(run, y, 1);
        push(run, y, -1);
        while (!strips_.empty()) {
            const Strip strip = strips_.back();
            strips_.pop_back();
            follow(strip);
        }
        return painted_;
    }

private:
    struct Columns {
        int first, end;
    };

    /// Columns of row y that are still to be searched for runs. The pixels beside them in row y - step are painted.
    /// Pixels past the ends, in either row, are reached from other strips if at all.
    struct Strip {
        Columns columns;
        int y, step;
    };

    bool isLast(int y, int step) const { return step > 0 ? y >= area_.bottom : y <= area_.top; }

    /// Pushes the columns beside those of row y.
    void push(Columns columns, int y, int step) {
        if (!isLast(y, step)) strips_.push_back({columns, y + step, step});
    }

    /// Paints the first run of a strip, then the first run beside that, and so on in one direction. Pushes whatever
    /// else lies beside the painted runs.
    void follow(Strip strip) {
        for (auto& [beside, y, step] = strip;; y += step) {
            const int first = beside.first + gap(y, beside);
            if (first == beside.end) return;
            const Columns run = paint(y, {first, beside.end});
            // The pixels next to the ends of both runs are known to differ.
            if (beside.end - run.end > 1) strips_.push_back({{run.end + 1, beside.end}, y, step});
            if (beside.first - run.first > 1) push({run.first, beside.first - 1}, y, -step);
            if (run.end - beside.end > 1) push({beside.end + 1, run.end}, y, -step);
            if (isLast(y, step)) return;
            beside = run;
        }
    }

    /// How many of the columns do not hold the old value before the first that does.
    int gap(int y, Columns columns) const {
        const Px* const row = buffer_.address(columns.first, y);
        const int n = columns.end - columns.first;
        for (int i = 0; i < shortRun; ++i) {
            if (i == n || row[i] == old_) return i;
        }
        return shortRun +
               static_cast<int>(kernels_.countDifferent(row + shortRun, static_cast<std::size_t>(n - shortRun), old_));
    }

    /// Paints the run that holds the first of the columns. Outside the area a run grows only toward the area, and not
    /// past the columns given, which have been reached already.
    Columns paint(int y, Columns columns) {
        const int left = std::min(columns.first, area_.left);
        const int end = std::max(columns.end, area_.right + 1);
        Px* const pixel = buffer_.address(columns.first, y);
        const int before = paintRun<-1>(pixel, columns.first - left);
        const int after = paintRun<1>(pixel, end - columns.first);
        painted_ += before + after;
        return {columns.first - before, columns.first + after};
    }

    /// Paints at most n pixels, from `pixel` on or those before it, until one does not hold the old value. Returns how
    /// many.
    template <int direction>
    int paintRun(Px* pixel, int n) {
        int i = 0;
        for (; i < n && i < shortRun; ++i) {
            Px& next = direction > 0 ? pixel[i] : pixel[-1 - i];
            if (next != old_) return i;
            next = value_;
        }
        pixel += direction * i;
        const auto left = static_cast<std::size_t>(n - i);
        const std::size_t more =
            direction > 0 ? kernels_.countEqual(pixel, left, old_) : kernels_.countEqualBefore(pixel, left, old_);
        std::fill_n(direction > 0 ? pixel : pixel - more, more, value_);
        return i + static_cast<int>(more);
    }

    /// Most runs are at most this long. A kernel is called only for what is longer.
    static constexpr int shortRun = 8;

    Buffer<Px> buffer_;
    Area area_;
    const RunKernels<Px>& kernels_ = runKernels<Px>();
    std::vector<Strip> strips_;
    Px old_ = 0, value_ = 0;
    std::int64_t painted_ = 0;
};

}  // namespace omnar
