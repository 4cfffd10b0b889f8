// SPDX-License-Identifier: MIT

// Gradation curves: against a plain spline, and monotone curves through monotone points.
#include <cstdint>

#include "tests/support/calls.h"
#include "tests/support/fenced.h"
#include "tests/support/fenced_new.h"

namespace {

using support::Input;
using Points = std::vector<unsigned short>;

constexpr std::uint64_t seed = 12;

/// The table of a call whose points, table and heap memory each end at a fence.
Points tableOf(const Points& points, int endX, int maxValue) {
    static const support::Fenced memory(70000 * 4), pointMemory(4096);
    const std::size_t count = 2 * std::size_t(std::max(endX - points[0], 0));
    auto* const table = reinterpret_cast<unsigned short*>(memory.bytes().data() + memory.bytes().size()) - count;
    const auto fenced = pointMemory.values<unsigned short>(points.size() / 2 * 2, true);
    std::copy_n(points.begin(), fenced.size(), fenced.begin());
    {
        const support::FencedNew fencedNew;
        CurveInterpolation(int(points.size()), fenced.data(), endX, maxValue, table);
    }
    return {table, table + count};
}

/// The definition, entry by entry.
Points tableModel(const Points& points, int endX, int maxValue) {
    const std::size_t n = points.size() / 2;
    std::vector<double> xs, ys, m(n);
    for (std::size_t k = 0; k < n; ++k) xs.push_back(points[2 * k]), ys.push_back(points[2 * k + 1]);
    for (std::size_t k = 0; k < n; ++k) {
        const double left = k == 0 ? 0 : (ys[k] - ys[k - 1]) / (2 * (xs[k] - xs[k - 1]));
        const double right = k == n - 1 ? 0 : (ys[k + 1] - ys[k]) / (2 * (xs[k + 1] - xs[k]));
        m[k] = k == 0 || k == n - 1 ? 2 * (left + right) : left + right;
    }
    for (std::size_t k = 0; k + 1 < n; ++k) {
        const double d = (ys[k + 1] - ys[k]) / (xs[k + 1] - xs[k]);
        const double a = m[k] / d, b = m[k + 1] / d;
        const double s = 3 / std::sqrt(a * a + b * b);
        if (d == 0) m[k] = m[k + 1] = 0;
        if (d != 0 && a * a + b * b > 9) m[k] = s * a * d, m[k + 1] = s * b * d;
    }
    Points table;
    for (int x = points[0]; x < endX; ++x) {
        int y = points[2 * n - 1];
        if (x < xs[n - 1]) {
            std::size_t j = 1;
            while (!(xs[j] >= x && xs[j - 1] <= x)) ++j;
            const double h = xs[j] - xs[j - 1], t = (x - xs[j - 1]) / h;
            const double tt = t * t, ttt = tt * t;
            const double v = h * m[j - 1] * (ttt - 2 * tt + t) + ys[j - 1] * (2 * ttt - 3 * tt + 1) +
                             ys[j] * (3 * tt - 2 * ttt) + h * m[j] * (ttt - tt);
            y = std::min(std::max(int(v < 0 ? v - 0.5 : v + 0.5), 0), maxValue);
        }
        table.push_back(static_cast<unsigned short>(x)), table.push_back(static_cast<unsigned short>(y));
    }
    return table;
}

/// 2 to 8 points of ascending x, and of ascending or any y.
Points randomPoints(Input& random, bool isMonotone) {
    Points points;
    const int range = random.oneIn(3) ? 20000 : 40;
    int x = random.between(0, 99), y = random.between(0, 300);
    for (unsigned n = 2 + random.below(7); n > 0; --n) {
        points.insert(points.end(), {static_cast<unsigned short>(x), static_cast<unsigned short>(y)});
        x = std::min(x + random.between(1, range / 3), 65535 - int(n));
        y = isMonotone ? std::min(y + random.between(0, range), 65535) : random.between(0, range);
    }
    return points;
}

template <auto table>
void tableOfRandomCurve(unsigned curveSeed, unsigned short* six) {
    Input random(curveSeed);
    Points points = randomPoints(random, random.coin());
    const int endX = std::min(points[0] + random.between(-9, 400), 65536);
    const int maxValue = random.coin() ? 65535 : random.between(-3, 300);
    if (random.coin()) points.push_back(7);  // half a point is not read
    support::fold(table(points, endX, maxValue), six);
}

TEST(CurveInterpolation, EqualsItsDefinition) {
    support::expectChecksum("CurveInterpolation", tableOfRandomCurve<tableOf>, 11333213733981561904U,
                            tableOfRandomCurve<tableModel>);
}

// The theorem of Fritsch and Carlson: monotone points make a monotone curve, which stays in the range of its points.
TEST(CurveInterpolation, KeepsMonotonePointsMonotone) {
    Input random(seed);
    for (int i = 0; i < 1000; ++i) {
        const Points points = randomPoints(random, true);
        const Points table = tableOf(points, points[points.size() - 2] + 1, 65535);
        for (std::size_t k = 3; k < table.size(); k += 2) ASSERT_GE(table[k], table[k - 2]) << "curve " << i;
        for (std::size_t k = 0; k < points.size(); k += 2) {
            ASSERT_EQ(table[2 * std::size_t(points[k] - points[0]) + 1], points[k + 1])
                << "the curve passes through its control points";
        }
    }
}

TEST(CurveInterpolation, KnownCurves) {
    const Points identity = tableOf({0, 0, 255, 255}, 256, 255);
    for (unsigned i = 0; i < 512; ++i) EXPECT_EQ(identity[i], i / 2);
    const Points flat = tableOf({0, 9, 50, 9, 80, 200, 90, 200}, 100, 255);
    for (unsigned x = 0; x <= 50; ++x) EXPECT_EQ(flat[2 * x + 1], 9) << "no overshoot beside a flat interval";
    EXPECT_EQ(flat[2 * 65 + 1], 105) << "104.5, rounded";
    EXPECT_EQ(tableOf({0, 0, 40, 250}, 50, 120)[2 * 39 + 1], 120) << "limited to maxValue";
    EXPECT_EQ(tableOf({0, 0, 40, 250}, 50, 120)[2 * 40 + 1], 250) << "not limited after the last point";
    Points onItsPoints{3, 9, 5, 70, 8, 20, 0, 0, 0, 0, 0, 0};
    CurveInterpolation(6, onItsPoints.data(), 9, 255, onItsPoints.data());
    EXPECT_EQ(onItsPoints, tableOf({3, 9, 5, 70, 8, 20}, 9, 255));
    const Points beyond = tableOf({65530, 10, 65535, 20}, 65538, 99);
    EXPECT_EQ(beyond[2 * 7], 1) << "the low 16 bits of 65537";
    EXPECT_EQ(beyond[2 * 7 + 1], 20);
}

}  // namespace
