// SPDX-License-Identifier: MIT
/// @file
/// Which tile a fractional position lies in, as a walk from tile to tile finds it, without walking.
#pragma once

#include <cmath>

namespace omnar {

/// A fractional position along one axis: the tile that holds it, and where in that tile.
struct FractionalPlace {
    double tile;
    double rest;
};

/// From here on a double holds no odd numbers any more, so that the steps of a walk are rounded.
constexpr double roundedSteps = 0x1p53;

/// Walks a distance of at least roundedSteps down below it; true unless a step is lost in the rounding, which would
/// make the walk endless. Two steps in a row that are rounded alike are followed by others like them for as long as the
/// distance keeps its power of two (a tie goes to even, and only the first of them starts from odd). These are taken in
/// one leap, which stops two steps short, before the power changes.
inline bool walkFromAfar(double& distance, double size, double& steps) {
    while (distance >= roundedSteps) {
        const double next = distance - size;
        const double step = distance - next;
        if (!(step > 0.0)) return false;
        double alike = 1.0;
        if (next - (next - size) == step) {
            const double power = std::ldexp(1.0, std::ilogb(distance));
            alike = std::fmax(alike, std::floor((distance - power) / step) - 2.0);
        }
        distance -= alike * step;
        steps += alike;
    }
    return true;
}

/// A walk of exact steps ends in the tile floor(position / size): multiples of the size below 2^53 are doubles
/// themselves, and the quotient of a double below such a multiple is never rounded up to a whole number. The rest is
/// that of this quotient, whatever tile a rounded walk finds. With a size of 0 it is NaN.
inline FractionalPlace walkedPlaceOf(double position, double size) {
    const double quotient = std::floor(position / size);
    const double rest = position - quotient * size;
    double distance = std::fabs(position);
    double steps = 0.0;
    if (distance < roundedSteps || !walkFromAfar(distance, size, steps)) return {quotient, rest};
    return {std::copysign(steps, position) + std::floor(std::copysign(distance, position) / size), rest};
}

}  // namespace omnar
