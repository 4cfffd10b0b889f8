// SPDX-License-Identifier: MIT
/// @file
/// Points and vectors of the plane.
#pragma once

#include <cmath>

namespace example {

/// A position in pixels, or the vector between two positions.
struct Point {
    double x;
    double y;
};

inline Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
inline Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
inline Point operator*(double s, Point a) { return {s * a.x, s * a.y}; }
inline double dot(Point a, Point b) { return a.x * b.x + a.y * b.y; }
inline double length(Point a) { return std::sqrt(dot(a, a)); }

/// The unit vector at an angle in radians from the positive x axis.
inline Point direction(double angle) { return {std::cos(angle), std::sin(angle)}; }

}  // namespace example
