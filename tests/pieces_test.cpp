// The pieces of a rectangle in the repeat buffer, against painting it pixel by pixel.
#include <algorithm>
#include <array>
#include <cstdint>
#include <ostream>
#include <utility>

#include "tests/repeat_support.h"

namespace {

using support::Checksum;
using support::RepeatInput;

constexpr std::uint64_t seed = 5;
constexpr int untouched = -77;

struct Rect {
    int x, y;
    unsigned w, h;
};

struct Tile {
    unsigned w, h;
    int drop;
};

struct Piece {
    int x, w, y, h;
    bool operator==(const Piece&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Piece& p) {
        return out << p.x << "+" << p.w << ", " << p.y << "+" << p.h;
    }
};

/// What a call left in count and arrays, entries that it did not write included.
struct Written {
    int count = untouched;
    std::array<int, 6> x, w, y, h;

    Written() {
        for (auto* each : {&x, &w, &y, &h}) each->fill(untouched);
    }
    std::vector<Piece> pieces() const {
        std::vector<Piece> all;
        for (std::size_t i = 0; i < 6 && w[i] != untouched; ++i) all.push_back({x[i], w[i], y[i], h[i]});
        return all;
    }
};

Written covered(Rect r, Tile t, bool whole, _EDropKind kind = eDropVertical) {
    Written out;
    CalcPosAndSizeInRepBuffer(r.x, r.y, r.w, r.h, t.w, t.h, kind, t.drop, &out.count, out.x.data(), out.w.data(),
                              out.y.data(), out.h.data(), whole);
    return out;
}

Written uncovered(Rect r, Tile t, _EDropKind kind = eDropVertical) {
    Written out;
    CalcPosAndSizeInRepBufferInv(r.x, r.y, r.w, r.h, t.w, t.h, kind, t.drop, &out.count, out.x.data(), out.w.data(),
                                 out.y.data(), out.h.data());
    return out;
}

/// How often each pixel of the buffer is painted; what lies outside of it fails the test.
using Painting = std::vector<int>;

void paint(Painting& painting, Tile tile, const Written& written) {
    const std::vector<Piece> pieces = written.pieces();
    for (std::size_t i = 0; i < static_cast<std::size_t>(written.count); ++i) {
        const Piece& p = pieces.at(i);
        for (int y = p.y; y < p.y + p.h; ++y) {
            for (int x = p.x; x < p.x + p.w; ++x) {
                ASSERT_TRUE(x >= 0 && y >= 0 && x < int(tile.w) && y < int(tile.h)) << p;
                ++painting[static_cast<unsigned>(y) * tile.w + static_cast<unsigned>(x)];
            }
        }
    }
}

void paintByPixels(Painting& painting, Tile tile, Rect r) {
    for (unsigned i = 0; i < r.w * r.h; ++i) {
        int x = r.x + int(i % r.w), y = r.y + int(i / r.w);
        SetInRapp(x, y, tile.w, tile.h, unsigned(tile.drop), eDropVertical, &x, &y);
        ++painting[unsigned(y) * tile.w + unsigned(x)];
    }
}

/// Calls `check(rectangle, tile)` for small tiles and rectangles of up to `most` times their size near and far.
template <class Check>
void forRectangles(unsigned most, Check check) {
    RepeatInput random(seed);
    for (int i = 0; i < 20000; ++i) {
        const unsigned tileW = 1 + random.below(9), tileH = 1 + random.below(8);
        const Tile tile{tileW, tileH, random.between(0, int(tileH))};
        const int x = random.between(-30, 30), y = random.between(-30, 30), away = random.coin() ? 1000000 : 0;
        const unsigned w = random.below(most * tileW + 1), h = random.below(most * tileH + 1);
        const Rect rect{x + away, y - away, w, h};
        check(rect, tile);
        ASSERT_FALSE(testing::Test::HasFailure())
            << "seed " << seed << ": " << rect.x << ", " << rect.y << ", " << w << " x " << h << " in " << tileW
            << " x " << tileH << ", drop " << tile.drop;
    }
}

TEST(Covered, PaintsWhatThePlaneShowsEachPixelOnce) {
    forRectangles(1, [](Rect rect, Tile tile) {
        Painting expected(tile.w * tile.h), actual(tile.w * tile.h);
        paintByPixels(expected, tile, rect);
        const Written written = covered(rect, tile, false);
        paint(actual, tile, written);
        EXPECT_EQ(actual, expected);
        EXPECT_LE(*std::max_element(expected.begin(), expected.end()), 1) << "no larger than the repeat";
        EXPECT_EQ(written.pieces().size(), std::size_t(written.count)) << "no entry past the count";
    });
}

// Rectangles of every size, larger ones as the whole repeat. One that has no width and crosses the bottom edge leaves
// its rows out, as if it covered them.
TEST(CoveredAndUncovered, FillTheBufferTogether) {
    forRectangles(2, [](Rect rect, Tile tile) {
        Painting actual(tile.w * tile.h);
        paint(actual, tile, covered(rect, tile, true));
        paint(actual, tile, uncovered(rect, tile));
        int x = 0, y = 0;
        SetInRapp(rect.x, rect.y, tile.w, tile.h, unsigned(tile.drop), eDropVertical, &x, &y);
        const bool leavesOut = rect.w == 0 && rect.h<tile.h&& unsigned(y) + rect.h> tile.h;
        const unsigned filled = tile.w * (leavesOut ? tile.h - rect.h : tile.h);
        EXPECT_EQ(std::count(actual.begin(), actual.end(), 1), int(filled));
        EXPECT_EQ(std::count(actual.begin(), actual.end(), 0), int(tile.w * tile.h - filled));
    });
}

TEST(Pieces, AreThoseAndInThatOrder) {
    const Tile tile{100, 100, 50};
    using List = std::vector<Piece>;
    EXPECT_EQ(covered({90, 10, 20, 20}, tile, true).pieces(), (List{{0, 10, 60, 20}, {90, 10, 10, 20}}));
    EXPECT_EQ(covered({90, 90, 20, 20}, tile, true).pieces(),
              (List{{0, 10, 40, 20}, {90, 10, 0, 10}, {90, 10, 90, 10}}));
    EXPECT_EQ(covered({90, 30, 20, 40}, tile, true).pieces(),
              (List{{0, 10, 0, 20}, {0, 10, 80, 20}, {90, 10, 30, 40}}));
    EXPECT_EQ(uncovered({90, 10, 20, 20}, tile).pieces(),
              (List{{10, 80, 0, 100}, {90, 10, 0, 10}, {90, 10, 30, 70}, {0, 10, 0, 60}, {0, 10, 80, 20}}));
    EXPECT_EQ(uncovered({10, 90, 20, 20}, tile).pieces(), (List{{0, 10, 0, 100}, {30, 70, 0, 100}, {10, 20, 10, 80}}));
    EXPECT_EQ(uncovered({10, 20, 30, 40}, tile).pieces(),
              (List{{0, 10, 0, 100}, {40, 60, 0, 100}, {10, 30, 0, 20}, {10, 30, 60, 40}}));

    // Too large, or moved by a drop below 0: as the steps come to, outside the buffer too.
    EXPECT_EQ(covered({10, 10, 250, 20}, {100, 100, 0}, false).pieces(), (List{{0, 160, 10, 20}, {10, 90, 10, 20}}));
    EXPECT_EQ(covered({90, 10, 20, 20}, {100, 100, -95}, false).pieces(),
              (List{{0, 10, 105, -5}, {0, 10, 5, 20}, {90, 10, 10, 20}}));
    EXPECT_EQ(covered({10, 10, 0U - 8, 20}, tile, false).pieces(), (List{{10, -8, 10, 20}})) << "10 + w wraps to 2";
    EXPECT_EQ(covered({0, 0, 0, 0}, {0, 0, 5}, false).pieces(), (List{{0, 0, 0, 0}})) << "never divides";
}

TEST(Pieces, DependOnTheLayout) {
    const Tile tile{100, 100, 50};
    for (const _EDropKind kind : {eDropHorizontal, _EDropKind{0}, _EDropKind{3}}) {
        for (const Written& written :
             {covered({0, 0, 100, 9}, tile, true, kind), uncovered({0, 0, 9, 9}, tile, kind)}) {
            EXPECT_EQ(written.count, kind == eDropHorizontal ? untouched : 0);
            EXPECT_TRUE(written.pieces().empty());
        }
    }
    const Written whole = uncovered({5, 0, 100, 9}, tile);
    EXPECT_EQ(whole.count, 0);
    EXPECT_EQ(whole.pieces(), (std::vector<Piece>{{0, 100, 0, 100}})) << "entered, not counted";
}

void add(Checksum& sum, const Written& written) {
    sum.add(written.count);
    for (const auto& each : {written.x, written.w, written.y, written.h}) {
        for (const int value : each) sum.add(value);
    }
}

/// Anything goes: every second rectangle and tile are small, so that all ways of crossing an edge come up.
std::pair<Rect, Tile> anyRectangle(RepeatInput& random) {
    const bool small = random.coin();
    const int x = random.position(), y = random.position(), drop = small ? random.between(-60, 60) : random.position();
    const unsigned tileW = small ? 1 + random.below(50) : random.size(),
                   tileH = small ? 1 + random.below(50) : random.size();
    const unsigned w = small ? random.below(60) : random.anySize(), h = small ? random.below(60) : random.anySize();
    return {{x, y, w, h}, {tileW, tileH, drop}};
}

TEST(Pieces, HaveTheCommittedChecksums) {
    support::checkSums({
        {"CalcPosAndSizeInRepBuffer",
         [](RepeatInput& random, Checksum& sum) {
             const auto [rect, tile] = anyRectangle(random);
             add(sum, covered(rect, tile, random.oneIn(4)));
         },
         2216341913316557500U},
        {"CalcPosAndSizeInRepBufferInv",
         [](RepeatInput& random, Checksum& sum) {
             const auto [rect, tile] = anyRectangle(random);
             add(sum, uncovered(rect, tile));
         },
         11797486923104314486U},
    });
}

#if defined(OMNAR_CHECKED)
TEST(Pieces, ReportBrokenPreconditions) {
    static int n, a[6];
    support::checkBreaches({
        {"CalcPosAndSizeInRepBuffer", "count", "null",
         [] { CalcPosAndSizeInRepBuffer(1, 2, 3, 4, 9, 9, _EDropKind{0}, 0, nullptr, a, a, a, a, true); }},
        {"CalcPosAndSizeInRepBuffer", "pieceW", "null",
         [] { CalcPosAndSizeInRepBuffer(1, 2, 3, 4, 9, 9, eDropVertical, 0, &n, a, nullptr, a, a, true); }},
        {"CalcPosAndSizeInRepBuffer", "repW", "0",
         [] { CalcPosAndSizeInRepBuffer(1, 0, 3, 4, 0, 9, eDropVertical, 0, &n, a, a, a, a, true); }},
        {"CalcPosAndSizeInRepBufferInv", "repH", "0",
         [] { CalcPosAndSizeInRepBufferInv(0, 2, 3, 4, 9, 0, eDropVertical, 0, &n, a, a, a, a); }},
    });
}
#endif

}  // namespace
