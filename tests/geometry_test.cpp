// Plane geometry: known directions, the same formulas through this platform's own library, and what must hold between
// the functions. Results without trigonometry are compared to the bit.
#include <cfloat>
#include <cstdint>
#include <numbers>

#include "tests/support/calls.h"

namespace {

using support::Input;
using support::Point;

constexpr std::uint64_t seed = 10;
constexpr double pi = std::numbers::pi;
constexpr double tiny = 1e-300;

TEST(GetAngle, GoesRoundOnce) {
    EXPECT_EQ(GetAngle(0, 0, 0, -1), 270);
    EXPECT_EQ(GetAngle(5, 5, 5, 5), 90);
    EXPECT_EQ(GetAngle(0, 0, 1, -tiny), 360) << "rounded up to a whole turn";
    EXPECT_EQ(GetAngleRad(0, 0, -1, 0), pi / 2) << "horizontal";
    EXPECT_EQ(GetAngleRad(5, 5, 5, 5), pi / 2);
    EXPECT_EQ(GetAngleRad(0, 0, 0, -1), pi * 3 / 2);

    Input random(seed);
    for (int i = 0; i < 50000; ++i) {
        const Point from{random.eighth(), random.eighth()};
        const Point way{random.eighth(), random.eighth()};
        SCOPED_TRACE(testing::Message() << "seed " << seed << ": from " << from << " by " << way);
        const double degrees = GetAngle(from.x, from.y, from.x + way.x, from.y + way.y);
        const double radians = GetAngleRad(from.x, from.y, from.x + way.x, from.y + way.y);
        const int halfTurns = way.x < 0 ? 1 : way.y < 0 ? 2 : 0;
        ASSERT_EQ(degrees,
                  way.x == 0 ? GetAngle(0, 0, 0, way.y) : std::atan(way.y / way.x) * 180 / pi + 180 * halfTurns);
        if (way.y == 0) continue;
        ASSERT_EQ(radians, std::atan(way.y / way.x) + pi * halfTurns);
        ASSERT_NEAR(degrees, radians * 180 / pi, 1e-12);

        const double length = GetLength(from.x, from.y, from.x + way.x, from.y + way.y);
        ASSERT_EQ(length, std::sqrt(way.y * way.y + way.x * way.x));
        Point back{};
        GetPosition(length, degrees, &back.x, &back.y);
        ASSERT_EQ(back, (Point{std::cos(degrees * pi / 180) * length, std::sin(degrees * pi / 180) * length}));
        ASSERT_NEAR(back.x, way.x, 1e-12);
        ASSERT_NEAR(back.y, way.y, 1e-12);
    }
}

struct PlainPair final : ICoordPair {
    int SetCoords(double x, double y) override { return at = {x, y}, status; }
    int GetCoords(double*, double*) override { return -1; }
    void Release() override {}
    Point at{};
    int status = 0;
};

TEST(GetPosition, FillsThePairOrThrows) {
    PlainPair pair;
    Point expected{};
    GetPosition(2, 30, &pair);
    GetPosition(2, 30, &expected.x, &expected.y);
    EXPECT_EQ(pair.at, expected);
    pair.status = -9;
    try {
        GetPosition(2, 90, &pair);
        FAIL() << "a refused pair must throw";
    } catch (const COmnarException& error) {
        EXPECT_EQ(error.code(), -9);
    }
}

// The distance by the area of the parallelogram that the line and the way to the point span.
TEST(Distances, AreThoseOfTheEndlessLineButForSegmentsAlongAnAxis) {
    constexpr double none = FLT_MAX;
    EXPECT_EQ(GetNormalDistanceToLine(0, 10, 0, 0, 5, 0), none) << "an end is outside";
    EXPECT_EQ(GetNormalDistanceToLine(0, 10, 0, 0, 5, 10), none);
    EXPECT_EQ(GetNormalDistanceToLine(10, 3, 0, 3, 0, 7), none);
    EXPECT_EQ(GetNormalDistanceToLine(4, 4, 4, 4, 4, 4), none);
    EXPECT_EQ(GetNormalDistanceToLine(INT_MIN, -1, INT_MIN, 1, INT_MAX, 0), 4294967295.0);
    double direction = 7;
    EXPECT_EQ(GetIntersectionDistanceDb(0, -3, -1, 0, 1, 0.0005, &direction), 3);
    EXPECT_EQ(direction, pi / 2);
    EXPECT_EQ(GetIntersectionDistanceDb(-3, 0, 0, 1, 0.0005, -1, &direction), 3);
    EXPECT_EQ(direction, 0);
    EXPECT_NE(GetIntersectionDistanceDb(0, -3, -1, 0, 1, 0.001, &direction), 3) << "0.001 is not below 0.001";

    Input random(seed);
    for (int i = 0; i < 50000; ++i) {
        const int x1 = random.between(-99, 99), y1 = random.between(-99, 99), x2 = random.between(-99, 99);
        const int y2 = random.between(-99, 99), px = random.between(-99, 99), py = random.between(-99, 99);
        SCOPED_TRACE(testing::Message() << "seed " << seed << ": " << px << ", " << py << " from " << x1 << ", " << y1
                                        << " to " << x2 << ", " << y2);
        if (x1 == x2 && y1 == y2) continue;
        const double length = GetLength(x1, y1, x2, y2);
        const double side = (x2 - x1) * (py - y1) - (y2 - y1) * (px - x1);
        const double distance = GetIntersectionDistanceDb(px, py, x1, y1, x2, y2, &direction);
        ASSERT_NEAR(distance, std::fabs(side) / length, 1e-10);
        const bool oblique = x1 != x2 && y1 != y2;
        if (oblique && side != 0) {
            const double m = double(y2 - y1) / (x2 - x1), t = std::tan(std::atan(m) - pi / 2);
            const double footX = (m * x1 + (py - y1) - t * px) / (m - t), footY = (footX - px) * t + py;
            ASSERT_EQ(distance, GetLength(py, px, footY, footX));
            ASSERT_NEAR(distance * std::cos(direction), side * (y1 - y2) / length / length, 1e-9);
            ASSERT_NEAR(distance * std::sin(direction), side * (x2 - x1) / length / length, 1e-9);
            ASSERT_TRUE(direction >= 0 && direction <= 2 * pi);
        }
        const int along = x1 == x2 ? (py - y1) * (py - y2) : (px - x1) * (px - x2);
        ASSERT_NEAR(GetNormalDistanceToLine(x1, y1, x2, y2, px, py),
                    oblique || along < 0 ? std::fabs(side) / length : none, 1e-10);
    }
}

TEST(Angles, OfTheUserAreAQuarterTurnLessTheSystems) {
    EXPECT_EQ(GetSystemAngleFromUserAngle(725, eAngleUser), 85);
    EXPECT_EQ(GetSystemAngleFromUserAngle(725, eAngleSystem), 725);
    EXPECT_EQ(GetUserAngleFromSystemAngle(-725, eAngleSystem), -725);
    EXPECT_EQ(GetSystemAngleFromUserAngle(90, _EAngleMode{7}), 0);
    EXPECT_EQ(GetUserAngleFromSystemAngle(450, eAngleUser), 0);
    EXPECT_EQ(GetSystemAngleFromUserAngle(-tiny, eAngleUser), 90) << "folded to 360 first";
    EXPECT_EQ(GetSystemAngleFromUserAngle(90.1, eAngleUser), 360.0 - 90.1 - 270.0 + 360.0);
    EXPECT_EQ(GetUserAngleFromSystemAngle(90.1, eAngleUser), 360.0 - 90.1 + 90.0);
    Input random(seed);
    for (int i = 0; i < 50000; ++i) {
        const double angle = random.eighth();  // no step is rounded
        const double expected = 90 - angle - 360 * std::floor((90 - angle) / 360);
        ASSERT_EQ(GetSystemAngleFromUserAngle(angle, eAngleUser), expected) << angle << ", seed " << seed;
        ASSERT_EQ(GetUserAngleFromSystemAngle(angle, eAngleUser), expected) << angle << ", seed " << seed;
    }
}

TEST(Flexo, AngleAndSizeUndoEachOther) {
    EXPECT_EQ(GetFlexoSizeFromAngle(10, 0.5, 0), HUGE_VAL);
    Input random(seed);
    for (int i = 0; i < 50000; ++i) {
        const double length = random.between(1, 999), factor = random.between(1, 31) / 32.0,
                     size = random.between(1, 999);
        const double angle = GetFlexoAngleFromSize(length, factor, size);
        ASSERT_EQ(angle, std::atan2(length * (1 - factor), size) * 180 / pi);
        ASSERT_EQ(GetFlexoSizeFromAngle(length, factor, angle), (1 - factor) * length / std::tan(angle / 180 * pi));
        ASSERT_NEAR(GetFlexoSizeFromAngle(length, factor, angle), size, 1e-9 * size);
    }
}

void sumPosition(int length, unsigned char turns, double* x, double* y) { GetPosition(length, turns * 75, x, y); }
double sumPair(int length, unsigned char turns) {
    PlainPair pair;
    GetPosition(length, turns * 75, &pair);
    return pair.at.x + pair.at.y;
}
double sumDistance(unsigned char px, unsigned char py, unsigned char x, double* direction) {
    return GetIntersectionDistanceDb(px, py, 5, x, 9 + x, 7, direction);
}
double sumSize(double length, unsigned char angle) { return GetFlexoSizeFromAngle(length, 0.75, angle + 30); }
double sumSystem(double angle, bool system) { return GetSystemAngleFromUserAngle(angle / 7, _EAngleMode{system}); }
double sumUser(double angle, bool system) { return GetUserAngleFromSystemAngle(angle / 7, _EAngleMode{system}); }

TEST(Geometry, HasTheCommittedChecksums) {
    using support::expectChecksum;
    expectChecksum("GetAngle", GetAngle, 3955130799749645852U, true);
    expectChecksum("GetAngleRad", GetAngleRad, 6300830954247242109U, true);
    expectChecksum("GetLength", GetLength, 14791518924591954818U);
    expectChecksum("GetPosition", sumPosition, 3980994875488008723U, true);
    expectChecksum("GetPosition, pair", sumPair, 14534399260773826055U, true);
    expectChecksum("GetNormalDistanceToLine", GetNormalDistanceToLine, 15754305897566127091U);
    expectChecksum("GetIntersectionDistanceDb", sumDistance, 6114135771968411623U, true);
    expectChecksum("GetSystemAngleFromUserAngle", sumSystem, 14505500824361062580U);
    expectChecksum("GetUserAngleFromSystemAngle", sumUser, 14505500824361062580U);
    expectChecksum("GetFlexoAngleFromSize", GetFlexoAngleFromSize, 12132122928552731624U, true);
    expectChecksum("GetFlexoSizeFromAngle", sumSize, 288478244907320879U, true);
}

#if defined(OMNAR_CHECKED)
TEST(Geometry, ReportsBrokenPreconditions) {
    static double out;
    support::expectReports({
        {"GetPosition", "y", "null", [] { GetPosition(1, 2, &out, nullptr); }},
        {"GetPosition", "pair", "null", [] { GetPosition(1, 2, nullptr); }},
        {"GetIntersectionDistanceDb", "direction", "null",
         [] { GetIntersectionDistanceDb(1, 2, 3, 4, 5, 6, nullptr); }},
    });
}
#endif

}  // namespace
