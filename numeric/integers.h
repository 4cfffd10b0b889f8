// SPDX-License-Identifier: MIT
/// @file
/// The whole numbers of geometry: wrap-around, cutting toward zero, rounding, floor division.
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
    constexpr unsigned int bits() const { return bits_; }  ///< the same bits as an unsigned number

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

/// Cuts toward zero. INT_MIN for whatever does not fit, infinities and NaN included.
constexpr int toInt(double value) {
    return value > -2147483649.0 && value < 2147483648.0 ? static_cast<int>(value) : INT_MIN;
}

/// The nearest whole number, halves away from zero.
constexpr int rounded(double value) { return toInt(value >= 0.0 ? value + 0.5 : value - 0.5); }

/// False where the processor's signed division faults.
constexpr bool divisible(int a, int b) { return b != 0 && (a != INT_MIN || b != -1); }

/// A position along one axis: the tile that holds it, and where in that tile.
struct Place {
    int tile;
    int rest;
};

/// Floor division: the rest is never negative for a positive size. A negative size, which is one of 2^31 and more, is
/// divided by as it is.
constexpr Place placeOf(int position, int size) {
    const int counted = position < 0 ? -1 - position : position;
    const int quotient = counted / size;
    const int remainder = counted % size;
    if (position >= 0) return {quotient, remainder};
    return {-1 - quotient, (Wrapping(size) - remainder - 1).value()};
}

}  // namespace omnar
