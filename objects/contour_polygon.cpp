// SPDX-License-Identifier: MIT

// The contour polygon of a shape.

#include <algorithm>
#include <climits>
#include <memory>
#include <new>

#include "buffers/host/contract.h"
#include "buffers/host/large_block.h"
#include "buffers/host/module.h"
#include "buffers/host/services.h"
#include "buffers/region.h"
#include "objects/outline.h"

using namespace omnar;

namespace {

/// Appends vertices to the caller's polygon, all through one coordinate pair of the host.
class Vertices {
public:
    Vertices(ICoordPolygon* polygon, long line) : polygon_(polygon) {
        double unused = 0.0;  // hosts may rely on the queries
        throwIfFailed(polygon->GetResX(&unused));
        throwIfFailed(polygon->GetResY(&unused));
        pair_.reset(createCoordPair("contour_polygon.cpp", line, 1.0));
        if (pair_ == nullptr) throw COmnarException(outOfMemory, "contour_polygon.cpp", line, 0);
    }

    void append(double x, double y) const {
        throwIfFailed(pair_->SetCoords(x, y));
        throwIfFailed(polygon_->Append(pair_.get()));
    }

private:
    struct Release {
        void operator()(ICoordPair* pair) const { pair->Release(); }
    };
    ICoordPolygon* polygon_;
    std::unique_ptr<ICoordPair, Release> pair_;
};

/// A polygon of which the first half is added forwards and the second half backwards.
class Outline {
public:
    explicit Outline(std::size_t pairs) : points_(2 * pairs), back_(2 * pairs) {}

    void add(CPoint forwards, CPoint backwards) {
        points_[front_++] = forwards;
        points_[--back_] = backwards;
    }

    /// All points in order. Closes the gap between the halves.
    std::span<const CPoint> close() const {
        CPoint* const gap = points_.begin() + front_;
        return {points_.begin(), std::shift_left(gap, points_.end(), static_cast<std::ptrdiff_t>(back_ - front_))};
    }

private:
    LargeArray<CPoint> points_;
    std::size_t front_ = 0;
    std::size_t back_;
};

/// Collects the first and the last shape pixel of every row and of every column. The outlines are those of the shape
/// turned by a quarter: x is a pixel's row, y its column counted from the right.
void collectOutlines(const L08* shape, unsigned width, unsigned height, L08 background, Outline& rowOutline,
                     Outline& columnOutline) {
    const auto isShape = [=](L08 pixel) { return pixel != background; };
    const auto point = [=](unsigned row, std::size_t column) {
        return CPoint{static_cast<int>(row), static_cast<int>(width - 1 - column)};
    };
    constexpr unsigned none = UINT_MAX;
    const LargeArray<unsigned> top(width), bottom(width);
    std::fill(top.begin(), top.end(), none);

    Plane rows(shape, width, height, 0, 0);
    for (unsigned y = 0; y < height; ++y, rows.advance()) {
        const std::span row(rows.row(), width);
        const auto first = static_cast<std::size_t>(std::find_if(row.begin(), row.end(), isShape) - row.begin());
        if (first == width) continue;
        const auto end = static_cast<std::size_t>(row.rend() - std::find_if(row.rbegin(), row.rend(), isShape));
        rowOutline.add(point(y, first), point(y, end - 1));
        for (std::size_t x = first; x < end; ++x) {
            top[x] = isShape(row[x]) ? std::min(top[x], y) : top[x];
            bottom[x] = isShape(row[x]) ? y : bottom[x];
        }
    }
    for (std::size_t x = 0; x < width; ++x) {
        if (top[x] != none) columnOutline.add(point(top[x], x), point(bottom[x], x));
    }
}

/// Walks round the first connected component of a raster. Opposite edges of the raster are joined, so that a walk need
/// not return to its start. It marks each position with its direction and ends before it repeats one.
class Walk {
public:
    explicit Walk(Raster raster) : raster_(raster) {}

    void trace(const Vertices& vertices) {
        const std::uint8_t* const end = raster_.row(raster_.height);
        const std::uint8_t* const first = std::find<const std::uint8_t*>(raster_.pixels, end, inside);
        if (first == end) return;

        const std::ptrdiff_t index = first - raster_.pixels;
        const Position start{static_cast<int>(index % raster_.width), static_cast<int>(index / raster_.width)};
        position_ = start;
        while (markFirstVisit()) {
            const Position previous = position_;
            if (!step()) break;
            vertices.append(previous.x, previous.y);
            if (position_ == start) break;
        }
        vertices.append(start.x, start.y);
    }

private:
    struct Position {
        int x, y;
        bool operator==(const Position&) const = default;
    };
    static constexpr std::uint8_t inside = 1;

    std::uint8_t& pixel(Position position) const { return raster_.row(position.y)[position.x]; }

    /// Uses one bit of the pixel for each direction of a walk. These are even.
    bool markFirstVisit() const {
        const auto visited = static_cast<std::uint8_t>(inside << (1 + direction_ / 2));
        const bool isFirst = (pixel(position_) & visited) == 0;
        pixel(position_) |= visited;
        return isFirst;
    }

    static constexpr int wrapped(int coordinate, int extent) {
        return coordinate < 0 ? extent - 1 : coordinate == extent ? 0 : coordinate;
    }

    /// The neighbour in one of eight directions, counter-clockwise from east.
    Position neighbour(unsigned direction) const {
        constexpr int dx[] = {1, 1, 0, -1, -1, -1, 0, 1}, dy[] = {0, -1, -1, -1, 0, 1, 1, 1};
        return {wrapped(position_.x + dx[direction % 8], raster_.width),
                wrapped(position_.y + dy[direction % 8], raster_.height)};
    }

    /// Steps to the first pixel inside of front left, front and front right, after as many right turns as it takes.
    /// Returns false for a pixel without neighbours.
    bool step() {
        for (int quarter = 0; quarter < 4; ++quarter) {
            for (const unsigned turn : {1U, 0U, 7U}) {
                const Position next = neighbour(direction_ + turn);
                if (pixel(next) == 0) continue;
                position_ = next;
                if (turn == 1) direction_ = (direction_ + 2) % 8;
                return true;
            }
            direction_ = (direction_ + 6) % 8;
        }
        return false;
    }

    Raster raster_;
    Position position_{};
    unsigned direction_ = 0;
};

/// Appends the shape's contour. Returns false without a shape pixel or a raster to fill.
bool traceShape(const L08* shape, unsigned width, unsigned height, L08 background, ICoordPolygon* polygon) {
    if (width == 0 || height == 0 || width > INT_MAX || height > INT_MAX) return false;
    Outline rowOutline(height), columnOutline(width);
    collectOutlines(shape, width, height, background, rowOutline, columnOutline);
    const Outlines outlines{rowOutline.close(), columnOutline.close()};
    if (outlines.rowOutline.empty()) return false;

    const LargeArray<std::uint8_t> pixels(std::nothrow, std::size_t{width} * height);
    const Raster raster{pixels.data(), static_cast<int>(width), static_cast<int>(height)};
    if (pixels.data() == nullptr || !fillIntersection(outlines, raster)) return false;
    Walk(raster).trace(Vertices(polygon, __LINE__));
    return true;
}

}  // namespace

void GetContourPolygonFromBuffer2(const unsigned char* shape, unsigned int width, unsigned int height,
                                  unsigned char background, ICoordPolygon* polygon) {
    OMNAR_EXPECT_NOT_NULL_IF(width != 0 && height != 0, ", unless width or height is 0", shape);
    OMNAR_EXPECT_NOT_NULL(polygon, g_pLargeAllocator);
    const Vertices vertices(polygon, __LINE__);
    if (traceShape(shape, width, height, background, polygon)) return;
    vertices.append(0, 0);
    vertices.append(0, height);
    vertices.append(width, height);
    vertices.append(width, 0);
}
