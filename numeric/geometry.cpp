// SPDX-License-Identifier: MIT

// Directions, lengths and distances in the plane. Every product, quotient and sum stands in the order that the header
// tells, so that the roundings are the same everywhere.

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <numbers>

#include "buffers/host/contract.h"
#include "buffers/host/module.h"

using namespace omnar;

namespace {

constexpr double pi = std::numbers::pi;

/// What the arc tangent of dy / dx needs to become a direction from 0 to a whole turn.
double quadrantOffset(double dx, double dy, double halfTurn) {
    return dx < 0.0 ? halfTurn : dy < 0.0 ? 2.0 * halfTurn : 0.0;
}

/// Folds an angle in degrees into [0, 360).
double folded(double degrees) { return degrees - std::floor(degrees / 360.0) * 360.0; }

struct Point {
    double x, y;
};

Point position(double length, double degrees) {
    const double angle = degrees * pi / 180.0;
    return {std::cos(angle) * length, std::sin(angle) * length};
}

double distance(double dx, double dy) { return std::sqrt(dx * dx + dy * dy); }

/// The distance `off` from an axis-parallel segment, for a point strictly between its ends.
double besideSegment(int end1, int end2, int at, double off) {
    return std::min(end1, end2) < at && at < std::max(end1, end2) ? std::fabs(off) : static_cast<double>(FLT_MAX);
}

}  // namespace

double GetAngle(double x1, double y1, double x2, double y2) {
    const double dx = x2 - x1, dy = y2 - y1;
    if (dx == 0.0) return dy < 0.0 ? 270.0 : 90.0;
    return std::atan(dy / dx) * 180.0 / pi + quadrantOffset(dx, dy, 180.0);
}

double GetAngleRad(double x1, double y1, double x2, double y2) {
    const double dx = x2 - x1, dy = y2 - y1;
    if (dy == 0.0) return pi / 2.0;  // not dx as in GetAngle(): hosts rely on either
    return std::atan(dy / dx) + quadrantOffset(dx, dy, pi);
}

double GetLength(double x1, double y1, double x2, double y2) { return distance(y2 - y1, x2 - x1); }

void GetPosition(double length, double angleDegrees, double* x, double* y) {
    OMNAR_EXPECT_NOT_NULL(x, y);
    const Point point = position(length, angleDegrees);
    *x = point.x;
    *y = point.y;
}

void GetPosition(double length, double angleDegrees, ICoordPair* pair) {
    OMNAR_EXPECT_NOT_NULL(pair);
    const Point point = position(length, angleDegrees);
    throwIfFailed(pair->SetCoords(point.x, point.y));
}

double GetNormalDistanceToLine(int x1, int y1, int x2, int y2, int px, int py) {
    const double dx = static_cast<double>(x2) - x1, dy = static_cast<double>(y2) - y1;
    if (dx == 0.0) return besideSegment(y1, y2, py, static_cast<double>(px) - x1);
    if (dy == 0.0) return besideSegment(x1, x2, px, static_cast<double>(py) - y1);

    const double slope = dy / dx;
    const double normalSlope = -dx / dy;
    const double lineAt0 = y1 - x1 * slope;
    const double normalAt0 = py - px * normalSlope;
    const double footX = (lineAt0 - normalAt0) / (normalSlope - slope);
    const double footY = footX * slope + lineAt0;
    return distance(footX - px, footY - py);
}

double GetIntersectionDistanceDb(double px, double py, double x1, double y1, double x2, double y2, double* direction) {
    OMNAR_EXPECT_NOT_NULL(direction);
    constexpr double tolerance = 0.001;
    const double dx = x2 - x1, dy = y2 - y1;
    if (std::fabs(dy) < tolerance) {
        *direction = pi / 2.0;
        return std::fabs(py - y1);
    }
    if (std::fabs(dx) < tolerance) {
        *direction = 0.0;
        return std::fabs(px - x1);
    }
    const double slope = dy / dx;
    const double normalSlope = std::tan(std::atan(slope) - pi / 2.0);
    const double footX = (slope * x1 + (py - y1) - normalSlope * px) / (slope - normalSlope);
    const double footY = (footX - px) * normalSlope + py;
    const double angle = std::atan2(py - footY, px - footX);
    *direction = angle < 0.0 ? angle + 2.0 * pi : angle;
    return distance(px - footX, py - footY);
}

double GetSystemAngleFromUserAngle(double angle, _EAngleMode mode) {
    return mode == eAngleSystem ? angle : folded(360.0 - folded(angle) - 270.0);
}

double GetUserAngleFromSystemAngle(double angle, _EAngleMode mode) {
    return mode == eAngleSystem ? angle : folded(360.0 - folded(angle) + 90.0);
}

double GetFlexoAngleFromSize(double length, double factor, double size) {
    return std::atan2(length * (1.0 - factor), size) * 180.0 / pi;
}

double GetFlexoSizeFromAngle(double length, double factor, double angleDegrees) {
    return (1.0 - factor) * length / std::tan(angleDegrees / 180.0 * pi);
}
