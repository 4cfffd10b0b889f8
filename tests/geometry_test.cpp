// SPDX-License-Identifier: MIT

// Plane geometry: the definitions through the math library of the platform, bit for bit, and relations between the
// functions.
#include <cfloat>
#include <cstdint>
#include <numbers>

#include "tests/support/calls.h"

namespace {

using support::Input;
using support::Point;

constexpr std::uint64_t seed = 10;
constexpr double pi = std::numbers::pi;

struct Pair final : ICoordPair {
    int SetCoords(double x, double y) override { return coords = {x, y}, status; }
    int GetCoords(double*, double*) override { return -1; }
    void Release() override {}
    Point coords{};
    int status = 0;
};

/// An arc tangent of dy / dx in its quadrant.
double inQuadrant(double angle, double dx, double dy, double halfTurn) {
    return angle + (dx < 0 ? halfTurn : 0) + (dx >= 0 && dy < 0 ? 2 * halfTurn : 0);
}

/// Degrees of up to one turn in either direction, from any number.
double degrees(int any) { return any % 999 * 0.37; }

void polarModel(double length, int any, double* x, double* y) {
    *x = std::cos(degrees(any) * pi / 180) * length;
    *y = std::sin(degrees(any) * pi / 180) * length;
}
void position(double length, int any, double* x, double* y) { GetPosition(length, degrees(any), x, y); }
void positionAsPair(double length, int any, double* x, double* y) {
    Pair pair;
    GetPosition(length, degrees(any), &pair);
    *x = pair.coords.x, *y = pair.coords.y;
}

double normalDistanceModel(int x1, int y1, int x2, int y2, int px, int py) {
    const auto isBetween = [](int a, int p, int b) { return (a < p && p < b) || (b < p && p < a); };
    if (x1 == x2) return isBetween(y1, py, y2) ? std::abs(double(px) - x1) : double{FLT_MAX};
    if (y1 == y2) return isBetween(x1, px, x2) ? std::abs(double(py) - y1) : double{FLT_MAX};
    const double w = double(x2) - x1, h = double(y2) - y1, m = h / w, n = -w / h;
    const double xf = ((y1 - x1 * m) - (py - px * n)) / (n - m), yf = xf * m + (y1 - x1 * m);
    return std::sqrt((yf - py) * (yf - py) + (xf - px) * (xf - px));
}

/// Lines of every slope, some of them nearly axis-parallel, from numbers of 0 to 2.
template <auto distance>
double distanceToRandomLine(unsigned char px, unsigned char py, unsigned char w, unsigned char h, bool nearly,
                            double* direction) {
    return distance(px * 7.0, py - 9.0, 5, 1, nearly ? 5.0009 : 5 + w, nearly ? 1.0001 + 0.00095 * py : 1.0 - h,
                    direction);
}
double intersectionDistanceModel(double px, double py, double x1, double y1, double x2, double y2, double* direction) {
    const double m = (y2 - y1) / (x2 - x1), t = std::tan(std::atan(m) - pi / 2);
    const double xf = (m * x1 + (py - y1) - t * px) / (m - t), yf = (xf - px) * t + py;
    const bool isHorizontal = std::abs(y2 - y1) < 0.001, isVertical = !isHorizontal && std::abs(x2 - x1) < 0.001;
    *direction = isHorizontal ? pi / 2 : isVertical ? 0 : std::atan2(py - yf, px - xf);
    if (*direction < 0) *direction += 2 * pi;
    if (isHorizontal || isVertical) return isHorizontal ? std::abs(py - y1) : std::abs(px - x1);
    return std::sqrt((px - xf) * (px - xf) + (py - yf) * (py - yf));
}

double folded(double angle) { return angle - std::floor(angle / 360) * 360; }
double userToSystem(double angle, _EAngleMode mode) {
    return mode == eAngleSystem ? angle : folded(360 - folded(angle) - 270);
}
double systemToUser(double angle, _EAngleMode mode) {
    return mode == eAngleSystem ? angle : folded(360 - folded(angle) + 90);
}
template <auto convert>
double convertRandomAngle(double angle, unsigned char mode) {
    return convert(angle / 7, _EAngleMode{mode});
}

template <auto size>
double sizeFromRandomAngle(double length, double factor, int any) {
    return size(length, factor, degrees(any));
}
double flexoSizeModel(double length, double factor, double angle) {
    return (1 - factor) * length / std::tan(angle / 180.0 * pi);
}

TEST(Geometry, EqualsItsDefinitions) {
    using support::Bits;
    using support::expectChecksum;
    expectChecksum(
        "GetAngle", GetAngle, 3955130799749645852U,
        [](double x1, double y1, double x2, double y2) {
            if (x2 - x1 == 0) return y2 - y1 < 0 ? 270.0 : 90.0;
            return inQuadrant(std::atan((y2 - y1) / (x2 - x1)) * 180 / pi, x2 - x1, y2 - y1, 180);
        },
        Bits::platform);
    expectChecksum(
        "GetAngleRad", GetAngleRad, 6300830954247242109U,
        [](double x1, double y1, double x2, double y2) {
            return y2 - y1 == 0 ? pi / 2 : inQuadrant(std::atan((y2 - y1) / (x2 - x1)), x2 - x1, y2 - y1, pi);
        },
        Bits::platform);
    expectChecksum("GetLength", GetLength, 14791518924591954818U, [](double x1, double y1, double x2, double y2) {
        return std::sqrt((y2 - y1) * (y2 - y1) + (x2 - x1) * (x2 - x1));
    });
    expectChecksum("GetPosition", position, 13465260493572237162U, polarModel, Bits::platform);
    expectChecksum("GetPosition, pair", positionAsPair, 13465260493572237162U, polarModel, Bits::platform);
    expectChecksum("GetNormalDistanceToLine", GetNormalDistanceToLine, 15754305897566127091U, normalDistanceModel);
    expectChecksum("GetIntersectionDistanceDb", distanceToRandomLine<GetIntersectionDistanceDb>, 12685111281515200137U,
                   distanceToRandomLine<intersectionDistanceModel>, Bits::platform);
    expectChecksum("GetSystemAngleFromUserAngle", convertRandomAngle<GetSystemAngleFromUserAngle>, 2659563100932196855U,
                   convertRandomAngle<userToSystem>);
    expectChecksum("GetUserAngleFromSystemAngle", convertRandomAngle<GetUserAngleFromSystemAngle>, 2659563100932196855U,
                   convertRandomAngle<systemToUser>);
    expectChecksum(
        "GetFlexoAngleFromSize", GetFlexoAngleFromSize, 12132122928552731624U,
        [](double length, double factor, double size) { return std::atan2(length * (1 - factor), size) * 180 / pi; },
        Bits::platform);
    expectChecksum("GetFlexoSizeFromAngle", sizeFromRandomAngle<GetFlexoSizeFromAngle>, 7066204654170757004U,
                   sizeFromRandomAngle<flexoSizeModel>, Bits::platform);
}

TEST(Geometry, KnownAnswers) {
    EXPECT_EQ(GetAngle(0, 0, 1, -1e-300), 360) << "rounded up to a whole turn";
    EXPECT_EQ(GetAngleRad(0, 0, -1, 0), pi / 2) << "a horizontal direction counts as vertical";
    EXPECT_EQ(GetAngleRad(0, 0, 0, -1), pi * 3 / 2);
    EXPECT_EQ(GetNormalDistanceToLine(0, 10, 0, 0, 5, 0), FLT_MAX) << "an end of the segment does not count";
    EXPECT_EQ(GetNormalDistanceToLine(10, 3, 0, 3, 10, 7), FLT_MAX);
    EXPECT_EQ(GetNormalDistanceToLine(INT_MIN, -1, INT_MIN, 1, INT_MAX, 0), 4294967295.0);
    EXPECT_EQ(GetSystemAngleFromUserAngle(725, eAngleUser), 85);
    EXPECT_EQ(GetSystemAngleFromUserAngle(90, _EAngleMode{7}), 0);
    EXPECT_EQ(GetUserAngleFromSystemAngle(450, eAngleUser), 0);
    EXPECT_EQ(GetFlexoSizeFromAngle(10, 0.5, 0), HUGE_VAL);
    Pair pair;
    pair.status = -9;
    try {
        GetPosition(2, 90, &pair);
        FAIL() << "a pair that fails must throw";
    } catch (const COmnarException& error) {
        EXPECT_EQ(error.code(), -9);
    }
}

// Directions and lengths are inverse to positions, sizes to angles. Distances follow from the area of a parallelogram.
TEST(Geometry, IsConsistent) {
    Input random(seed);
    for (int i = 0; i < 20000; ++i) {
        const int x1 = random.between(-99, 99), y1 = random.between(-99, 99);
        const int w = random.between(1, 99), h = random.between(-99, -1);
        const int px = random.between(-99, 99), py = random.between(-99, 99);
        SCOPED_TRACE(testing::Message() << "seed " << seed << ", line " << i);
        const double length = GetLength(x1, y1, x1 + w, y1 + h), angle = GetAngle(x1, y1, x1 + w, y1 + h);
        ASSERT_NEAR(angle, GetAngleRad(x1, y1, x1 + w, y1 + h) * 180 / pi, 1e-12);
        Point end{};
        GetPosition(length, angle, &end.x, &end.y);
        ASSERT_NEAR(end.x, w, 1e-12);
        ASSERT_NEAR(end.y, h, 1e-12);

        double direction = 7;
        const double area = w * (py - y1) - h * (px - x1), distance = std::fabs(area) / length;
        ASSERT_NEAR(GetNormalDistanceToLine(x1, y1, x1 + w, y1 + h, px, py), distance, 1e-10);
        ASSERT_NEAR(GetIntersectionDistanceDb(px, py, x1, y1, x1 + w, y1 + h, &direction), distance, 1e-10);
        ASSERT_NEAR(distance * std::cos(direction), -area * h / length / length, 1e-9);
        ASSERT_NEAR(distance * std::sin(direction), area * w / length / length, 1e-9);
        ASSERT_NEAR(GetFlexoSizeFromAngle(w, 0.75, GetFlexoAngleFromSize(w, 0.75, -h)), -h, 1e-9);
    }
}

}  // namespace
