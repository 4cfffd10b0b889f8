// SPDX-License-Identifier: MIT
/// @file
/// Filling the 4-connected region of equal pixels round a seed, run by run.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "objects/area.h"
#include "objects/runs.h"

namespace omnar {

/// Fills regions of an image. The pixels themselves tell what was visited: they no longer hold the old value.
template <class Px>
class RegionFill {
public:
    RegionFill(const Image<Px>& image, const Area& area) : image_(image), area_(area) {}

    /// Gives `value` to every pixel that can be reached from the seed over pixels of the seed's own value. A step is
    /// refused only if it would leave the area in its own direction: from a seed outside, the way leads toward the area
    /// and never back. Returns how many pixels have changed.
    std::int64_t fill(int x, int y, Px value) {
        old_ = *image_.at(x, y);
        value_ = value;
        painted_ = 0;
        if (old_ == value_) return 0;
        const Columns run = paint(y, {x, x + 1});
        look(run, y, 1);
        look(run, y, -1);
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

    /// Columns of row y in which runs are still to be looked for: pixels beside them, in row y - step, were painted. What
    /// lies beyond either end, in this row or in that, is reached in other ways if at all.
    struct Strip {
        Columns columns;
        int y, step;
    };

    bool isLast(int y, int step) const { return step > 0 ? y >= area_.bottom : y <= area_.top; }

    /// Leaves the columns beside those of row y for later.
    void look(Columns columns, int y, int step) {
        if (!isLast(y, step)) strips_.push_back({columns, y + step, step});
    }

    /// Paints the first run of a strip, then the first beside that, straight on as far as it goes. What lies beside the
    /// way is left for later.
    void follow(Strip strip) {
        for (auto& [beside, y, step] = strip;; y += step) {
            const int first = beside.first + gap(y, beside);
            if (first == beside.end) return;
            const Columns run = paint(y, {first, beside.end});
            // The pixel next to either end, of this run and of the one beside, was looked at already.
            if (beside.end - run.end > 1) strips_.push_back({{run.end + 1, beside.end}, y, step});
            if (beside.first - run.first > 1) look({run.first, beside.first - 1}, y, -step);
            if (run.end - beside.end > 1) look({beside.end + 1, run.end}, y, -step);
            if (isLast(y, step)) return;
            beside = run;
        }
    }

    /// How many of the columns do not hold the old value, up to the first that does.
    int gap(int y, Columns columns) const {
        const Px* const row = image_.at(columns.first, y);
        const int n = columns.end - columns.first;
        for (int i = 0; i < few; ++i) {
            if (i == n || row[i] == old_) return i;
        }
        return few + static_cast<int>(rows_.other(row + few, static_cast<std::size_t>(n - few), old_));
    }

    /// Paints the run that holds the first of the columns. Beyond the area it only goes on toward it: these columns,
    /// which were reached, are then the last ones.
    Columns paint(int y, Columns columns) {
        const int left = std::min(columns.first, area_.left);
        const int end = std::max(columns.end, area_.right + 1);
        Px* const pixel = image_.at(columns.first, y);
        const int before = paintOn<-1>(pixel, columns.first - left);
        const int after = paintOn<1>(pixel, end - columns.first);
        painted_ += before + after;
        return {columns.first - before, columns.first + after};
    }

    /// Paints at most n pixels from `pixel` on, or before it, up to the first that does not hold the old value. Returns
    /// how many.
    template <int direction>
    int paintOn(Px* pixel, int n) {
        int i = 0;
        for (; i < n && i < few; ++i) {
            Px& next = direction > 0 ? pixel[i] : pixel[-1 - i];
            if (next != old_) return i;
            next = value_;
        }
        pixel += direction * i;
        const auto rest = static_cast<std::size_t>(n - i);
        const std::size_t more = direction > 0 ? rows_.same(pixel, rest, old_) : rows_.sameBefore(pixel, rest, old_);
        std::fill_n(direction > 0 ? pixel : pixel - more, more, value_);
        return i + static_cast<int>(more);
    }

    /// So many pixels are looked at one by one before a row's own search is called: most runs are short.
    static constexpr int few = 8;

    Image<Px> image_;
    Area area_;
    const RunRows<Px>& rows_ = runRows<Px>();
    std::vector<Strip> strips_;
    Px old_ = 0, value_ = 0;
    std::int64_t painted_ = 0;
};

}  // namespace omnar
