// File, view and screen coordinates: known positions, and what must hold between the conversions.
#include <algorithm>
#include <array>
#include <cstdint>
#include <ostream>

#include "tests/repeat_support.h"

namespace {

using support::Checksum;
using support::RepeatInput;

constexpr std::uint64_t seed = 6;
constexpr _EDropKind noLayout{0};
constexpr int untouched = -77;

struct Point {
    int x = untouched, y = untouched;
    bool operator==(const Point&) const = default;
    friend std::ostream& operator<<(std::ostream& out, Point p) { return out << "(" << p.x << ", " << p.y << ")"; }
};

/// Everything but the position that the conversions take.
struct View {
    unsigned repW = 100, repH = 100, drop = 50;
    _EDropKind kind = eDropVertical;
    double zoomX = 1.0, zoomY = 1.0;
    bool fold = false;
    int originX = 0, originY = 0;
    unsigned char snap = 0;
    bool flip = false;
    unsigned screenHeight = 600;
};

Point toView(Point f, const View& s) {
    Point v;
    FPToVP(f.x, f.y, &v.x, &v.y, s.repW, s.repH, s.drop, s.kind, s.zoomX, s.zoomY, s.fold);
    return v;
}

Point toFile(Point v, const View& s) {
    Point f;
    VPToFP(v.x, v.y, &f.x, &f.y, s.repW, s.repH, s.drop, s.kind, s.zoomX, s.zoomY, s.fold);
    return f;
}

Point toFileDb(Point v, double drop, double scaleX, double scaleY, const View& s) {
    Point f;
    VPToFPDb(v.x, v.y, &f.x, &f.y, s.repW, s.repH, drop, scaleX, scaleY, s.kind, s.zoomX, s.zoomY, s.fold);
    return f;
}

Point toScreen(Point f, const View& s) {
    Point p;
    FPToSnappedSP(f.x, f.y, &p.x, &p.y, s.originX, s.originY, s.screenHeight, s.repW, s.repH, s.drop, s.kind, s.zoomX,
                  s.zoomY, s.snap, s.flip);
    return p;
}

Point toScreenMM(double x, double y, double res, const View& s) {
    Point p;
    MMToSnappedSP(x, y, &p.x, &p.y, s.originX, s.originY, s.screenHeight, s.repW, s.repH, s.drop, s.kind, res, res,
                  s.zoomX, s.zoomY, s.snap, s.flip);
    return p;
}

/// A setup without zoom and near positions, where nothing is cut or leaves 32 bits.
View nearbyView(RepeatInput& random) {
    View s;
    s.repW = 1 + random.below(60), s.repH = 1 + random.below(60), s.drop = random.below(100);
    s.kind = random.layout(), s.fold = random.coin();
    s.originX = random.between(-500, 500), s.originY = random.between(-500, 500);
    s.snap = static_cast<unsigned char>(random.below(3)), s.flip = random.coin();
    return s;
}

Point nearbyPoint(RepeatInput& random) {
    const int x = random.between(-500, 500), y = random.between(-500, 500);
    return {x, y};
}

TEST(Coordinates, KnownPositions) {
    const View fold{.fold = true};
    EXPECT_EQ(toView({-1, 101}, {.zoomX = 1.5, .zoomY = 1.5}), (Point{-1, 151}));
    EXPECT_EQ(toView({5, -3}, {.zoomX = 0.0001, .zoomY = 0.0001}), (Point{0, 0})) << "a tile is 1 x 1";
    EXPECT_EQ(toView({150, 10}, fold), (Point{50, 60}));
    EXPECT_EQ(toView({150, -10}, {.drop = 45, .zoomX = 1.5, .zoomY = 0.5, .fold = true}), (Point{75, 23}));
    EXPECT_EQ(toFile({150, 60}, fold), (Point{50, 10}));
    EXPECT_EQ(toFile({-1, 7}, {.zoomX = 1.5, .zoomY = 2.5}), (Point{-1, 2}));
    EXPECT_EQ(toFile({5, 5}, {.zoomX = 0.0, .zoomY = -1.0}), (Point{INT_MIN + 500, 500})) << "tiles of 1 x 1";
    EXPECT_EQ(toFile({5, 7}, {.repW = 0, .repH = 0}), (Point{0, 0})) << "nothing is divided by the sizes";
    EXPECT_EQ(toFileDb({150, 60}, 2.5, 9.0, 1.0, fold), (Point{50, 57})) << "2.5 is rounded to 3";
    EXPECT_EQ(toFileDb({-50, 60}, 2.5, 9.0, 1.0, fold), (Point{50, 63})) << "-2.5 is rounded to -3";
    EXPECT_EQ(toFileDb({60, 150}, 1.0, 2.5, 9.0, {.kind = eDropHorizontal, .fold = true}), (Point{57, 50}));
    for (const Point p : {toView({1, 2}, {.kind = noLayout}), toFile({1, 2}, {.kind = noLayout}),
                          toFileDb({1, 2}, 1, 1, 1, {.kind = noLayout})}) {
        EXPECT_EQ(p, (Point{0, 0}));
    }
}

TEST(Coordinates, KnownPositionsOnTheScreen) {
    EXPECT_EQ(toScreen({101, 2}, {.zoomX = 4, .zoomY = 4}), (Point{404, 8}));
    EXPECT_EQ(toScreen({101, 2}, {.zoomX = 4, .zoomY = 4, .snap = 9}), (Point{406, 7}));
    EXPECT_EQ(toScreen({101, 2}, {.zoomX = 4, .zoomY = 4, .snap = 1, .flip = true}), (Point{406, 590}));
    EXPECT_EQ(toScreen({-1, -1}, {.zoomX = 3, .zoomY = 1, .originX = 10, .originY = -20, .snap = 1}), (Point{-11, 19}));
    EXPECT_EQ(toScreen({INT_MAX, 0}, {.repW = 1, .originX = -1}), (Point{INT_MIN, 0})) << "2^31 does not fit";
    EXPECT_EQ(toScreen({1, 2}, {.kind = noLayout}), Point{});
    EXPECT_EQ(toScreenMM(10.25, -0.5, 10, {.zoomX = 2, .zoomY = 2, .snap = 1}), (Point{206, -10}));
    EXPECT_EQ(toScreenMM(-1e-20, -0.125, 1, {.zoomX = 1.019, .originX = 1}), (Point{-1, 0})) << "-1e-20 is flushed";
    EXPECT_EQ(toScreenMM(NAN, 1, 1, {.repH = 0, .flip = true}), (Point{INT_MIN, INT_MIN + 599}));
    EXPECT_EQ(toScreenMM(1, 2, 1, {.kind = noLayout}), Point{});
}

TEST(Coordinates, WholeZoomsScaleTheRepeatAndLeadBack) {
    SCOPED_TRACE(seed);
    RepeatInput random(seed);
    for (int i = 0; i < 50000; ++i) {
        View s = nearbyView(random);
        s.kind = eDropVertical;
        const int zoomX = random.between(1, 5), zoomY = random.between(1, 5);
        s.zoomX = zoomX, s.zoomY = zoomY;
        const Point file = nearbyPoint(random), zoomed{file.x * zoomX, file.y * zoomY};
        Point tile = file;
        if (s.fold) SetInRapp(file.x, file.y, s.repW, s.repH, s.drop, s.kind, &tile.x, &tile.y);
        ASSERT_EQ(toView(file, s), (Point{tile.x * zoomX, tile.y * zoomY}))
            << file << ", zooms " << zoomX << ", " << zoomY;
        ASSERT_EQ(toFile(zoomed, s), tile) << file << ", zooms " << zoomX << ", " << zoomY;
        ASSERT_EQ(toFileDb(zoomed, s.drop / 4.0, 9.0, 4.0, s), tile);

        const Point moved{zoomed.x - s.originX, zoomed.y - s.originY};
        const Point screen = toScreen(file, s);
        const int snapX = s.snap != 0 && zoomX > 1 ? (zoomX + 1) / 2 : 0;
        const int snapY = s.snap != 0 && zoomY > 1 ? (zoomY - 1) / 2 : 0;
        ASSERT_EQ(screen, (Point{moved.x + snapX, (s.flip ? 599 - moved.y : moved.y) - snapY}));
        ASSERT_EQ(toScreenMM(file.x / 8.0, file.y / 8.0, 8.0, s), screen);
    }
}

Point mirrored(Point p) { return {p.y, p.x}; }

TEST(Coordinates, BrickIsTheMirrorImageOfHalfDrop) {
    SCOPED_TRACE(seed);
    RepeatInput random(seed);
    for (int i = 0; i < 50000; ++i) {
        View s = nearbyView(random);
        s.kind = eDropVertical, s.zoomX = (1 + random.below(40)) / 16.0, s.zoomY = (1 + random.below(40)) / 16.0;
        View brick = s;
        brick.kind = eDropHorizontal;
        std::swap(brick.repW, brick.repH), std::swap(brick.zoomX, brick.zoomY);
        const Point p = nearbyPoint(random);
        ASSERT_EQ(mirrored(toView(mirrored(p), brick)), toView(p, s)) << p;
        ASSERT_EQ(mirrored(toFile(mirrored(p), brick)), toFile(p, s)) << p;
        ASSERT_EQ(mirrored(toFileDb(mirrored(p), 0.3, 2.0, 9.0, brick)), toFileDb(p, 0.3, 9.0, 2.0, s)) << p;
    }
}

TEST(Coordinates, ZoomedTilesAbut) {
    SCOPED_TRACE(seed);
    RepeatInput random(seed);
    for (int i = 0; i < 50000; ++i) {
        View s = nearbyView(random);
        s.fold = false, s.zoomX = (16 + random.below(80)) / 16.0;
        const int k = random.between(-20, 20), w = int(s.repW);
        const int begin = toView({k * w, 0}, s).x;
        ASSERT_EQ(begin, k * int(w * s.zoomX)) << w << " times " << s.zoomX;
        ASSERT_LT(toView({k * w - 1, 0}, s).x, begin + (k <= 0)) << "left of the origin the cut may meet the edge";
        const int inside = k * w + int(random.below(s.repW));
        const int back = toFile(toView({inside, 0}, s), s).x;
        ASSERT_TRUE(k < 0 || back == inside || back == inside - 1) << inside << " came back as " << back;
    }
}

TEST(MMToSnappedSP, CountsTilesLikeAWalk) {
    const auto walk = [](double position, double size) {
        int tile = 0;
        if (position < 0) {
            for (; position < 0; position += size) --tile;
            return tile;
        }
        for (; position > 0; position -= size) ++tile;
        return position < 0 ? tile - 1 : tile;
    };
    // Tiles of 1 x 1: the screen position is the tile.
    const auto compare = [&](double position, unsigned size) {
        for (const double x : {position, -position}) {
            const Point p = toScreenMM(x, 0, 1.0, {.repW = size, .zoomX = 0});
            ASSERT_EQ(p.x, walk(x + 1.0 - 1.0, size)) << x << " in " << size;
        }
    };
    SCOPED_TRACE(seed);
    RepeatInput random(seed);
    for (int i = 0; i < 10000; ++i) {
        const unsigned size = 1 + random.below(100);
        const double edge = random.between(-300, 300) * double(size);
        for (const double x : {random.eighth(), edge, std::nextafter(edge, -1e9), std::nextafter(edge, 1e9)})
            compare(x, size);
    }
    // From 2^53 on steps are rounded. Here that shows in the tile, or would if they were counted together carelessly.
    compare(27929471728423684, 4294848334);
    compare(24894661850481020, 4294785866);
    compare(9007252972770028, 4294343789);
    EXPECT_EQ(toScreenMM(1e300, -0x1p100, 1.0, {}), (Point{INT_MIN, INT_MIN})) << "no step gets anywhere";
}

TEST(SnappedSP, ManyPointsGoLikeSingleOnes) {
    const View s{.zoomX = 2.5, .zoomY = 1.5, .originX = 3, .snap = 1, .flip = true};
    std::array<int, 3> xs{-250, 7, 120}, ys{99, -1, 350};
    const std::array<double, 3> mmXs{-25.03, 0.7, 12}, mmYs{9.9, -0.1, 35};
    std::array<int, 3> outX{untouched, untouched, untouched}, outY = outX;
    int* const px = outX.data();
    int* const py = outY.data();
    const auto many = [&](int count, _EDropKind kind) {
        MMToSnappedSP(mmXs.data(), mmYs.data(), count, &px, &py, 3, 0, 600, 100, 100, 50, kind, 10, 10, 2.5, 1.5, 1,
                      true);
    };
    many(0, eDropVertical);
    many(3, noLayout);
    EXPECT_EQ((Point{outX[0], outY[0]}), Point{});
    many(2, eDropVertical);
    EXPECT_EQ((Point{outX[2], outY[2]}), Point{});
    for (std::size_t i = 0; i < 2; ++i) EXPECT_EQ((Point{outX[i], outY[i]}), toScreenMM(mmXs[i], mmYs[i], 10, s));

    std::array<Point, 3> single;
    for (std::size_t i = 0; i < 3; ++i) single[i] = toScreen({xs[i], ys[i]}, s);
    int* const inPlaceX = ys.data();  // crosswise: both coordinates are read before either is written
    int* const inPlaceY = xs.data();
    FPToSnappedSP(xs.data(), ys.data(), 3, &inPlaceX, &inPlaceY, 3, 0, 600, 100, 100, 50, s.kind, 2.5, 1.5, 1, true);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ((Point{ys[i], xs[i]}), single[i]);
}

TEST(AdaptFileSize, FillsOrFitsTheView) {
    using Sizes = std::array<unsigned, 4>;
    const auto adapt = [](unsigned fileW, unsigned fileH, unsigned viewW, unsigned viewH, double zoomX, double zoomY) {
        Sizes out{};
        AdaptFileSizeToFileSizeForViewSize(fileW, fileH, viewW, viewH, zoomX, zoomY, &out[0], &out[1]);
        AdaptFileSizeToViewSizeForViewSize(fileW, fileH, viewW, viewH, zoomX, zoomY, &out[2], &out[3]);
        return out;
    };
    EXPECT_EQ(adapt(400, 300, 800, 800, 1, 1), (Sizes{400, 400, 800, 600}));
    EXPECT_EQ(adapt(300, 400, 800, 800, 1, 1), (Sizes{400, 400, 600, 800}));
    EXPECT_EQ(adapt(400, 300, 800, 800, 1, 4), (Sizes{400, 1600, 800, 150}));
    EXPECT_EQ(adapt(7, 3, 1000, 333, 1, 1), (Sizes{9, 3, 777, 333}));
    EXPECT_EQ(adapt(3, 3, 7, 7, 0.1, 0.1), (Sizes{3, 3, 7, 7})) << "equal fits";
    EXPECT_EQ(adapt(0, 0, 7, 7, 1, 1), (Sizes{0, 0, 0x80000000U, 7})) << "0 / 0";
    EXPECT_EQ(adapt(1, 1, 1, 0xFFFFFFFFU, 1, 1), (Sizes{1, 0x80000000U, 1, 1})) << "beyond an int";
}

/// Any view, positions and scroll origins included that leave 32 bits.
View anyView(RepeatInput& random) {
    View s = nearbyView(random);
    if (random.coin()) s.repW = random.anySize(), s.repH = random.anySize(), s.drop = random.anySize();
    if (random.coin()) s.originX = random.position(), s.originY = random.position();
    s.zoomX = random.fraction(), s.zoomY = random.fraction(), s.screenHeight = random.anySize();
    return s;
}

void add(Checksum& sum, Point p) { sum.add(p.x), sum.add(p.y); }

template <Point (*convert)(Point, const View&)>
void addConverted(RepeatInput& random, Checksum& sum) {
    const View s = anyView(random);
    const int x = random.position(), y = random.position();
    add(sum, convert({x, y}, s));
}

template <void (*adapt)(unsigned, unsigned, unsigned, unsigned, double, double, unsigned*, unsigned*)>
void addAdapted(RepeatInput& random, Checksum& sum) {
    const unsigned fileW = random.anySize() - 1, fileH = random.anySize(), viewW = random.anySize(),
                   viewH = random.anySize();
    const double zoomX = random.coin() ? 1.0 : random.fraction(), zoomY = random.coin() ? 1.0 : random.fraction();
    unsigned w = 0, h = 0;
    adapt(fileW, fileH, viewW, viewH, zoomX, zoomY, &w, &h);
    sum.add(w), sum.add(h);
}

TEST(Coordinates, HaveTheCommittedChecksums) {
    support::checkSums({
        {"FPToVP", addConverted<toView>, 11125417108817041124U},
        {"VPToFP", addConverted<toFile>, 3514697252123498586U},
        {"VPToFPDb",
         [](RepeatInput& random, Checksum& sum) {
             const View s = anyView(random);
             const int x = random.position(), y = random.position();
             const double drop = random.fraction(), scaleX = random.fraction(), scaleY = random.eighth();
             add(sum, toFileDb({x, y}, drop, scaleX, scaleY, s));
         },
         677047325333673240U},
        {"FPToSnappedSP", addConverted<toScreen>, 5140759518487084498U},
        {"MMToSnappedSP",
         [](RepeatInput& random, Checksum& sum) {
             const View s = anyView(random);
             const double x = random.fraction(), y = random.fraction(), res = random.eighth();
             if (!std::isinf(x) && !std::isinf(y)) add(sum, toScreenMM(x, y, res, s));
         },
         16133986241569794450U},
        {"AdaptFileSizeToFileSizeForViewSize", addAdapted<AdaptFileSizeToFileSizeForViewSize>, 5133744011854583337U},
        {"AdaptFileSizeToViewSizeForViewSize", addAdapted<AdaptFileSizeToViewSizeForViewSize>, 10153586988612708618U},
    });
}

#if defined(OMNAR_CHECKED)
TEST(Coordinates, ReportBrokenPreconditions) {
    static int out;
    static double mm = 1;
    static const double endless[] = {HUGE_VAL};
    static int* const to = &out;
    static int* const nowhere = nullptr;
    static unsigned size;
    support::checkBreaches({
        {"FPToVP", "repH", "0",
         [] {
             toView({1, 2}, {.repH = 0});
         }},
        {"FPToVP", "vx", "null", [] { FPToVP(1, 2, nullptr, &out, 9, 9, 0, noLayout, 1, 1, true); }},
        {"VPToFP", "repH", "0",
         [] {
             toFile({1, 2}, {.repW = 0, .repH = 0, .fold = true});
         }},
        {"VPToFPDb", "repW", "0",
         [] {
             toFileDb({1, 2}, 1, 1, 1, {.repW = 0, .kind = eDropHorizontal, .fold = true});
         }},
        {"FPToSnappedSP", "repW", "0",
         [] {
             toScreen({1, 2}, {.repW = 0});
         }},
        {"FPToSnappedSP", "fys", "null",
         [] { FPToSnappedSP(&out, nullptr, 1, &to, &to, 0, 0, 9, 9, 9, 0, eDropVertical, 1, 1, 0, false); }},
        {"MMToSnappedSP", "mmX", "inf", [] { toScreenMM(HUGE_VAL, 0, 1, {}); }},
        {"MMToSnappedSP", "sys", "not null",
         [] { MMToSnappedSP(&mm, &mm, 1, &to, &nowhere, 0, 0, 9, 9, 9, 0, eDropVertical, 1, 1, 1, 1, 0, false); }},
        {"MMToSnappedSP", "mmYs[i]", "inf",
         [] { MMToSnappedSP(&mm, endless, 1, &to, &to, 0, 0, 9, 9, 9, 0, eDropVertical, 1, 1, 1, 1, 0, false); }},
        {"AdaptFileSizeToFileSizeForViewSize", "outH", "null",
         [] { AdaptFileSizeToFileSizeForViewSize(1, 2, 3, 4, 1, 1, &size, nullptr); }},
        {"AdaptFileSizeToViewSizeForViewSize", "outW", "null",
         [] { AdaptFileSizeToViewSizeForViewSize(1, 2, 3, 4, 1, 1, nullptr, &size); }},
    });
}
#endif

}  // namespace
