// SPDX-License-Identifier: MIT

// The contour polygon of a shape against a model that tests every pixel against every edge.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>
#include <ostream>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "buffers/host/large_block.h"
#include "objects/outline.h"
#include "tests/support/calls.h"
#include "tests/support/random.h"

namespace {

using support::Point;
using support::Random;
using Points = std::vector<Point>;

/// One string per row; '.' is background.
using Shape = std::vector<std::string>;

int mod(int a, int b) { return (a % b + b) % b; }

/// True if the ray from (x, y + 1) to the left meets the polygon an odd number of times.
bool isInside(const std::vector<std::array<long, 2>>& polygon, long x, long y) {
    bool inside = false;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        auto [ax, ay] = polygon[i];
        auto [bx, by] = polygon[(i + 1) % polygon.size()];
        if ((ay > y) == (by > y)) continue;
        const long side = (bx - ax) * (y + 1 - ay) - (x - ax) * (by - ay);
        if (by > ay ? side <= 0 : side >= 0) inside = !inside;
    }
    return inside;
}

std::set<std::pair<int, int>> modelRaster(const Shape& shape) {
    const int height = static_cast<int>(shape.size()), width = static_cast<int>(shape[0].size());
    std::vector<std::array<long, 2>> rowOutline, columnOutline;
    const auto addTo = [&](auto& outline, bool byRows, bool forwards) {
        const int lines = byRows ? height : width, length = byRows ? width : height;
        std::vector<std::array<long, 2>> found;
        for (int line = 0; line < lines; ++line) {
            for (int i = 0; i < length; ++i) {
                const int position = forwards ? i : length - 1 - i;
                const int row = byRows ? line : position, column = byRows ? position : line;
                if (shape[std::size_t(row)][std::size_t(column)] == '.') continue;
                found.push_back({row, width - 1 - column});
                break;
            }
        }
        if (!forwards) std::reverse(found.begin(), found.end());
        outline.insert(outline.end(), found.begin(), found.end());
    };
    for (const bool forwards : {true, false}) {
        addTo(rowOutline, true, forwards);
        addTo(columnOutline, false, forwards);
    }
    std::set<std::pair<int, int>> inside;  // (row, column)
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (isInside(rowOutline, x, y) && isInside(columnOutline, x, y)) inside.emplace(y, x);
        }
    }
    return inside;
}

Points modelPolygon(const Shape& shape) {
    const int height = static_cast<int>(shape.size()), width = static_cast<int>(shape[0].size());
    const bool isEmpty = std::all_of(shape.begin(), shape.end(),
                                     [](const std::string& row) { return row.find('#') == std::string::npos; });
    if (isEmpty) return {{0, 0}, {0, double(height)}, {double(width), double(height)}, {double(width), 0}};
    const auto inside = modelRaster(shape);
    if (inside.empty()) return {};

    const auto start = *inside.begin();
    int y = start.first, x = start.second;
    std::array<int, 2> ahead{1, 0};  // x, y
    Points points;
    std::set<std::tuple<int, int, int, int>> states;
    const auto turnRight = [&] { ahead = {-ahead[1], ahead[0]}; };
    while (states.emplace(x, y, ahead[0], ahead[1]).second) {
        const auto tryStep = [&](int left) {  // 1: diagonally to the left, 0: straight, -1: to the right
            const std::pair next{mod(y + ahead[1] - left * ahead[0], height),
                                 mod(x + ahead[0] + left * ahead[1], width)};
            if (!inside.contains(next)) return false;
            points.push_back({double(x), double(y)});
            std::tie(y, x) = next;
            return true;
        };
        int turns = 0;
        for (; turns < 4; ++turns, turnRight()) {
            if (tryStep(1)) {
                for (int i = 0; i < 3; ++i) turnRight();
                break;
            }
            if (tryStep(0) || tryStep(-1)) break;
        }
        if (turns == 4 || std::pair(y, x) == start) break;
    }
    points.push_back({double(start.second), double(start.first)});
    return points;
}

/// A host of which one call fails, and that counts what is not given back.
class Host final : public LargeAllocatorItf, public ICoordPolygon {
public:
    Host() : before_(g_pLargeAllocator) {
        g_pLargeAllocator = this;
        SHostServices services;
        services.createCoordPair = [](const char*, long, double) -> ICoordPair* { return new Pair; };
        SetHostServices(&services);
        current = this;
    }
    ~Host() {
        SetHostServices(nullptr);
        g_pLargeAllocator = before_;
    }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    void* Alloc(std::size_t bytes) override {
        if (fails()) return nullptr;
        ++held;
        return std::malloc(bytes + 1);
    }
    void Free(void* block) override {
        if (block != nullptr) --held;
        std::free(block);
    }
    int GetResX(double*) override { return ++queriesX, status(); }
    int GetResY(double*) override { return ++queriesY, status(); }
    int Append(ICoordPair* vertex) override {
        if (fails()) return failure;
        Point point{};
        vertex->GetCoords(&point.x, &point.y);
        points.push_back(point);
        return 0;
    }

    static constexpr int failure = -77;

    Points points;
    int queriesX = 0, queriesY = 0;
    int held = 0;      ///< blocks and pairs that are not given back
    int calls = 0;     ///< that can fail
    int failing = -1;  ///< the number of the call that fails

private:
    class Pair final : public ICoordPair {
    public:
        Pair() { ++current->held; }
        int SetCoords(double x, double y) override {
            position_ = {x, y};
            return current->status();
        }
        int GetCoords(double* x, double* y) override {
            *x = position_.x, *y = position_.y;
            return 0;
        }
        void Release() override {
            --current->held;
            delete this;
        }

    private:
        Point position_{};
    };

    bool fails() { return calls++ == failing; }
    int status() { return fails() ? failure : 1; }

    static inline Host* current = nullptr;
    LargeAllocatorItf* before_;
};

void trace(const Shape& shape, ICoordPolygon* polygon, unsigned char background = '.') {
    std::string pixels;
    for (const std::string& row : shape) pixels += row;
    GetContourPolygonFromBuffer2(reinterpret_cast<const unsigned char*>(pixels.data()),
                                 static_cast<unsigned>(shape[0].size()), static_cast<unsigned>(shape.size()),
                                 background, polygon);
}

Points polygonOf(const Shape& shape) {
    Host host;
    trace(shape, &host);
    EXPECT_EQ(host.held, 0);
    return host.points;
}

/// Blobs, lines, corners and noise, up to 20 x 20.
Shape randomShape(Random& random) {
    const unsigned width = 1 + random.below(20), height = 1 + random.below(20);
    Shape shape(height, std::string(width, '.'));
    const auto paint = [&](unsigned left, unsigned top, unsigned w, unsigned h, char value) {
        for (unsigned y = top; y < std::min(height, top + h); ++y) {
            for (unsigned x = left; x < std::min(width, left + w); ++x) shape[y][x] = value;
        }
    };
    for (unsigned strokes = random.below(5); strokes > 0; --strokes) {
        const unsigned left = random.below(width), top = random.below(height);
        const unsigned w = 1 + random.below(width), h = 1 + random.below(height);
        paint(left, top, w, h, random.oneIn(4) ? '.' : '#');
    }
    for (unsigned specks = random.below(3) * random.below(20); specks > 0; --specks) {
        const unsigned left = random.below(width), top = random.below(height);
        paint(left, top, 1, 1, random.oneIn(3) ? '.' : '#');
    }
    return shape;
}

std::string text(const Shape& shape) {
    std::string all;
    for (const std::string& row : shape) all += row + '\n';
    return all;
}

TEST(Polygon, KnownShapes) {
    EXPECT_EQ(polygonOf({"....", "....", "...."}), (Points{{0, 0}, {0, 3}, {4, 3}, {4, 0}}));
    EXPECT_EQ(polygonOf({".....", ".###.", ".###.", ".###.", "....."}),
              (Points{{1, 1}, {2, 1}, {2, 2}, {1, 2}, {1, 1}}));
    EXPECT_EQ(polygonOf({".....", ".###.", ".###.", "....."}), (Points{{1, 1}, {1, 2}, {1, 1}})) << "2 x 1 pixels";
    EXPECT_EQ(polygonOf({".....", ".##..", ".##..", "....."}), (Points{{1, 2}})) << "a single pixel";
    EXPECT_EQ(polygonOf({"....", ".##.", "...."}), Points{}) << "a line has no area";
    EXPECT_EQ(polygonOf({"####", "####", "..##"}), (Points{{0, 0}, {1, 0}, {0, 1}, {0, 2}, {0, 0}}))
        << "would circle over the edge of the bitmap forever";
}

TEST(Polygon, EqualsItsModel) {
    int traced = 0;
    for (std::uint64_t seed = 1; seed <= 4000; ++seed) {
        Random random(seed);
        const Shape shape = randomShape(random);
        const Points expected = modelPolygon(shape);
        ASSERT_EQ(polygonOf(shape), expected) << "seed " << seed << '\n' << text(shape);
        if (expected.size() > 4) ++traced;
    }
    EXPECT_GT(traced, 1500);
}

TEST(Polygon, AnythingButTheBackgroundIsShape) {
    Host host;
    const unsigned char buffer[] = {0, 255, 1, 7, 7, 0, 128, 9, 3, 7, 7, 7};
    GetContourPolygonFromBuffer2(buffer, 4, 3, 7, &host);
    Host marked;
    trace({"###.", ".###", "#..."}, &marked);
    EXPECT_EQ(host.points, marked.points);
}

TEST(Polygon, EmptyBuffersGiveFourCorners) {
    Host host;
    GetContourPolygonFromBuffer2(nullptr, 5, 0, 0, &host);
    EXPECT_EQ(host.points, (Points{{0, 0}, {0, 0}, {5, 0}, {5, 0}}));
}

// Each call of the host fails once: everything is given back, and the polygon keeps the vertices appended before.
TEST(Polygon, FailuresOfTheHostLeakNothing) {
    const Shape shape{"......", ".####.", ".####.", ".#....", "......"};
    for (const Shape& each : {shape, Shape{"..", ".."}}) {
        const Points complete = polygonOf(each);
        Host counting;
        trace(each, &counting);
        const int walks = each == shape ? 1 : 0;  // a walk queries both settings again
        EXPECT_EQ(std::pair(counting.queriesX, counting.queriesY), std::pair(1 + walks, 1 + walks));
        int exceptions = 0;
        for (int call = 0; call < counting.calls; ++call) {
            Host host;
            host.failing = call;
            try {
                trace(each, &host);
                EXPECT_EQ(host.points, (Points{{0, 0}, {0, 5}, {6, 5}, {6, 0}})) << "the bitmap failed";
            } catch (const COmnarException& error) {
                ++exceptions;
                EXPECT_TRUE(error.code() == Host::failure || error.code() == omnar::outOfMemory) << error.code();
                ASSERT_LE(host.points.size(), complete.size());
                EXPECT_TRUE(std::equal(host.points.begin(), host.points.end(), complete.begin()));
            }
            EXPECT_EQ(host.held, 0) << "call " << call;
        }
        EXPECT_EQ(exceptions, counting.calls - walks) << "the bitmap of a walk is the only one that does not throw";
    }
}

TEST(Polygon, HasTheCommittedChecksum) {
    std::uint64_t sum = 0;
    for (std::uint64_t seed = 1; seed <= 2000; ++seed) {
        Random random(seed);
        Host host;
        trace(randomShape(random), &host);
        for (const Point& point : host.points) {
            sum = (std::rotl(sum, 23) ^ static_cast<std::uint64_t>(point.x * 4096 + point.y)) * 0x9E3779B97F4A7C15U;
        }
    }
    EXPECT_EQ(sum, 7370089816364631442U);
}

#if defined(_WIN32)
// Arbitrary polygons, which cross themselves and the edges of the bitmap.
TEST(Polygon, TheSystemFillsTheSamePixels) {
    std::ptrdiff_t filled = 0;
    for (std::uint64_t seed = 1; seed <= 3000; ++seed) {
        Random random(seed);
        const unsigned range = random.oneIn(8) ? 400 : 50, extent = range * 4 / 5;
        std::vector<CPoint> polygons[2];
        for (auto& polygon : polygons) {
            for (unsigned count = 2 + random.below(12); count > 0; --count) {
                const int x = static_cast<int>(random.below(range));
                polygon.push_back({x, static_cast<int>(random.below(range))});
            }
        }
        const int width = 1 + static_cast<int>(random.below(extent));
        const int height = 1 + static_cast<int>(random.below(extent));
        std::vector<std::uint8_t> portable(std::size_t{extent} * extent), windows(portable);
        const omnar::Outlines outlines{polygons[0], polygons[1]};
        ASSERT_TRUE(omnar::fillIntersectionPortable(outlines, {portable.data(), width, height}));
        ASSERT_TRUE(omnar::fillIntersectionWindows(outlines, {windows.data(), width, height}));
        ASSERT_EQ(portable, windows) << "seed " << seed;
        filled += std::count(portable.begin(), portable.end(), 1);
    }
    EXPECT_GT(filled, 300000);
}
#endif

}  // namespace
