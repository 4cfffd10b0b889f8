// SPDX-License-Identifier: MIT
/// @file
/// 32-bit integers: arithmetic that wraps around, and conversion of doubles.
#pragma once

#include <climits>
#include <compare>

namespace omnar {

/// A signed 32-bit number whose sums, differences and products wrap around.
class Wrapping {
public:
    constexpr Wrapping(int value) : bits_(static_cast<unsigned int>(value)) {}
    constexpr Wrapping(unsigned int bits) : bits_(bits) {}

    constexpr int value() const { return static_cast<int>(bits_); }
    constexpr unsigned int bits() const { return bits_; }  ///< the value modulo 2^32

    friend constexpr Wrapping operator+(Wrapping a, Wrapping b) { return a.bits_ + b.bits_; }
    friend constexpr Wrapping operator-(Wrapping a, Wrapping b) { return a.bits_ - b.bits_; }
    friend constexpr Wrapping operator*(Wrapping a, Wrapping b) { return a.bits_ * b.bits_; }
    constexpr Wrapping& operator+=(Wrapping b) { return *this = *this + b; }
    constexpr Wrapping& operator-=(Wrapping b) { return *this = *this - b; }

    friend constexpr bool operator==(Wrapping, Wrapping) = default;
    friend constexpr auto operator<=>(Wrapping a, Wrapping b) { return a.value() <=> b.value(); }

private:
    unsigned int bits_;
};

/// Truncates. Values out of range, infinities and NaN give INT_MIN.
constexpr int toInt(double value) {
    return value > -2147483649.0 && value < 2147483648.0 ? static_cast<int>(value) : INT_MIN;
}

/// The nearest integer, halves away from zero. Values out of range, infinities and NaN give INT_MIN.
constexpr int rounded(double value) { return toInt(value >= 0.0 ? value + 0.5 : value - 0.5); }

/// False for the two divisions that most processors trap: by 0, and of -2^31 by -1.
constexpr bool canDivide(int dividend, int divisor) { return divisor != 0 && (dividend != INT_MIN || divisor != -1); }

}  // namespace omnar
