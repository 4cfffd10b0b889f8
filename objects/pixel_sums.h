// SPDX-License-Identifier: MIT
/// @file
/// Sums of where pixels lie.
#pragma once

namespace omnar {

/// The sum of many centres of pixels, to the bit as if each was added by itself.
class CentreSum {
public:
    /// Adds first, first + step, first + 2 * step, ...
    void add(double first, double step, int count) {
        // Centres are halves. Below 2^52 a double holds every half, so that nothing was rounded up to here, and the
        // order of the additions makes no difference. A total that is too large to be exact is not below 2^52 either.
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
