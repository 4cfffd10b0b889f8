// SPDX-License-Identifier: MIT

// The outline polygon of a shape.

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

/// Hands vertices to the caller's polygon; one pair of the host's carries them all.
class Vertices {
public:
    Vertices(ICoordPolygon* polygon, long line) : polygon_(polygon) {
        double unused = 0.0;  // the host sees that its settings were asked for
        check(polygon->GetResX(&unused));
        check(polygon->GetResY(&unused));
        pair_.reset(createCoordPair("polygon.cpp", line, 1.0));
        if (pair_ == nullptr) throw COmnarException(outOfMemory, "polygon.cpp", line, 0);
    }

    void append(double x, double y) const {
        check(pair_->SetCoords(x, y));
        check(polygon_->Append(pair_.get()));
    }

private:
    struct Release {
        void operator()(ICoordPair* pair) const { pair->Release(); }
    };
    ICoordPolygon* polygon_;
    std::unique_ptr<ICoordPair, Release> pair_;
};

/// A polygon that grows at both ends of a list: its first half forwards, its second half, which is to be read in reverse,
/// from the list's end back.
class Outline {
public:
    explicit Outline(std::size_t pairs) : points_(2 * pairs), back_(2 * pairs) {}

    void add(CPoint first, CPoint second) {
        points_[front_++] = first;
        points_[--back_] = second;
    }

    /// All points in order; the gap between the halves is closed.
    std::span<const CPoint> close() const {
        CPoint* const gap = points_.begin() + front_;
        return {points_.begin(), std::shift_left(gap, points_.end(), static_cast<std::ptrdiff_t>(back_ - front_))};
    }

private:
    LargeArray<CPoint> points_;
    std::size_t front_ = 0;
    std::size_t back_;
};

/// Collects the first and the last shape pixel of every row, and of every column. A pixel's point is its row and its
/// column counted from the right: the outlines lie on the shape turned by a quarter.
void collect(const L08* shape, unsigned width, unsigned height, L08 background, Outline& ofRows, Outline& ofColumns) {
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
        const auto behind = static_cast<std::size_t>(row.rend() - std::find_if(row.rbegin(), row.rend(), isShape));
        ofRows.add(point(y, first), point(y, behind - 1));
        for (std::size_t x = first; x < behind; ++x) {
            top[x] = isShape(row[x]) ? std::min(top[x], y) : top[x];
            bottom[x] = isShape(row[x]) ? y : bottom[x];
        }
    }
    for (std::size_t x = 0; x < width; ++x) {
        if (top[x] != none) ofColumns.add(point(top[x], x), point(bottom[x], x));
    }
}

/// The walk round the first region of a raster. The raster's edges are no border to it: what would leave the raster comes
/// back on the opposite side. In such a world it need not come back to its start, so it marks where it has been, and
/// ends where it would begin to repeat itself.
class Walk {
public:
    explicit Walk(Raster raster) : raster_(raster) {}

    void trace(const Vertices& vertices) {
        const std::uint8_t* const end = raster_.row(raster_.height);
        const std::uint8_t* const first = std::find<const std::uint8_t*>(raster_.pixels, end, inside);
        if (first == end) return;

        const std::ptrdiff_t place = first - raster_.pixels;
        const Position start{static_cast<int>(place % raster_.width), static_cast<int>(place / raster_.width)};
        at_ = start;
        while (markFirstVisit()) {
            const Position left = at_;
            if (!step()) break;
            vertices.append(left.x, left.y);
            if (at_ == start) break;
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

    /// One bit of the pixel for each direction that the walk can have: they are all even.
    bool markFirstVisit() const {
        const auto visited = static_cast<std::uint8_t>(inside << (1 + direction_ / 2));
        const bool isFirst = (pixel(at_) & visited) == 0;
        pixel(at_) |= visited;
        return isFirst;
    }

    static constexpr int wrapped(int position, int extent) {
        return position < 0 ? extent - 1 : position == extent ? 0 : position;
    }

    /// The neighbour in one of eight directions, counter-clockwise from east.
    Position neighbour(unsigned direction) const {
        constexpr int dx[] = {1, 1, 0, -1, -1, -1, 0, 1}, dy[] = {0, -1, -1, -1, 0, 1, 1, 1};
        return {wrapped(at_.x + dx[direction % 8], raster_.width), wrapped(at_.y + dy[direction % 8], raster_.height)};
    }

    /// Goes on to the first pixel inside of front left, front and front right, turning right by a quarter as long as there
    /// is none. False for a pixel that has no neighbour.
    bool step() {
        for (int quarter = 0; quarter < 4; ++quarter) {
            for (const unsigned aside : {1U, 0U, 7U}) {
                const Position next = neighbour(direction_ + aside);
                if (pixel(next) == 0) continue;
                at_ = next;
                if (aside == 1) direction_ = (direction_ + 2) % 8;
                return true;
            }
            direction_ = (direction_ + 6) % 8;
        }
        return false;
    }

    Raster raster_;
    Position at_{};
    unsigned direction_ = 0;
};

/// Appends the shape's outline. False if there is nothing to go round: no shape, or no bitmap to fill.
bool traceShape(const L08* shape, unsigned width, unsigned height, L08 background, ICoordPolygon* polygon) {
    if (width == 0 || height == 0 || width > INT_MAX || height > INT_MAX) return false;
    Outline ofRows(height), ofColumns(width);
    collect(shape, width, height, background, ofRows, ofColumns);
    const Outlines outlines{ofRows.close(), ofColumns.close()};
    if (outlines.ofRows.empty()) return false;

    const LargeArray<std::uint8_t> pixels(std::nothrow, std::size_t{width} * height);
    const Raster raster{pixels.data(), static_cast<int>(width), static_cast<int>(height)};
    if (pixels.data() == nullptr || !fillOverlap(outlines, raster)) return false;
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
