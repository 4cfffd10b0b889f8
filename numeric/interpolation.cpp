// SPDX-License-Identifier: MIT

// Interpolation in tables, and round values for the marks of an axis.

#include <cmath>
#include <cstddef>
#include <limits>

#include "buffers/host/contract.h"
#include "numeric/integers.h"
#include "numeric/interpolation.h"

using namespace omnar;

namespace {

/// Values below `below` are rounded to steps of a decimal unit. Steps from 10 on are told by their reciprocal as a
/// binary fraction, which decides how the results are rounded.
struct Band {
    double below;
    double stepsPerUnit;
};

constexpr Band bands[] = {
    {0.001, 10000.0}, {0.01, 1000.0}, {0.1, 100.0},     {1.0, 10.0},        {10.0, 1.0},
    {100.0, 0.1},     {1000.0, 0.01}, {10000.0, 0.001}, {100000.0, 0.0001}, {1000000.0, 0.00001},
};
constexpr double stepsPerUnitAbove = 0.000001;

double stepsPerUnit(double value) {
    for (const Band& band : bands) {
        if (value < band.below) return band.stepsPerUnit;
    }
    return stepsPerUnitAbove;
}

/// The value cut to whole steps of its band, and moved by so many more.
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
    const std::size_t i = search.segment(xs, count, x);
    if (i + 1 >= count) return ys[search.nearest(xs, count, x)];
    const double dx = xs[i + 1] - xs[i];
    if (std::fabs(dx) < std::numeric_limits<double>::epsilon()) return ys[i];
    const double slope = (ys[i + 1] - ys[i]) / dx;
    return ys[i] - xs[i] * slope + slope * x;
}

float GetInterpolatedOverlayFactor(int value, const double* percents, int count) {
    OMNAR_EXPECT_NOT_NULL(percents);
    OMNAR_EXPECT_AS(count, count >= 1 || value <= 0, "1 or more, unless value is 0 or less");
    const auto factorAt = [percents](int entry) { return static_cast<float>(percents[entry]) / 100.0F; };
    if (value <= 0) return factorAt(0);
    const int last = count - 1;
    if (value >= Wrapping(last) * 100) return factorAt(last);

    const auto top = static_cast<unsigned short>(last);
    const float place = static_cast<float>(value) / (static_cast<float>(last) * 100.0F) * static_cast<float>(top);
    const float lower = std::floor(place);
    const float below = factorAt(static_cast<int>(lower));
    const float above = factorAt(static_cast<int>(std::ceil(place)));
    return (above - below) * (place - lower) + below;
}

double GetNiceGreaterValue(double value) { return movedBySteps(value, 1); }

double GetNiceSmallerValue(double value) { return movedBySteps(value, -1); }
