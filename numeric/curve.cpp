// SPDX-License-Identifier: MIT

// Monotone cubic Hermite interpolation of the control points of a curve.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "buffers/host/contract.h"
#include "numeric/integers.h"

using namespace omnar;

namespace {

struct Knot {
    int x, y;
    double tangent;
};

double slope(const Knot& left, const Knot& right) { return static_cast<double>(right.y - left.y) / (right.x - left.x); }

/// A tangent is the mean of the slopes on both sides. The first and the last knot have a slope on one side only.
void setTangents(std::vector<Knot>& knots) {
    const std::size_t last = knots.size() - 1;
    knots[0].tangent = slope(knots[0], knots[1]);
    for (std::size_t k = 1; k < last; ++k) {
        knots[k].tangent = slope(knots[k - 1], knots[k]) / 2.0 + slope(knots[k], knots[k + 1]) / 2.0;
    }
    knots[last].tangent = slope(knots[last - 1], knots[last]);
}

/// The limit of Fritsch and Carlson: an interval is monotone if its tangents, divided by its slope, are not negative
/// and lie within a circle of radius 3. Signs are not tested: next to a turn the curve overshoots.
void limitTangents(Knot& left, Knot& right) {
    if (left.y == right.y || left.x == right.x) {
        left.tangent = right.tangent = 0.0;
        return;
    }
    const double secant = slope(left, right);
    const double a = left.tangent / secant;
    const double b = right.tangent / secant;
    const double squaredRadius = a * a + b * b;
    if (squaredRadius > 9.0) {
        const double scale = 3.0 / std::sqrt(squaredRadius);
        left.tangent = scale * a * secant;
        right.tangent = scale * b * secant;
    }
}

std::vector<Knot> makeKnots(const unsigned short* points, std::size_t count) {
    std::vector<Knot> knots;
    knots.reserve(count);
    for (std::size_t k = 0; k < count; ++k) knots.push_back({points[2 * k], points[2 * k + 1], 0.0});
    setTangents(knots);
    // The order matters: an interval starts with the right tangent that the previous one has limited.
    for (std::size_t k = 0; k + 1 < count; ++k) limitTangents(knots[k], knots[k + 1]);
    return knots;
}

/// The cubic Hermite polynomial between two knots.
double hermite(const Knot& left, const Knot& right, int x) {
    const double h = right.x - left.x;
    const double t = (x - left.x) / h;
    const double t2 = t * t;
    const double t3 = t2 * t;
    return h * left.tangent * (t3 - 2.0 * t2 + t) + left.y * (2.0 * t3 - 3.0 * t2 + 1.0) +
           right.y * (3.0 * t2 - 2.0 * t3) + h * right.tangent * (t3 - t2);
}

}  // namespace

void CurveInterpolation(int valueCount, const unsigned short* points, int endX, int maxValue, unsigned short* table) {
    OMNAR_EXPECT_AS(valueCount, valueCount >= 4, "4 or more");
    OMNAR_EXPECT_NOT_NULL(points);
    for (int i = 2; i + 1 < valueCount; i += 2) {
        OMNAR_EXPECT_ELEMENT(points, i, points[i] > points[i - 2], "greater than the x of the point before it");
    }
    OMNAR_EXPECT_NOT_NULL_IF(endX > points[0], ", unless endX <= points[0]", table);

    const std::vector<Knot> knots = makeKnots(points, static_cast<std::size_t>(valueCount / 2));
    const Knot& last = knots.back();
    const auto append = [&table](int x, int y) {
        *table++ = static_cast<unsigned short>(x);
        *table++ = static_cast<unsigned short>(y);
    };
    int x = knots[0].x;
    std::size_t k = 1;
    for (const int end = std::min(last.x, endX); x < end; ++x) {
        while (knots[k].x < x) ++k;
        append(x, std::min(std::max(rounded(hermite(knots[k - 1], knots[k], x)), 0), maxValue));
    }
    for (; x < endX; ++x) append(x, last.y);  // not limited to maxValue
}
