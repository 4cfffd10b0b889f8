// SPDX-License-Identifier: MIT

// File, view and screen coordinates: known positions, and relations between the conversions.
#include <algorithm>
#include <cstdint>
#include <utility>

#include "tests/support/calls.h"

namespace {

using support::Input;
using support::Point;

constexpr std::uint64_t seed = 6;
constexpr _EDropKind noLayout{0};
constexpr int untouched = -77;
constexpr Point unwritten{untouched, untouched};
constexpr int screenHeight = 600;
constexpr int bottomRow = screenHeight - 1;

/// The arguments of the conversions besides the position.
struct View {
    unsigned repW = 100, repH = 100, drop = 50;
    _EDropKind kind = eDropVertical;
    double zoomX = 1.0, zoomY = 1.0;
    bool fold = false;
    int originX = 0, originY = 0;
    unsigned char snap = 0;
    bool flip = false;

    /// Small tiles without zoom: no position is truncated or leaves 32 bits.
    static View small(Input& random) {
        View v;
        v.repW = 1 + random.below(60), v.repH = 1 + random.below(60), v.drop = random.below(100);
        v.kind = random.layout(), v.fold = random.coin(), v.flip = random.coin();
        v.originX = random.between(-500, 500), v.originY = random.between(-500, 500);
        v.snap = static_cast<unsigned char>(random.below(3));
        return v;
    }
};

/// The point that a call writes.
template <class Call>
Point written(Call call) {
    int x = untouched, y = untouched;
    call(&x, &y);
    return {double(x), double(y)};
}

Point toView(int fx, int fy, View v) {
    return written(
        [=](int* x, int* y) { FPToVP(fx, fy, x, y, v.repW, v.repH, v.drop, v.kind, v.zoomX, v.zoomY, v.fold); });
}

Point toFile(int vx, int vy, View v) {
    return written(
        [=](int* x, int* y) { VPToFP(vx, vy, x, y, v.repW, v.repH, v.drop, v.kind, v.zoomX, v.zoomY, v.fold); });
}

Point toFileDb(int vx, int vy, double drop, double scaleX, double scaleY, View v) {
    return written([=](int* x, int* y) {
        VPToFPDb(vx, vy, x, y, v.repW, v.repH, drop, scaleX, scaleY, v.kind, v.zoomX, v.zoomY, v.fold);
    });
}

Point toScreen(int fx, int fy, View v) {
    return written([=](int* x, int* y) {
        FPToSnappedSP(fx, fy, x, y, v.originX, v.originY, screenHeight, v.repW, v.repH, v.drop, v.kind, v.zoomX,
                      v.zoomY, v.snap, v.flip);
    });
}

Point toScreenMM(double mmX, double mmY, double res, View v) {
    return written([=](int* x, int* y) {
        MMToSnappedSP(mmX, mmY, x, y, v.originX, v.originY, screenHeight, v.repW, v.repH, v.drop, v.kind, res, res,
                      v.zoomX, v.zoomY, v.snap, v.flip);
    });
}

TEST(Coordinates, KnownPositions) {
    const View fold{.fold = true};
    EXPECT_EQ(toView(-1, 101, {.zoomX = 1.5, .zoomY = 1.5}), (Point{-1, 151}));
    EXPECT_EQ(toView(5, -3, {.zoomX = 0.0001, .zoomY = 0.0001}), (Point{0, 0})) << "a tile is 1 x 1";
    EXPECT_EQ(toView(150, -10, {.drop = 45, .zoomX = 1.5, .zoomY = 0.5, .fold = true}), (Point{75, 23}));
    EXPECT_EQ(toView(1, 2, {.kind = noLayout}), (Point{0, 0}));
    EXPECT_EQ(toFile(-1, 7, {.zoomX = 1.5, .zoomY = 2.5}), (Point{-1, 2}));
    EXPECT_EQ(toFile(5, 7, {.repW = 0, .repH = 0}), (Point{0, 0})) << "nothing is divided by the sizes";
    EXPECT_EQ(toFile(1, 2, {.kind = noLayout}), (Point{0, 0}));
    EXPECT_EQ(toFileDb(150, 60, 2.5, 9.0, 1.0, fold), (Point{50, 57})) << "2.5 is rounded to 3";
    EXPECT_EQ(toFileDb(-50, 60, 2.5, 9.0, 1.0, fold), (Point{50, 63})) << "-2.5 is rounded to -3";
}

TEST(Coordinates, KnownPositionsOnTheScreen) {
    EXPECT_EQ(toScreen(101, 2, {.zoomX = 4, .zoomY = 4, .snap = 9}), (Point{406, 7}));
    EXPECT_EQ(toScreen(101, 2, {.zoomX = 4, .zoomY = 4, .snap = 1, .flip = true}), (Point{406, 590}));
    EXPECT_EQ(toScreen(-1, -1, {.zoomX = 3, .zoomY = 1, .originX = 10, .originY = -20, .snap = 1}), (Point{-11, 19}));
    EXPECT_EQ(toScreen(INT_MAX, 0, {.repW = 1, .originX = -1}), (Point{INT_MIN, 0})) << "2^31 does not fit";
    EXPECT_EQ(toScreen(1, 2, {.kind = noLayout}), unwritten);
    EXPECT_EQ(toScreenMM(10.25, -0.5, 10, {.zoomX = 2, .zoomY = 2, .snap = 1}), (Point{206, -10}));
    EXPECT_EQ(toScreenMM(-1e-20, -0.125, 1, {.zoomX = 1.019, .originX = 1}), (Point{-1, 0})) << "-1e-20 is flushed";
    EXPECT_EQ(toScreenMM(NAN, 1, 1, {.repH = 0, .flip = true}), (Point{INT_MIN, INT_MIN + bottomRow}));
    EXPECT_EQ(toScreenMM(1, 2, 1, {.kind = noLayout}), unwritten);
}

TEST(Coordinates, IntegerZoomsScaleTheRepeatAndAreInvertible) {
    Input random(seed);
    for (int i = 0; i < 50000; ++i) {
        View v = View::small(random);
        v.kind = eDropVertical;
        const int zoomX = random.between(1, 5), zoomY = random.between(1, 5);
        v.zoomX = zoomX, v.zoomY = zoomY;
        const int x = random.between(-500, 500), y = random.between(-500, 500);
        int tileX = x, tileY = y;
        if (v.fold) SetInRapp(x, y, v.repW, v.repH, v.drop, v.kind, &tileX, &tileY);
        const Point tile{double(tileX), double(tileY)};
        SCOPED_TRACE(testing::Message() << "seed " << seed << ": " << x << ", " << y << " in " << v.repW << " x "
                                        << v.repH);
        ASSERT_EQ(toView(x, y, v), (Point{tile.x * zoomX, tile.y * zoomY}));
        ASSERT_EQ(toFile(x * zoomX, y * zoomY, v), tile);
        ASSERT_EQ(toFileDb(x * zoomX, y * zoomY, v.drop / 4.0, 9.0, 4.0, v), tile);

        const int row = y * zoomY - v.originY;
        const int snapX = v.snap != 0 && zoomX > 1 ? (zoomX + 1) / 2 : 0;
        const int snapY = v.snap != 0 && zoomY > 1 ? (zoomY - 1) / 2 : 0;
        const Point screen{double(x * zoomX - v.originX + snapX), double((v.flip ? bottomRow - row : row) - snapY)};
        ASSERT_EQ(toScreen(x, y, v), screen);
        ASSERT_EQ(toScreenMM(x / 8.0, y / 8.0, 8.0, v), screen);
    }
}

TEST(Coordinates, BrickMirrorsHalfDropAndZoomedTilesAbut) {
    const auto mirrored = [](Point p) { return Point{p.y, p.x}; };
    Input random(seed);
    for (int i = 0; i < 50000; ++i) {
        View v = View::small(random);
        v.kind = eDropVertical, v.zoomX = (1 + random.below(80)) / 16.0, v.zoomY = (1 + random.below(80)) / 16.0;
        View brick = v;
        brick.kind = eDropHorizontal;
        std::swap(brick.repW, brick.repH), std::swap(brick.zoomX, brick.zoomY);
        const int x = random.between(-500, 500), y = random.between(-500, 500);
        SCOPED_TRACE(testing::Message() << "seed " << seed << ": " << x << ", " << y << " in " << v.repW << " x "
                                        << v.repH);
        ASSERT_EQ(mirrored(toView(y, x, brick)), toView(x, y, v));
        ASSERT_EQ(mirrored(toFile(y, x, brick)), toFile(x, y, v));
        ASSERT_EQ(mirrored(toFileDb(y, x, 0.3, 2.0, 9.0, brick)), toFileDb(x, y, 0.3, 9.0, 2.0, v));

        v.fold = false;
        const int tile = random.between(-20, 20), w = int(v.repW), begin = std::max(int(w * v.zoomX), 1) * tile;
        ASSERT_EQ(toView(tile * w, y, v).x, begin);
        if (v.zoomX < 1.0) continue;  // the last pixels of a tile may reach the next one
        ASSERT_LT(toView(tile * w - 1, y, v).x, begin + (tile <= 0)) << "left of the origin truncation moves right";
        const double error = x - toFile(int(toView(x, y, v).x), y, v).x;
        ASSERT_TRUE(x < 0 || error == 0 || error == 1) << "to the view and back: " << error;
    }
}

TEST(MMToSnappedSP, CountsTilesLikeStepping) {
    const auto tileByStepping = [](double position, double size) {
        int tile = 0;
        for (; position < 0; position += size) --tile;
        if (tile < 0) return tile;
        for (; position > 0; position -= size) ++tile;
        return position < 0 ? tile - 1 : tile;
    };
    const auto compare = [&](double position, unsigned size) {
        for (const double x : {position, -position}) {
            const Point p = toScreenMM(x, 0, 1.0, {.repW = size, .zoomX = 0});  // tiles of 1 x 1: p.x is the tile
            ASSERT_EQ(p.x, tileByStepping(x + 1.0 - 1.0, size)) << x << " in " << size << ", seed " << seed;
        }
    };
    Input random(seed);
    for (int i = 0; i < 10000; ++i) {
        const unsigned size = 1 + random.below(100);
        const double edge = random.between(-300, 300) * double(size);
        for (const double x : {random.eighth(), edge, std::nextafter(edge, -1e9), std::nextafter(edge, 1e9)}) {
            compare(x, size);
        }
    }
    // Steps from 2^53 on are rounded. Here the tile depends on it, and on where steps of one length begin and end.
    compare(27929471728423684, 4294848334);
    compare(24894661850481020, 4294785866);
    compare(9007252972770028, 4294343789);
    EXPECT_EQ(toScreenMM(1e300, -0x1p100, 1.0, {}), (Point{INT_MIN, INT_MIN})) << "steps are lost in rounding";
}

TEST(SnappedSP, ArraysEqualSinglePoints) {
    const View v{.zoomX = 2.5, .zoomY = 1.5, .originX = 3, .snap = 1, .flip = true};
    const double mmX[] = {-25.03, 0.7}, mmY[] = {9.9, -0.1};
    int xs[] = {-250, 7}, ys[] = {99, -1}, outX[] = {untouched, untouched}, outY[] = {untouched, untouched};
    const Point first = toScreen(xs[0], ys[0], v), second = toScreen(xs[1], ys[1], v);
    int* const toX = outX;
    int* const toY = outY;
    constexpr double resolution = 10;
    const auto convertMM = [&](int n, _EDropKind kind) {
        MMToSnappedSP(mmX, mmY, n, &toX, &toY, v.originX, v.originY, screenHeight, v.repW, v.repH, v.drop, kind,
                      resolution, resolution, v.zoomX, v.zoomY, v.snap, v.flip);
    };
    convertMM(0, eDropVertical), convertMM(2, noLayout);
    EXPECT_EQ((Point{double(outX[0]), double(outY[0])}), unwritten);
    convertMM(2, eDropVertical);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ((Point{double(outX[i]), double(outY[i])}), toScreenMM(mmX[i], mmY[i], resolution, v));
    }

    int* const swappedX = ys;  // in place and swapped: both coordinates of a point are read before either is written
    int* const swappedY = xs;
    FPToSnappedSP(xs, ys, 2, &swappedX, &swappedY, v.originX, v.originY, screenHeight, v.repW, v.repH, v.drop,
                  eDropHorizontal, v.zoomX, v.zoomY, v.snap, v.flip);
    EXPECT_EQ((Point{double(ys[0]), double(xs[0])}), first);
    EXPECT_EQ((Point{double(ys[1]), double(xs[1])}), second);
}

TEST(AdaptFileSize, FillsOrFitsTheView) {
    using Sizes = std::array<unsigned, 4>;
    const auto adapt = [](unsigned fileW, unsigned fileH, unsigned viewW, unsigned viewH, double zoomX, double zoomY) {
        Sizes out{};
        AdaptFileSizeToFileSizeForViewSize(fileW, fileH, viewW, viewH, zoomX, zoomY, &out[0], &out[1]);
        AdaptFileSizeToViewSizeForViewSize(fileW, fileH, viewW, viewH, zoomX, zoomY, &out[2], &out[3]);
        return out;
    };
    EXPECT_EQ(adapt(300, 400, 800, 800, 1, 1), (Sizes{400, 400, 600, 800}));
    EXPECT_EQ(adapt(400, 300, 800, 800, 1, 4), (Sizes{400, 1600, 800, 150}));
    EXPECT_EQ(adapt(7, 3, 1000, 333, 1, 1), (Sizes{9, 3, 777, 333}));
    EXPECT_EQ(adapt(0, 0, 7, 7, 1, 1), (Sizes{0, 0, 0x80000000U, 7})) << "0 / 0";
    EXPECT_EQ(adapt(1, 1, 1, 0xFFFFFFFFU, 1, 1), (Sizes{1, 0x80000000U, 1, 1})) << "does not fit an int";
}

using SinglePoint = void(int, int, int*, int*, int, int, unsigned, unsigned, unsigned, unsigned, _EDropKind, double,
                         double, unsigned char, bool);
/// A call with finite positions in file pixels.
void finiteScreenMM(double x, double y, int* sx, int* sy, int originX, unsigned w, unsigned h, double zoomX,
                    double zoomY, bool snap, bool flip) {
    MMToSnappedSP(x, y, sx, sy, originX, 9, h, w, h, 0, eDropVertical, 0.3, 0.7, zoomX, zoomY, snap, flip);
}

TEST(Coordinates, HaveTheCommittedChecksums) {
    using support::expectChecksum;
    expectChecksum("FPToVP", FPToVP, 13884876538990959608U);
    expectChecksum("VPToFP", VPToFP, 8402527639500708178U);
    expectChecksum("VPToFPDb", VPToFPDb, 11130385639210969048U);
    expectChecksum("FPToSnappedSP", static_cast<SinglePoint*>(FPToSnappedSP), 5415381281103291291U);
    expectChecksum("MMToSnappedSP", finiteScreenMM, 13468716844450851074U);
    expectChecksum("AdaptFileSizeToFileSizeForViewSize", AdaptFileSizeToFileSizeForViewSize, 17002105716271840139U);
    expectChecksum("AdaptFileSizeToViewSizeForViewSize", AdaptFileSizeToViewSizeForViewSize, 5509343743768171660U);
}

}  // namespace
