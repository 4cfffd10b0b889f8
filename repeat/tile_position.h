// SPDX-License-Identifier: MIT
/// @file
/// The tile that holds a position along one axis.
#pragma once

#include <cmath>

#include "numeric/integers.h"

namespace omnar {

struct TilePosition {
    int tile;
    int offset;  ///< in the tile
};

/// Floor division by the size of a tile: the offset is never negative for a positive size. A size of 2^31 or more is
/// passed as the negative number with the same bits, and divided by as such.
constexpr TilePosition tilePosition(int position, int size) {
    const int distance = position < 0 ? -1 - position : position;
    const int quotient = distance / size;
    const int remainder = distance % size;
    if (position >= 0) return {quotient, remainder};
    return {-1 - quotient, (Wrapping(size) - remainder - 1).value()};
}

struct FractionalTilePosition {
    double tile;
    double offset;  ///< in the tile
};

/// Doubles of this size and more are even, so a step of an odd size is rounded.
constexpr double inexactSteps = 0x1p53;

/// Steps `distance` down by `size` until it is below inexactSteps, and counts the steps. Returns false if a step is
/// lost in rounding, so that stepping would not end. Two steps in a row that are rounded to the same length are
/// followed by steps of this length while the distance keeps its exponent: a tie goes to even, and only the first of
/// them can start from odd. These steps are taken at once, except for the last two before the exponent changes.
inline bool stepToExactRange(double& distance, double size, double& steps) {
    while (distance >= inexactSteps) {
        const double next = distance - size;
        const double step = distance - next;
        if (!(step > 0.0)) return false;
        double equalSteps = 1.0;
        if (next - (next - size) == step) {
            const double power = std::ldexp(1.0, std::ilogb(distance));
            equalSteps = std::fmax(equalSteps, std::floor((distance - power) / step) - 2.0);
        }
        distance -= equalSteps * step;
        steps += equalSteps;
    }
    return true;
}

/// The tile that stepping from the position to the origin finds, one tile and one rounding a step. Exact steps end in
/// the tile floor(position / size): multiples of the size below 2^53 are doubles, and the quotient of a double below
/// such a multiple is never rounded up to a whole number. The offset is always that of this quotient. It is NaN for a
/// size of 0.
inline FractionalTilePosition steppedTilePosition(double position, double size) {
    const double quotient = std::floor(position / size);
    const double offset = position - quotient * size;
    double distance = std::fabs(position);
    double steps = 0.0;
    if (distance < inexactSteps || !stepToExactRange(distance, size, steps)) return {quotient, offset};
    return {std::copysign(steps, position) + std::floor(std::copysign(distance, position) / size), offset};
}

}  // namespace omnar
