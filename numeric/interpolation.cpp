// SPDX-License-Identifier: MIT

// Linear interpolation in tables, and round values for the marks of an axis.

#include <cmath>
#include <cstddef>
#include <limits>

#include "buffers/host/contract.h"
#include "numeric/integers.h"
#include "numeric/table_search.h"

using namespace omnar;

namespace {

/// The reciprocal of the step of values below `limit`. For steps of 10 and more it is not exact as a double, and
/// results depend on its rounding.
struct Band {
    double limit;
    double stepsPerUnit;
};

constexpr Band bands[] = {
    {0.001, 10000.0}, {0.01, 1000.0}, {0.1, 100.0},     {1.0, 10.0},        {10.0, 1.0},
    {100.0, 0.1},     {1000.0, 0.01}, {10000.0, 0.001}, {100000.0, 0.0001}, {1000000.0, 0.00001},
};
constexpr double stepsPerUnitOfLargeValues = 0.000001;

double stepsPerUnit(double value) {
    for (const Band& band : bands) {
        if (value < band.limit) return band.stepsPerUnit;
    }
    return stepsPerUnitOfLargeValues;
}

/// The value truncated to whole steps of its band, plus `steps`.
double movedBySteps(double value, int steps) {
    const double perUnit = stepsPerUnit(value);
    return (Wrapping(toInt(value * perUnit)) + steps).value() / perUnit;
}

}  // namespace

double GetLinearInterpoliertenWert(const double* xs, const double* ys, unsigned int count, double x) {
    OMNAR_EXPECT_NOT_NULL(xs, ys);
    OMNAR_EXPECT_AS(count, count != 0, "not 0");
    for (std::size_t i = 0; i < count; ++i) OMNAR_EXPECT_ELEMENT(xs, i, !std::isnan(xs[i]), "not NaN");
    const TableSearch& search = tableSearch.current();
    const std::size_t i = search.findSegment(xs, count, x);
    if (i + 1 >= count) return ys[search.findNearest(xs, count, x)];
    const double dx = xs[i + 1] - xs[i];
    if (std::fabs(dx) < std::numeric_limits<double>::epsilon()) return ys[i];
    const double slope = (ys[i + 1] - ys[i]) / dx;
    return ys[i] - xs[i] * slope + slope * x;
}

float GetInterpolatedOverlayFactor(int value, const double* percents, int count) {
    OMNAR_EXPECT_NOT_NULL(percents);
    OMNAR_EXPECT_AS(count, count >= 1 || value <= 0, "1 or more, unless value is 0 or less");
    const auto factor = [percents](int entry) { return static_cast<float>(percents[entry]) / 100.0F; };
    if (value <= 0) return factor(0);
    const int last = count - 1;
    if (value >= Wrapping(last) * 100) return factor(last);

    const auto last16 = static_cast<unsigned short>(last);  // modulo 65536, as documented
    const float position = static_cast<float>(value) / (static_cast<float>(last) * 100.0F) * static_cast<float>(last16);
    const float lower = std::floor(position);
    const float lowerFactor = factor(static_cast<int>(lower));
    const float upperFactor = factor(static_cast<int>(std::ceil(position)));
    return (upperFactor - lowerFactor) * (position - lower) + lowerFactor;
}

double GetNiceGreaterValue(double value) { return movedBySteps(value, 1); }

double GetNiceSmallerValue(double value) { return movedBySteps(value, -1); }
