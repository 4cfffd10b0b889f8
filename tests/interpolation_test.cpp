// Interpolation in tables, and the round values of an axis.
#include <cstdint>

#include "tests/support/calls.h"

namespace {

using support::Input;

constexpr std::uint64_t seed = 11;

TEST(GetLinearInterpoliertenWert, FollowsTheFirstPairThatHoldsX) {
    const double xs[] = {0, 10, 20, 20, 5}, ys[] = {0, 100, 0, 7, 70};
    const auto at = [&](double x, unsigned count = 3) { return GetLinearInterpoliertenWert(xs, ys, count, x); };
    EXPECT_EQ(at(20, 5), 0) << "not the 7 at the same place";
    EXPECT_EQ(GetLinearInterpoliertenWert(xs + 2, ys + 2, 3, 20), 0) << "two of one x: the first";
    EXPECT_EQ(GetLinearInterpoliertenWert(xs + 1, ys + 1, 1, 3), 100) << "one point";
    EXPECT_EQ(GetLinearInterpoliertenWert(xs + 1, ys + 1, 2, HUGE_VAL), 100) << "none is nearer than the first";
    EXPECT_EQ(GetLinearInterpoliertenWert(xs + 1, ys + 1, 2, NAN), 100);

    Input random(seed);
    for (int i = 0; i < 20000; ++i) {
        std::vector<double> x(1 + random.below(6)), y;
        for (double& each : x) each = random.between(-20, 20);
        for (std::size_t k = 0; k < x.size(); ++k) y.push_back(random.eighth());
        const double where = random.between(-50, 50) / 2.0;
        double expected = NAN, nearest = HUGE_VAL;
        for (std::size_t k = 0; k < x.size(); ++k) {
            if (std::abs(x[k] - where) >= nearest) continue;
            nearest = std::abs(x[k] - where);
            expected = y[k];
        }
        for (std::size_t k = x.size() - 1; k-- > 0;) {
            if ((x[k] - where) * (x[k + 1] - where) > 0) continue;
            const double slope = (y[k + 1] - y[k]) / (x[k + 1] - x[k]);
            expected = x[k] == x[k + 1] ? y[k] : y[k] - x[k] * slope + slope * where;
        }
        ASSERT_EQ(GetLinearInterpoliertenWert(x.data(), y.data(), unsigned(x.size()), where), expected)
            << "seed " << seed << ", table " << i;
    }
}

TEST(GetInterpolatedOverlayFactor, StepsToTheEntriesOnBothSides) {
    const double three[] = {0, 50, 100};
    EXPECT_EQ(GetInterpolatedOverlayFactor(-1, three, INT_MIN), 0.0F) << "the count is not read";
    EXPECT_EQ(GetInterpolatedOverlayFactor(7, three, INT_MAX % 3), 0.0F) << "one entry is the last one";
    const float wrapped = 3.0F / (42949673.0F * 100.0F) * 23593.0F;
    EXPECT_EQ(GetInterpolatedOverlayFactor(3, three, 42949674), 0.5F * wrapped)
        << "both counts of entries have wrapped";

    Input random(seed);
    for (int i = 0; i < 20000; ++i) {
        std::vector<double> percents(1 + random.below(12));
        for (double& percent : percents) percent = random.eighth() / 3;
        const int last = int(percents.size()) - 1;
        const int value = random.between(-20, last * 100 + 20);
        const auto factor = [&](int entry) { return float(percents[std::size_t(entry)]) / 100.0F; };
        const float place = float(value) / (float(last) * 100.0F) * float(last);
        int lower = last, upper = 0;
        while (float(lower) > place) --lower;
        while (place > float(upper)) ++upper;
        float expected = value <= 0 ? factor(0) : factor(last);
        if (value > 0 && value < last * 100) {
            expected = (factor(upper) - factor(lower)) * (place - float(lower)) + factor(lower);
        }
        ASSERT_EQ(GetInterpolatedOverlayFactor(value, percents.data(), int(percents.size())), expected)
            << "seed " << seed << ": " << value << " of " << last;
    }
}

TEST(NiceValues, AreOneStepBeyondTheCutValue) {
    EXPECT_EQ(GetNiceGreaterValue(4), 5);
    EXPECT_EQ(GetNiceGreaterValue(10), 20) << "10 is the first of its band";
    EXPECT_EQ(GetNiceSmallerValue(0.34), 0.2);
    EXPECT_EQ(GetNiceSmallerValue(37), 20);
    EXPECT_EQ(GetNiceGreaterValue(0), 0.0001);
    EXPECT_EQ(GetNiceSmallerValue(-5), -5.0001) << "below 0 it is the finest step";
    EXPECT_EQ(GetNiceGreaterValue(NAN), -2147483647 / 1e-6);
    EXPECT_EQ(GetNiceSmallerValue(NAN), 2147483647 / 1e-6) << "-2147483648 - 1 wraps around";

    Input random(seed);
    for (const double step : {1e-4, 1e-3, 1e-2, 0.1, 1.0, 10.0, 1e2, 1e3, 1e4, 1e5, 1e6}) {
        for (int i = 0; i < 2000; ++i) {
            const int whole = random.between(1, step < 1e6 ? 9 : 2000000);
            const double value = (whole + random.between(1, 999) / 1000.0) * step;
            ASSERT_NEAR(GetNiceGreaterValue(value), (whole + 1) * step, step * 1e-6) << value << ", seed " << seed;
            ASSERT_NEAR(GetNiceSmallerValue(value), (whole - 1) * step, step * 1e-6) << value << ", seed " << seed;
        }
    }
}

double sumLinear(int x, double a, double b, double c, double d) {
    const double xs[] = {0, a, b, c}, ys[] = {c, d, a, b};
    return GetLinearInterpoliertenWert(xs, ys, 4, x / 8.0);
}
double sumOverlay(int value, double a, double b) {
    const double percents[] = {a, 10, b, 100, 1};
    return GetInterpolatedOverlayFactor(value, percents, 5);
}

TEST(Interpolation, HasTheCommittedChecksums) {
    using support::expectChecksum;
    expectChecksum("GetLinearInterpoliertenWert", sumLinear, 12887672941298403255U);
    expectChecksum("GetInterpolatedOverlayFactor", sumOverlay, 12661178368322224412U);
    expectChecksum("GetNiceGreaterValue", GetNiceGreaterValue, 15643705574300817628U);
    expectChecksum("GetNiceSmallerValue", GetNiceSmallerValue, 14254215274716445890U);
}

#if defined(OMNAR_CHECKED)
TEST(Interpolation, ReportsBrokenPreconditions) {
    static const double xs[] = {1, 2};
    support::expectReports({
        {"GetLinearInterpoliertenWert", "count", "0", [] { GetLinearInterpoliertenWert(xs, xs, 0, 1); }},
        {"GetInterpolatedOverlayFactor", "percents", "null", [] { GetInterpolatedOverlayFactor(1, nullptr, 2); }},
        {"GetInterpolatedOverlayFactor", "count", "0", [] { GetInterpolatedOverlayFactor(1, xs, 0); }},
    });
}
#endif

}  // namespace
