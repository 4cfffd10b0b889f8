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
            const double power = std::exp2(std::ilogb(distance));
            alike = std::fmax(alike, std::floor((distance - power) / step) - 2.0);
        }
        distance -= alike * step;
        steps += alike;
    }
    return true;
}

/// floor(position / size) of the quotient that was not rounded.
inline double exactFloor(double position, double size) {
    const double quotient = std::floor(position / size);
    return quotient * size > position ? quotient - 1.0 : quotient;  // it had been rounded up to a whole number
}

/// Exact steps end in the tile exactFloor(). The rest is that of the rounded quotient all the same, so just before a
/// boundary it may be slightly negative. A size of 0 has the tile 0 and the rest NaN.
inline FractionalPlace walkedPlaceOf(double position, double size) {
    const double quotient = std::floor(position / size);
    const double rest = position - quotient * size;
    if (size == 0.0) return {0.0, rest};

    double distance = std::fabs(position);
    if (distance < roundedSteps) return {exactFloor(position, size), rest};
    double steps = 0.0;
    if (!walkFromAfar(distance, size, steps)) return {quotient, rest};
    return {std::copysign(steps, position) + exactFloor(std::copysign(distance, position), size), rest};
}

}  // namespace omnar
