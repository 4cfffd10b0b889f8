// SPDX-License-Identifier: MIT
/// @file
/// Sums of pixel coordinates, for centroids.
#pragma once

namespace omnar {

/// The sum of the coordinates of pixel centres, equal bit for bit to adding them one by one.
class CoordinateSum {
public:
    /// Adds first, first + step, first + 2 * step, ...
    void add(double first, double step, int count) {
        // Centres are multiples of 0.5, and a double holds every multiple of 0.5 below 2^52. A sum below that limit was
        // never rounded, so the order of additions does not matter. A rounded total is not below 2^52 either.
        const double total = count * (first + step * (count - 1) * 0.5);
        if (value_ + total < 0x1p52) {
            value_ += total;
        } else {
            for (int i = 0; i < count; ++i) value_ += first + step * i;
        }
    }

    double value() const { return value_; }

private:
    double value_ = 0.0;
};

}  // namespace omnar
