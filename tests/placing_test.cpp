// SPDX-License-Identifier: MIT

// Placing positions into the repeat: against models in 64 bits, and against stepping from tile to tile.
#include <cstdint>
#include <cstdlib>

#include "tests/support/calls.h"

namespace {

using support::Input;
using support::Point;

constexpr std::uint64_t seed = 4;
constexpr _EDropKind noLayout{3};

Point placed(int x, int y, unsigned w, unsigned h, unsigned drop, _EDropKind kind) {
    SetInRapp(x, y, w, h, drop, kind, &x, &y);
    return {double(x), double(y)};
}

Point placedDb(int x, int y, double drop, double scaleX, double scaleY, _EDropKind kind, unsigned w = 10,
               unsigned h = 20) {
    SetInRappDb(x, y, w, h, drop, scaleX, scaleY, kind, &x, &y);
    return {double(x), double(y)};
}

Point placedMM(double x, double y, double w, double h, double drop, _EDropKind kind) {
    SetInRappMM(x, y, w, h, drop, kind, &x, &y);
    return {x, y};
}

std::int64_t floorMod(std::int64_t a, std::int64_t b) { return (a % b + b) % b; }
std::int64_t wrapUnsigned(std::int64_t a) { return static_cast<std::uint32_t>(a); }
std::int64_t wrap(std::int64_t a) { return static_cast<std::int32_t>(a); }

Point halfDrop(std::int64_t x, std::int64_t y, std::int64_t w, std::int64_t h, std::int64_t drop) {
    const std::int64_t tiles = (x - floorMod(x, w)) / w;
    return {double(floorMod(x, w)), double(floorMod(wrap(y - wrap(tiles * wrap(drop))), h))};
}

Point brick(std::int64_t x, std::int64_t y, std::int64_t w, std::int64_t h, std::int64_t drop) {
    const std::int64_t rowsDown = x < 0 ? wrapUnsigned(wrapUnsigned(-y) / h + 1) : 0;
    x = wrap(x + rowsDown * wrap(drop)), y = wrap(y + rowsDown * h);
    const std::int64_t rowsUp = x > 0 ? wrapUnsigned(y) / h : 0;
    x = wrap(x - rowsUp * wrap(drop)), y = wrap(y - rowsUp * h);
    if (x < 0) x = w - -x % w;
    return {double(x), double(y > 0 ? wrap(y - (x - x % w)) : y)};
}

TEST(SetInRapp, EqualsItsModel) {
    EXPECT_EQ(placed(25, 3, 10, 20, 5, eDropVertical), (Point{5, 13}));
    EXPECT_EQ(placed(3, 45, 10, 20, 5, eDropHorizontal), (Point{3, 5}));
    EXPECT_EQ(placed(25, 3, 10, 20, 5, eDropHorizontal), (Point{25, -17}));
    EXPECT_EQ(placed(-25, 43, 10, 20, 5, noLayout), (Point{-25, 43}));
    EXPECT_EQ(placed(0, 0, 0, 0, 5, eDropVertical), (Point{0, 0})) << "nothing is divided by the sizes";
    EXPECT_EQ(placed(-1, -5, 10, 0, 5, eDropVertical), (Point{9, 0}))
        << "y becomes 0, which is not divided by the height";

    Input random(seed);
    for (int i = 0; i < 50000; ++i) {
        const int x = random.position(), y = random.position();
        const unsigned w = random.size(), h = random.size(), drop = random.anySize();
        const Point once = placed(x, y, w, h, drop, eDropVertical);
        SCOPED_TRACE(testing::Message() << "seed " << seed << ": " << x << ", " << y << " in " << w << " x " << h);
        ASSERT_EQ(once, halfDrop(x, y, w, h, drop)) << drop;
        ASSERT_EQ(placed(int(once.x), int(once.y), w, h, drop, eDropVertical), once) << "placed again";
        ASSERT_EQ(placed(x, y, w, h, drop, eDropHorizontal), brick(x, y, w, h, drop)) << drop;
    }
}

// Whole numbers. In brick layout y has the sign of x: otherwise counts of tiles are near 2^32 or, as doubles, negative.
TEST(SetInRapp, AgreesWithSetInRappDbAndSetInRappMM) {
    Input random(seed);
    for (int i = 0; i < 50000; ++i) {
        const _EDropKind kind = random.layout();
        const int x = random.between(-500, 500), anyY = random.between(-500, 500);
        const int y = kind == eDropVertical ? anyY : x < 0 ? -std::abs(anyY) : std::abs(anyY);
        const unsigned w = 1 + random.below(60), h = 1 + random.below(60), drop = random.below(100);
        const Point expected = placed(x, y, w, h, drop, kind);
        ASSERT_EQ(placedDb(x, y, drop / 2.0, 2.0, 2.0, kind, w, h), expected) << x << ", " << y << ", seed " << seed;
        ASSERT_EQ(placedMM(x, y, w, h, drop, kind), expected) << x << ", " << y << ", seed " << seed;
    }
}

TEST(SetInRapp, KnownFractions) {
    EXPECT_EQ(placedDb(25, 3, 2.5, 7.0, 1.0, eDropVertical), (Point{5, 18})) << "half-drop takes scaleY";
    EXPECT_EQ(placedDb(3, 45, 1.0, 1.75, 9.0, eDropHorizontal), (Point{0, 5})) << "brick takes scaleX";
    EXPECT_EQ(placedDb(-10, 0, 2.5, 1.0, 1.0, eDropVertical), (Point{0, 3})) << "moved by two tiles, and back by one";
    EXPECT_EQ(placedDb(-1, 1, 0.5, 1.0, 1.0, eDropHorizontal, 10, 2), (Point{1073741823, -1073741819}))
        << "2^31 tiles are counted unsigned";
    EXPECT_EQ(placedDb(25, 3, HUGE_VAL, 1.0, 1.0, eDropVertical), (Point{5, 15})) << "y becomes 3 - 2^31";
    EXPECT_EQ(placedMM(-0.25, 1.5, 2.5, 4.0, 0.75, eDropVertical), (Point{2.25, 2.25}));
    EXPECT_EQ(placedMM(5, -45, 10, 20, 5, eDropHorizontal), (Point{15, -5}));
    EXPECT_EQ(placedMM(-5, 45, 10, 20, 5, eDropHorizontal), (Point{10, 15}));
    EXPECT_EQ(placedMM(NAN, 45, 10, 20, 5, eDropHorizontal).y, 45 + 10 * 2147483648.0) << "the sign of y decides alone";
    EXPECT_EQ(placedMM(-1, 3, 0, 20, 1, eDropVertical), (Point{-1, 12})) << "2^31 + 1 tiles of no width, as doubles";
}

int tileByStepping(double position, int size, double tolerance) {
    const double overhang = tolerance < 1.0 ? tolerance : 1.0;  // of a tile beyond its left edge, exclusive
    int tile = position < 0 ? -1 : 0;
    while (position >= 0 && position >= (tile + 1) * size) ++tile;
    while (position < 0 && position <= tile * size - overhang) --tile;
    return tile;
}

TEST(GetRapport, FindsTheTileThatSteppingFinds) {
    EXPECT_EQ(GetRapport(-0.5, 1.0, 1.0), 0) << "truncated to pixel 0";
    EXPECT_EQ(GetRapport(NAN, 1.0, 0.0), INT_MIN);
    int index = 7;
    EXPECT_EQ(SetInRappAndCalcRapp(-1e-20, 10.0, 2.0, &index), 0) << "10 after rounding is the end of the tile";

    Input random(seed);
    for (int i = 0; i < 50000; ++i) {
        const double position = random.eighth(), tolerance = random.oneIn(9) ? NAN : random.below(20) / 8.0;
        const int wholeSize = random.between(2, 60);
        const double size = wholeSize + random.below(8) / 8.0;
        SCOPED_TRACE(testing::Message() << "seed " << seed << ": " << position << " in " << size << ", " << tolerance);
        const int tile = tileByStepping(position, wholeSize, tolerance);
        const double offset = position - tile * size;
        ASSERT_EQ(GetRapport(position, size, tolerance), tile);
        ASSERT_EQ(SetInRappAndCalcRapp(position, size, tolerance, &index), offset == size ? 0 : int(offset));
        ASSERT_EQ(index, tile);
    }
}

TEST(CalcNrOfHDropRepeats, FindsTheFirstColumnsThatLineUp) {
    EXPECT_EQ(CalcNrOfHDropRepeats(100, 0), 1);
    EXPECT_EQ(CalcNrOfHDropRepeats(100, 40), -1) << "lines up after two heights, which do not count";
    Input random(seed);
    for (int i = 0; i < 50000; ++i) {
        const unsigned height = random.coin() ? random.below(4000) : random.anySize();
        const unsigned drop = 1 + random.below(height + 3);
        int expected = -1;
        for (std::int64_t n = 20; n >= 2; --n) {
            const std::int64_t heights = drop <= height / 2 ? 1 : n - 1;
            if (std::abs(wrap(heights * height - n * drop)) <= n) expected = int(n);
        }
        ASSERT_EQ(CalcNrOfHDropRepeats(height, drop), expected) << drop << " of " << height << ", seed " << seed;
    }
}

// Calls that meet the preconditions for any input.

void tile(double p, unsigned size, double tolerance, int* out) { *out = GetRapport(p, size + 0.5, tolerance); }
void tileAndOffset(double p, unsigned size, double tolerance, int* index, int* out) {
    *out = SetInRappAndCalcRapp(p, size + 0.5, tolerance, index);
}
void columns(unsigned height, unsigned drop, int* out) { *out = CalcNrOfHDropRepeats(height, drop % height); }

TEST(Placing, HasTheCommittedChecksums) {
    using support::expectChecksum;
    expectChecksum("SetInRapp", SetInRapp, 10118259571009052927U);
    expectChecksum("SetInRappDb", SetInRappDb, 7282480156437969462U);
    expectChecksum("SetInRappMM", SetInRappMM, 10055580431212477925U);
    expectChecksum("GetRapport", tile, 3708310957858668532U);
    expectChecksum("SetInRappAndCalcRapp", tileAndOffset, 18211718999612904014U);
    expectChecksum("CalcNrOfHDropRepeats", columns, 12599701985770354817U);
}

}  // namespace
