// SPDX-License-Identifier: MIT

// The pieces of a rectangle in the repeat buffer: against placing each of its pixels, and known pieces in their order.
#include <algorithm>
#include <cstdint>

#include "tests/support/calls.h"

namespace {

using support::Input;

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
using Pieces = std::vector<Piece>;

/// The count and the entries that a call writes. The arrays have one entry more than the documented room.
struct Written {
    int count = untouched;
    Pieces pieces;

    template <class Call>
    explicit Written(Call call) {
        constexpr int room = 5;
        int x[room + 1], w[room + 1], y[room + 1], h[room + 1];
        for (int* const array : {x, w, y, h}) std::fill_n(array, room + 1, untouched);
        call(&count, x, w, y, h);
        for (int i = 0; i <= room && w[i] != untouched; ++i) pieces.push_back({x[i], w[i], y[i], h[i]});
    }
};

Written covered(Rect r, Tile t, bool wholeRepeatIfLarger = true, _EDropKind kind = eDropVertical) {
    return Written([=](int* count, int* x, int* w, int* y, int* h) {
        CalcPosAndSizeInRepBuffer(r.x, r.y, r.w, r.h, t.w, t.h, kind, t.drop, count, x, w, y, h, wholeRepeatIfLarger);
    });
}

Written uncovered(Rect r, Tile t, _EDropKind kind = eDropVertical) {
    return Written([=](int* count, int* x, int* w, int* y, int* h) {
        CalcPosAndSizeInRepBufferInv(r.x, r.y, r.w, r.h, t.w, t.h, kind, t.drop, count, x, w, y, h);
    });
}

/// How often each pixel of the buffer is painted, row by row.
using Painting = std::vector<int>;

/// Fails the test if a counted piece reaches outside the buffer.
void paint(Painting& painting, Tile tile, const Written& written) {
    for (int i = 0; i < written.count; ++i) {
        const Piece p = written.pieces.at(unsigned(i));
        ASSERT_TRUE(p.x >= 0 && p.y >= 0 && p.x + p.w <= int(tile.w) && p.y + p.h <= int(tile.h)) << p;
        for (int k = 0; k < p.w * p.h; ++k) ++painting[unsigned(p.y + k / p.w) * tile.w + unsigned(p.x + k % p.w)];
    }
}

Painting paintedByPixels(Rect r, Tile tile) {
    Painting painting(tile.w * tile.h);
    for (unsigned i = 0; i < r.w * r.h; ++i) {
        int x = r.x + int(i % r.w), y = r.y + int(i / r.w);
        SetInRapp(x, y, tile.w, tile.h, unsigned(tile.drop), eDropVertical, &x, &y);
        ++painting[unsigned(y) * tile.w + unsigned(x)];
    }
    return painting;
}

/// Fails the test if a piece is not what the plane shows at its place in the rectangle. Pieces left of the last one are
/// beyond the right edge of the tile, where the repeat is lower by the drop.
void expectPlaces(Rect r, Tile tile, const Written& written) {
    const Piece& last = written.pieces.back();
    for (const Piece& p : written.pieces) {
        if (p.w == 0 || p.h == 0) continue;
        const bool beyond = p.x < last.x;
        const int column = beyond ? int(tile.w) - last.x : 0;
        const int row = (p.y - last.y + (beyond ? tile.drop : 0) + int(tile.h)) % int(tile.h);
        int x = 0, y = 0;
        SetInRapp(r.x + column, r.y + row, tile.w, tile.h, unsigned(tile.drop), eDropVertical, &x, &y);
        EXPECT_TRUE(x == p.x && y == p.y && column + p.w <= int(r.w) && row + p.h <= int(r.h)) << p;
    }
}

// Rectangles no larger than the repeat show each pixel of the plane once. For rectangles of any size, larger ones as
// the whole repeat, covered and uncovered pieces fill the buffer; only the rows of a rectangle without width that
// crosses the bottom edge are missing.
TEST(Pieces, PaintWhatThePlaneShows) {
    Input random(seed);
    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        const unsigned tileW = 1 + random.below(9), tileH = 1 + random.below(8);
        const Tile tile{tileW, tileH, random.between(0, int(tileH))};
        const int x = random.between(-30, 30), y = random.between(-30, 30), distance = random.coin() ? 1000000 : 0;
        const unsigned w = random.below(2 * tileW + 1), h = random.below(2 * tileH + 1);
        const Rect rect{x + distance, y - distance, w, h};
        SCOPED_TRACE(testing::Message() << "seed " << seed << ", rectangle " << i);

        Painting filled(tileW * tileH), exact(tileW * tileH);
        if (w <= tileW && h <= tileH) {
            const Written pieces = covered(rect, tile, false);
            paint(exact, tile, pieces);
            EXPECT_EQ(exact, paintedByPixels(rect, tile));
            EXPECT_LE(*std::max_element(exact.begin(), exact.end()), 1);
            expectPlaces(rect, tile, pieces);
            EXPECT_EQ(pieces.pieces.size(), std::size_t(pieces.count)) << "an entry past the count";
        }
        paint(filled, tile, covered(rect, tile));
        paint(filled, tile, uncovered(rect, tile));
        int placedX = 0, placedY = 0;
        SetInRapp(rect.x, rect.y, tileW, tileH, unsigned(tile.drop), eDropVertical, &placedX, &placedY);
        const bool crossesBottom = unsigned(placedY) + h > tileH;
        const unsigned missingRows = w == 0 && crossesBottom && h < tileH ? h : 0;
        EXPECT_EQ(std::count(filled.begin(), filled.end(), 0), tileW * missingRows);
        EXPECT_LE(*std::max_element(filled.begin(), filled.end()), 1);
    }
}

TEST(Pieces, AreTheseInThisOrder) {
    const Tile tile{100, 100, 50};
    EXPECT_EQ(covered({90, 30, 20, 40}, tile).pieces, (Pieces{{0, 10, 0, 20}, {0, 10, 80, 20}, {90, 10, 30, 40}}));
    EXPECT_EQ(covered({90, 90, 20, 20}, tile).pieces, (Pieces{{0, 10, 40, 20}, {90, 10, 0, 10}, {90, 10, 90, 10}}));
    // The part beyond the right edge ends at row 0, begins there, or ends at the last row: no piece without height.
    EXPECT_EQ(covered({90, 20, 20, 30}, tile).pieces, (Pieces{{0, 10, 70, 30}, {90, 10, 20, 30}}));
    EXPECT_EQ(covered({90, 50, 20, 20}, tile).pieces, (Pieces{{0, 10, 0, 20}, {90, 10, 50, 20}}));
    EXPECT_EQ(covered({90, 80, 20, 70}, tile).pieces, (Pieces{{0, 10, 30, 70}, {90, 10, 0, 50}, {90, 10, 80, 20}}));
    EXPECT_EQ(uncovered({90, 10, 20, 20}, tile).pieces,
              (Pieces{{10, 80, 0, 100}, {90, 10, 0, 10}, {90, 10, 30, 70}, {0, 10, 0, 60}, {0, 10, 80, 20}}));
    EXPECT_EQ(uncovered({5, 0, 100, 9}, tile).pieces, (Pieces{{0, 100, 0, 100}})) << "written, but not counted";

    // Rectangles that are too large, and drops below 0: pieces may lie outside the buffer.
    EXPECT_EQ(covered({10, 10, 250, 20}, {100, 100, 0}, false).pieces, (Pieces{{0, 160, 10, 20}, {10, 90, 10, 20}}));
    EXPECT_EQ(covered({90, 10, 20, 20}, {100, 100, -95}).pieces,
              (Pieces{{0, 10, 105, -5}, {0, 10, 5, 20}, {90, 10, 10, 20}}));
    EXPECT_EQ(covered({10, 10, 0U - 8, 20}, tile).pieces, (Pieces{{10, -8, 10, 20}})) << "10 + w wraps to 2";
    EXPECT_EQ(covered({0, 0, 0, 0}, {0, 0, 5}).pieces, (Pieces{{0, 0, 0, 0}})) << "never divides";

    for (const _EDropKind kind : {eDropHorizontal, _EDropKind{0}, _EDropKind{3}}) {
        for (const Written& each : {covered({0, 0, 9, 9}, tile, true, kind), uncovered({0, 0, 9, 9}, tile, kind)}) {
            EXPECT_EQ(each.count, kind == eDropHorizontal ? untouched : 0);
            EXPECT_EQ(each.pieces, Pieces{});
        }
    }
}

TEST(Pieces, HaveTheCommittedChecksums) {
    support::expectChecksum("CalcPosAndSizeInRepBuffer", CalcPosAndSizeInRepBuffer, 2209974733570286779U);
    support::expectChecksum("CalcPosAndSizeInRepBufferInv", CalcPosAndSizeInRepBufferInv, 13903335431509693272U);
}

}  // namespace
