// Placing positions into the repeat, against models in 64 bits and by walking from tile to tile.
#include <cstdint>
#include <ostream>

#include "tests/repeat_support.h"

namespace {

using support::Checksum;
using support::RepeatInput;

constexpr std::uint64_t seed = 4;
constexpr _EDropKind noLayout{3};

struct Point {
    double x, y;
    bool operator==(const Point&) const = default;
    friend std::ostream& operator<<(std::ostream& out, Point p) { return out << "(" << p.x << ", " << p.y << ")"; }
};

Point placed(int x, int y, unsigned w, unsigned h, unsigned drop, _EDropKind kind) {
    SetInRapp(x, y, w, h, drop, kind, &x, &y);
    return {double(x), double(y)};
}

Point placedDb(int x, int y, unsigned w, unsigned h, double drop, double scaleX, double scaleY, _EDropKind kind) {
    SetInRappDb(x, y, w, h, drop, scaleX, scaleY, kind, &x, &y);
    return {double(x), double(y)};
}

Point placedMM(double x, double y, double w, double h, double drop, _EDropKind kind) {
    SetInRappMM(x, y, w, h, drop, kind, &x, &y);
    return {x, y};
}

std::int64_t floorDiv(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }
std::int64_t floorMod(std::int64_t a, std::int64_t b) { return a - floorDiv(a, b) * b; }
std::int64_t low32(std::uint64_t a) { return static_cast<std::uint32_t>(a); }
std::int64_t wrap(std::int64_t a) { return static_cast<std::int32_t>(a); }

TEST(SetInRapp, KnownPositions) {
    EXPECT_EQ(placed(-10, 0, 10, 20, 5, eDropVertical), (Point{0, 5}));
    EXPECT_EQ(placed(25, 3, 10, 20, 5, eDropVertical), (Point{5, 13}));
    EXPECT_EQ(placed(3, 45, 10, 20, 5, eDropHorizontal), (Point{3, 5}));
    EXPECT_EQ(placed(0, 45, 10, 20, 5, eDropHorizontal), (Point{0, 45}));
    EXPECT_EQ(placed(25, 3, 10, 20, 5, eDropHorizontal), (Point{25, -17}));
    EXPECT_EQ(placed(5, -45, 10, 20, 5, eDropHorizontal), (Point{5, 11}));
    EXPECT_EQ(placed(-25, 43, 10, 20, 5, noLayout), (Point{-25, 43}));
    EXPECT_EQ(placed(0, 0, 0, 0, 5, eDropVertical), (Point{0, 0})) << "nothing is divided by the sizes";
    EXPECT_EQ(placed(-1, -5, 10, 0, 5, eDropVertical), (Point{9, 0})) << "nothing is left to divide by the height";
}

TEST(SetInRapp, HalfDropIsAFloorDivision) {
    SCOPED_TRACE(seed);
    RepeatInput random(seed);
    for (int i = 0; i < 100000; ++i) {
        const int x = random.position(), y = random.position();
        const unsigned w = random.size(), h = random.size(), drop = random.anySize();
        const std::int64_t tiles = floorDiv(x, w);
        const std::int64_t lifted = wrap(y - wrap(tiles * wrap(drop)));
        const Point expected{double(x - tiles * w), double(floorMod(lifted, h))};
        const Point once = placed(x, y, w, h, drop, eDropVertical);
        ASSERT_EQ(once, expected) << x << ", " << y << " in " << w << " x " << h << ", drop " << drop;
        ASSERT_EQ(placed(int(once.x), int(once.y), w, h, drop, eDropVertical), once);
    }
}

Point brick(std::int64_t x, std::int64_t y, std::uint32_t w, std::uint32_t h, std::uint32_t drop) {
    const std::int64_t rows = x < 0 ? low32(static_cast<std::uint64_t>(low32(0U - std::uint64_t(y)) / h + 1)) : 0;
    x = wrap(x + wrap(rows * drop));
    y = wrap(y + rows * h);
    if (x > 0) {
        const std::int64_t back = low32(static_cast<std::uint64_t>(y)) / h;
        y = wrap(y - back * h);
        x = wrap(x - wrap(back * drop));
    }
    if (x < 0) x = floorMod(x, w) == 0 ? w : floorMod(x, w);
    if (y > 0) y -= x - x % w;
    return {double(wrap(x)), double(wrap(y))};
}

TEST(SetInRapp, BrickAsksForTheSignOfX) {
    SCOPED_TRACE(seed);
    RepeatInput random(seed);
    for (int i = 0; i < 100000; ++i) {
        const int x = random.position(), y = random.position();
        const unsigned w = random.size(), h = random.anySize(), drop = 1 + random.below(10000);
        ASSERT_EQ(placed(x, y, w, h, drop, eDropHorizontal), brick(x, y, w, h, drop))
            << x << ", " << y << " in " << w << " x " << h << ", drop " << drop;
    }
}

TEST(SetInRappDb, KnownPositions) {
    EXPECT_EQ(placedDb(25, 3, 10, 20, 2.5, 7.0, 1.0, eDropVertical), (Point{5, 18})) << "half-drop takes scaleY";
    EXPECT_EQ(placedDb(25, 3, 10, 20, 1.0, 7.0, 2.5, eDropVertical), (Point{5, 18}));
    EXPECT_EQ(placedDb(3, 45, 10, 20, 1.0, 1.75, 9.0, eDropHorizontal), (Point{0, 5})) << "brick takes scaleX";
    EXPECT_EQ(placedDb(-10, 0, 10, 20, 2.5, 1.0, 1.0, eDropVertical), (Point{0, 3})) << "two tiles there, one back";
    EXPECT_EQ(placedDb(-1, 1, 10, 2, 0.5, 1.0, 1.0, eDropHorizontal), (Point{1073741823, -1073741819}))
        << "2^31 tiles are not a negative number of them";
    EXPECT_EQ(placedDb(25, 3, 10, 20, NAN, 1.0, 1.0, eDropVertical), (Point{5, 15})) << "y becomes 3 - 2^31";
    EXPECT_EQ(placedDb(-25, 43, 10, 20, 2.5, 1.0, 1.0, noLayout), (Point{-25, 43}));
}

// Whole numbers, all three agree; but for brick layout only where y has the sign of x, as counts of tiles otherwise
// are huge for whole numbers and negative for millimetres.
TEST(SetInRapp, AgreesWithTheOtherTwo) {
    SCOPED_TRACE(seed);
    RepeatInput random(seed);
    for (int i = 0; i < 100000; ++i) {
        const _EDropKind kind = random.layout();
        const int x = random.between(-500, 500);
        const int y = kind == eDropVertical ? random.between(-500, 500) : x < 0 ? -random.between(0, 500) : 250 + x;
        const unsigned w = 1 + random.below(60), h = 1 + random.below(60), drop = random.below(100);
        const Point expected = placed(x, y, w, h, drop, kind);
        ASSERT_EQ(placedDb(x, y, w, h, drop / 2.0, 2.0, 2.0, kind), expected) << x << ", " << y << ", kind " << kind;
        ASSERT_EQ(placedMM(x, y, w, h, drop, kind), expected) << x << ", " << y << ", kind " << kind;
    }
}

TEST(SetInRappMM, KnownPositions) {
    EXPECT_EQ(placedMM(-0.25, 1.5, 2.5, 4.0, 0.75, eDropVertical), (Point{2.25, 2.25}));
    EXPECT_EQ(placedMM(5, -45, 10, 20, 5, eDropHorizontal), (Point{15, -5}));
    EXPECT_EQ(placedMM(-5, 45, 10, 20, 5, eDropHorizontal), (Point{10, 15}));
    EXPECT_EQ(placedMM(NAN, 45, 10, 20, 5, eDropVertical).y, 5) << "only the tests of x fail";
    EXPECT_EQ(placedMM(NAN, 45, 10, 20, 5, eDropHorizontal).y, 45 + 10 * 2147483648.0) << "y is still tested";
    EXPECT_EQ(placedMM(-1, 3, 0, 20, 1, eDropVertical), (Point{-1, 12})) << "2^31 + 1 tiles of no width, as doubles";
    EXPECT_EQ(placedMM(-25, 43, 10, 20, 5, noLayout), (Point{-25, 43}));
}

int tileByWalking(double position, int size, double tolerance) {
    int tile = position < 0 ? -1 : 0;
    if (position >= 0) {
        while (position >= (tile + 1) * size) ++tile;
    } else if (tolerance < 1.0) {
        while (position <= tile * size - tolerance) --tile;
    } else {
        while (position <= tile * size - 1) --tile;
    }
    return tile;
}

TEST(GetRapport, FindsTheTileThatWalkingFinds) {
    EXPECT_EQ(GetRapport(-0.5, 1.0, 2.0), 0) << "cut to pixel 0";
    EXPECT_EQ(GetRapport(NAN, 1.0, 0.0), INT_MIN);
    int index = 7;
    EXPECT_EQ(SetInRappAndCalcRapp(-1e-20, 10.0, 2.0, &index), 0) << "10 after rounding is the end of the tile";
    EXPECT_EQ(index, -1);

    SCOPED_TRACE(seed);
    RepeatInput random(seed);
    for (int i = 0; i < 100000; ++i) {
        const double position = random.eighth(), tolerance = random.oneIn(9) ? NAN : random.below(20) / 8.0;
        const int whole = random.between(2, 60);
        const double size = whole + random.below(8) / 8.0;
        const int tile = tileByWalking(position, whole, tolerance);
        ASSERT_EQ(GetRapport(position, size, tolerance), tile) << position << " in " << size << ", " << tolerance;
        const double rest = position - tile * size;
        ASSERT_EQ(SetInRappAndCalcRapp(position, size, tolerance, &index), rest == size ? 0 : int(rest)) << position;
        ASSERT_EQ(index, tile);
    }
}

TEST(CalcNrOfHDropRepeats, FindsTheFirstColumnsThatLineUp) {
    EXPECT_EQ(CalcNrOfHDropRepeats(100, 0), 1);
    EXPECT_EQ(CalcNrOfHDropRepeats(100, 40), -1) << "two heights are not looked at";
    EXPECT_EQ(CalcNrOfHDropRepeats(300, 200), 3);
    SCOPED_TRACE(seed);
    RepeatInput random(seed);
    for (int i = 0; i < 100000; ++i) {
        const unsigned height = random.coin() ? random.below(4000) : random.anySize(),
                       drop = 1 + random.below(height + 3);
        int expected = -1;
        for (std::int64_t n = 20; n >= 2; --n) {
            const std::int64_t heights = drop <= height / 2 ? 1 : n - 1;
            const std::int64_t off = wrap(heights * height - n * drop);
            if ((off < 0 ? -off : off) <= n) expected = int(n);
        }
        ASSERT_EQ(CalcNrOfHDropRepeats(height, drop), expected) << drop << " of " << height;
    }
}

TEST(Placing, HasTheCommittedChecksums) {
    support::checkSums({
        {"SetInRapp",
         [](RepeatInput& random, Checksum& sum) {
             int x = random.position(), y = random.position();
             const unsigned w = random.anySize(), h = random.anySize(), drop = random.anySize();
             SetInRapp(x, y, w, h, drop, random.layout(), &x, &y);
             sum.add(x), sum.add(y);
         },
         2615767937752621527U},
        {"SetInRappDb",
         [](RepeatInput& random, Checksum& sum) {
             int x = random.position(), y = random.position();
             const unsigned w = random.anySize(), h = random.anySize();
             const double drop = random.fraction(), scaleX = random.fraction(), scaleY = random.fraction();
             SetInRappDb(x, y, w, h, drop, scaleX, scaleY, random.layout(), &x, &y);
             sum.add(x), sum.add(y);
         },
         16398997634361163660U},
        {"SetInRappMM",
         [](RepeatInput& random, Checksum& sum) {
             double x = random.fraction(), y = random.fraction();
             const double w = random.fraction(), h = random.fraction(), drop = random.fraction();
             SetInRappMM(x, y, w, h, drop, random.layout(), &x, &y);
             sum.add(x), sum.add(y);
         },
         3185968407995959260U},
        {"GetRapport",
         [](RepeatInput& random, Checksum& sum) {
             const double position = random.fraction(), size = random.size(), tolerance = random.fraction();
             sum.add(GetRapport(position, random.coin() ? size : -size - 1, tolerance));
         },
         561016814701977025U},
        {"SetInRappAndCalcRapp",
         [](RepeatInput& random, Checksum& sum) {
             const double position = random.fraction(), tolerance = random.fraction();
             const double fraction = random.below(8) / 8.0, size = random.size() + fraction;
             int index = 0;
             sum.add(SetInRappAndCalcRapp(position, random.coin() ? size : -size - 1, tolerance, &index));
             sum.add(index);
         },
         2090659514902799683U},
        {"CalcNrOfHDropRepeats",
         [](RepeatInput& random, Checksum& sum) {
             const unsigned height = random.anySize();
             sum.add(CalcNrOfHDropRepeats(height, random.anySize() % height));
         },
         14768307906058233941U},
    });
}

#if defined(OMNAR_CHECKED)
TEST(Placing, ReportsBrokenPreconditions) {
    static int out;
    static double outMM;
    support::checkBreaches({
        {"SetInRapp", "width", "0", [] { SetInRapp(1, 5, 0, 20, 5, eDropVertical, &out, &out); }},
        {"SetInRapp", "width", "0", [] { SetInRapp(3, 45, 0, 20, 5, eDropHorizontal, &out, &out); }},
        {"SetInRapp", "height", "0", [] { SetInRapp(-1, 5, 10, 0, 5, eDropVertical, &out, &out); }},
        {"SetInRapp", "height", "0", [] { SetInRapp(1, 0, 10, 0, 5, eDropHorizontal, &out, &out); }},
        {"SetInRapp", "outY", "null", [] { SetInRapp(1, 5, 10, 20, 5, eDropVertical, &out, nullptr); }},
        {"SetInRappDb", "height", "0", [] { SetInRappDb(0, 5, 10, 0, 5, 1, 1, eDropVertical, &out, &out); }},
        {"SetInRappMM", "outX", "null", [] { SetInRappMM(1, 5, 0, 0, 5, eDropVertical, nullptr, &outMM); }},
        {"GetRapport", "repeatSize", "0.500000", [] { GetRapport(3, 0.5, 2); }},
        {"GetRapport", "repeatSize", "-1.000000", [] { GetRapport(1e10, -1, 2); }},
        {"SetInRappAndCalcRapp", "repeatSize", "0.000000", [] { SetInRappAndCalcRapp(0, 0, 2, &out); }},
        {"SetInRappAndCalcRapp", "repeatIndex", "null", [] { SetInRappAndCalcRapp(0, 1, 2, nullptr); }},
    });
}
#endif

}  // namespace
