// SPDX-License-Identifier: MIT

// Interpolation in tables, and the round values of an axis.
#include <cfloat>
#include <cstdint>
#include <vector>

#include "buffers/level.h"
#include "tests/support/calls.h"
#include "tests/support/fenced.h"
#include "tests/support/random.h"

namespace {

double linearModel(const double* xs, const double* ys, unsigned count, double x) {
    unsigned nearest = 0;
    for (unsigned i = 0; i < count; ++i) {
        if (std::abs(xs[i] - x) < std::abs(xs[nearest] - x)) nearest = i;
    }
    double y = ys[nearest];
    for (unsigned i = count - 1; i-- > 0;) {
        if ((xs[i] - x) * (xs[i + 1] - x) > 0) continue;
        const double slope = (ys[i + 1] - ys[i]) / (xs[i + 1] - xs[i]);
        y = xs[i] == xs[i + 1] ? ys[i] : ys[i] - xs[i] * slope + slope * x;
    }
    return y;
}
template <auto linear>
double inSmallTable(int x, int a, int b, int c, int d, unsigned count) {
    const double xs[] = {a % 20 / 1.0, b % 20 / 1.0, c % 20 / 1.0, d % 20 / 1.0},
                 ys[] = {c / 8.0, d / 8.0, a / 8.0, b / 8.0};
    return linear(xs, ys, 1 + count % 4, x % 50 / 2.0);
}

/// Finds the two entries by stepping.
float overlayModel(int value, const double* percents, int count) {
    const int last = count - 1;
    const auto factor = [percents](int entry) { return float(percents[entry]) / 100.0F; };
    if (value <= 0 || value >= last * 100) return factor(value <= 0 ? 0 : last);
    const float position = float(value) / (float(last) * 100.0F) * float(last);
    int lower = last, upper = 0;
    while (float(lower) > position) --lower;
    while (position > float(upper)) ++upper;
    return (factor(upper) - factor(lower)) * (position - float(lower)) + factor(lower);
}
template <auto overlay>
double inOverlayTable(int value, int a, int b, unsigned count) {
    const double percents[] = {a % 300 / 3.0, b % 300 / 7.0, a % 77 / 9.0, b % 99 / 1.0, 100};
    return overlay(value % 600, percents, 1 + int(count % 5));
}

/// Counts n steps of the opposite sign: the greater value is 1 - n steps, the smaller one ~n.
double niceModel(double value, bool greater) {
    constexpr double limits[] = {0.001, 0.01, 0.1, 1, 10, 100, 1000, 10000, 100000, 1000000, HUGE_VAL};
    constexpr double reciprocal[] = {10000, 1000, 100, 10, 1, 0.1, 0.01, 0.001, 0.0001, 1e-05, 1e-06};
    std::size_t band = 0;
    while (band < 10 && !(value < limits[band])) ++band;
    const double steps = std::trunc(value * -reciprocal[band]);
    const int n = steps >= -2147483648.0 && steps < 2147483648.0 ? int(steps) : INT_MIN;
    return (greater ? int(1U - unsigned(n)) : ~n) / reciprocal[band];
}
double scaled(double value, unsigned char power) { return power == 0 ? value : power == 1 ? value / 1e5 : value * 1e4; }

TEST(Interpolation, EqualsItsDefinitions) {
    using support::expectChecksum;
    expectChecksum("GetLinearInterpoliertenWert", inSmallTable<GetLinearInterpoliertenWert>, 16348273235021468639U,
                   inSmallTable<linearModel>);
    expectChecksum("GetInterpolatedOverlayFactor", inOverlayTable<GetInterpolatedOverlayFactor>, 8037631062728038954U,
                   inOverlayTable<overlayModel>);
    expectChecksum(
        "GetNiceGreaterValue", +[](double v, unsigned char power) { return GetNiceGreaterValue(scaled(v, power)); },
        6103459072131220368U, [](double v, unsigned char power) { return niceModel(scaled(v, power), true); });
    expectChecksum(
        "GetNiceSmallerValue", +[](double v, unsigned char power) { return GetNiceSmallerValue(scaled(v, power)); },
        10295442944787270158U, [](double v, unsigned char power) { return niceModel(scaled(v, power), false); });
}

// Tables of up to 300 entries that end at a fence, at every vector level, with equal entries: the first one counts.
TEST(Interpolation, SearchesLongTables) {
    const omnar::Level before = omnar::currentLevel();
    constexpr unsigned maxCount = 300;
    support::Fenced memory(maxCount * sizeof(double));
    for (const omnar::Level level : omnar::allLevels) {
        if (!omnar::useLevel(level)) continue;
        for (std::uint64_t seed = 1; seed <= 3000; ++seed) {
            support::Random random(seed);
            const unsigned count = 1 + random.below(maxCount), range = 1 + random.below(1000);
            double* const xs = reinterpret_cast<double*>(memory.bytes().data() + memory.bytes().size()) - count;
            std::vector<double> ys(count);
            double entry = 0;
            for (unsigned i = 0; i < count; ++i) {
                xs[i] = entry += random.oneIn(5) ? 0 : 1 + random.below(2);
                if (random.oneIn(8 * count)) entry = random.below(range);
                if (random.oneIn(8 * count)) xs[i] = random.oneIn(2) ? HUGE_VAL : -HUGE_VAL;
                ys[i] = i;
            }
            double x = random.oneIn(2) ? xs[random.below(count)] + 0.25 * random.below(3) : entry + random.below(range);
            if (random.oneIn(20)) x = random.oneIn(2) ? HUGE_VAL : NAN;
            unsigned segment = 0;
            const auto holds = [&](unsigned i) {
                return (xs[i] <= x && x <= xs[i + 1]) || (xs[i] >= x && x >= xs[i + 1]);
            };
            while (segment + 1 < count && !holds(segment)) ++segment;
            unsigned nearest = 0;
            double least = DBL_MAX;
            for (unsigned i = 0; i < count; ++i) {
                if (std::abs(x - xs[i]) < least) least = std::abs(x - xs[nearest = i]);
            }
            double expected = nearest;
            if (segment + 1 < count) {
                const double dx = xs[segment + 1] - xs[segment], slope = 1 / dx;
                expected = dx == 0 ? segment : segment - xs[segment] * slope + slope * x;
            }
            const double found = GetLinearInterpoliertenWert(xs, ys.data(), count, x);
            ASSERT_TRUE(found == expected || (std::isnan(found) && std::isnan(expected)))
                << name(level) << " seed " << seed << ": " << found << ", not " << expected;
        }
    }
    omnar::useLevel(before);
}

TEST(Interpolation, KnownAnswers) {
    const double xs[] = {0, 10, 20, 20, 5}, ys[] = {0, 100, 0, 7, 70};
    EXPECT_EQ(GetLinearInterpoliertenWert(xs, ys, 3, 5), 50);
    EXPECT_EQ(GetLinearInterpoliertenWert(xs, ys, 5, 20), 0) << "not the 7 at the same x";
    EXPECT_EQ(GetLinearInterpoliertenWert(xs + 2, ys + 2, 3, 20), 0) << "the first of two equal xs";
    EXPECT_EQ(GetLinearInterpoliertenWert(xs + 1, ys + 1, 2, HUGE_VAL), 100) << "none is nearer than the first";
    EXPECT_EQ(GetLinearInterpoliertenWert(xs + 1, ys + 1, 2, NAN), 100);

    EXPECT_EQ(GetInterpolatedOverlayFactor(150, ys, 3), 0.5F);
    EXPECT_EQ(GetInterpolatedOverlayFactor(0, ys, INT_MIN), 0.0F) << "the count is not read";
    const float wrapped = 3.0F / (42949673.0F * 100.0F) * 23593.0F;
    EXPECT_EQ(GetInterpolatedOverlayFactor(3, ys, 42949674), wrapped)
        << "(count - 1) * 100 and the last factor have wrapped";

    EXPECT_EQ(GetNiceGreaterValue(4), 5);
    EXPECT_EQ(GetNiceGreaterValue(10), 20) << "10 belongs to the band above";
    EXPECT_EQ(GetNiceSmallerValue(0.34), 0.2);
    EXPECT_EQ(GetNiceSmallerValue(37), 20);
    EXPECT_EQ(GetNiceSmallerValue(-5), -5.0001) << "the finest step below 0";
    EXPECT_EQ(GetNiceSmallerValue(NAN), 2147483647 / 1e-6) << "-2147483648 - 1 wraps around";
}

}  // namespace
