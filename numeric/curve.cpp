// SPDX-License-Identifier: MIT

// Monotone cubic interpolation of a curve's control points.

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

double slope(const Knot& from, const Knot& to) { return static_cast<double>(to.y - from.y) / (to.x - from.x); }

/// A tangent is the mean of the slopes on its two sides, at either end of the curve the slope on its one side.
void setTangents(std::vector<Knot>& knots) {
    const std::size_t last = knots.size() - 1;
    knots[0].tangent = slope(knots[0], knots[1]);
    for (std::size_t k = 1; k < last; ++k) {
        knots[k].tangent = slope(knots[k - 1], knots[k]) / 2.0 + slope(knots[k], knots[k + 1]) / 2.0;
    }
    knots[last].tangent = slope(knots[last - 1], knots[last]);
}

/// The rule of Fritsch and Carlson: an interval stays monotone if its tangents, as multiples of its slope, lie within a
/// circle of radius 3. Only the circle is tested, not the signs: where the points turn, the curve overshoots.
void limitTangents(Knot& from, Knot& to) {
    if (from.y == to.y || from.x == to.x) {
        from.tangent = to.tangent = 0.0;
        return;
    }
    const double steepness = slope(from, to);
    const double a = from.tangent / steepness;
    const double b = to.tangent / steepness;
    const double square = a * a + b * b;
    if (square > 9.0) {
        const double scale = 3.0 / std::sqrt(square);
        from.tangent = scale * a * steepness;
        to.tangent = scale * b * steepness;
    }
}

std::vector<Knot> knotsOf(const unsigned short* points, std::size_t count) {
    std::vector<Knot> knots;
    knots.reserve(count);
    for (std::size_t k = 0; k < count; ++k) knots.push_back({points[2 * k], points[2 * k + 1], 0.0});
    setTangents(knots);
    // In this order: the tangent that one interval leaves behind is the one that the next begins with.
    for (std::size_t k = 0; k + 1 < count; ++k) limitTangents(knots[k], knots[k + 1]);
    return knots;
}

/// The Hermite polynomial between two knots.
double valueBetween(const Knot& from, const Knot& to, int x) {
    const double h = to.x - from.x;
    const double t = (x - from.x) / h;
    const double t2 = t * t;
    const double t3 = t2 * t;
    return h * from.tangent * (t3 - 2.0 * t2 + t) + from.y * (2.0 * t3 - 3.0 * t2 + 1.0) +
           to.y * (3.0 * t2 - 2.0 * t3) + h * to.tangent * (t3 - t2);
}

}  // namespace

void CurveInterpolation(int valueCount, const unsigned short* points, int endX, int maxValue, unsigned short* table) {
    OMNAR_EXPECT_AS(valueCount, valueCount >= 4, "4 or more");
    OMNAR_EXPECT_NOT_NULL(points);
    for (int i = 2; i + 1 < valueCount; i += 2) {
        OMNAR_EXPECT_ELEMENT(points, i, points[i] > points[i - 2], "greater than the x of the point before it");
    }
    OMNAR_EXPECT_NOT_NULL_IF(endX > points[0], ", unless endX <= points[0]", table);

    const std::vector<Knot> knots = knotsOf(points, static_cast<std::size_t>(valueCount / 2));
    const Knot& last = knots.back();
    const auto put = [&table](int x, int y) {
        *table++ = static_cast<unsigned short>(x);
        *table++ = static_cast<unsigned short>(y);
    };
    int x = knots[0].x;
    std::size_t k = 1;
    for (const int end = std::min(last.x, endX); x < end; ++x) {
        while (knots[k].x < x) ++k;
        put(x, std::min(std::max(rounded(valueBetween(knots[k - 1], knots[k], x)), 0), maxValue));
    }
    for (; x < endX; ++x) put(x, last.y);  // as it is, whatever maxValue
}
