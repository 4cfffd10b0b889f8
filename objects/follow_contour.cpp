// SPDX-License-Identifier: MIT

// Following the outer contour of an object.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "buffers/host/contract.h"
#include "numeric/integers.h"

using namespace omnar;

namespace {

struct Direction {
    int dx, dy;
};

/// Clockwise from the upper left, so that even directions are diagonal and odd ones straight.
constexpr Direction directions[8] = {{-1, -1}, {0, -1}, {1, -1}, {1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}};

/// Of a diagonal step and of a straight one. The root is taken while the library is loaded.
const double stepLengths[2] = {std::sqrt(2.0), 1.0};

/// Wide enough for a walk that runs on over the ends of rows.
struct Position {
    std::int64_t x, y;
    bool operator==(const Position&) const = default;
};

/// Walks from pixel to pixel of one value. A neighbour lies at a plain offset in memory: beyond the end of a row is the
/// next row, beyond the ends of the buffer there is nothing.
template <class T>
class Walker {
public:
    Walker(const T* buffer, const T* start, int width, int height, T value)
        : buffer_(buffer),
          pixels_(static_cast<std::uint64_t>(std::int64_t{width} * height)),
          width_(width),
          index_(start - buffer),
          position_{index_ % width, index_ / width},
          value_(value) {}

    const Position& position() const { return position_; }

    /// Of the last step.
    double stepLength() const { return stepLengths[direction_ % 2]; }

    /// Steps to the first neighbour that holds the value, clockwise from the one after where it came from. False if none
    /// does. The direction is kept in the program counter: every offset below is a constant, and the processor foresees
    /// a turn by the way that led there.
    bool step() {
        switch (direction_) {
            case 0:
                return stepAfter<0>();
            case 1:
                return stepAfter<1>();
            case 2:
                return stepAfter<2>();
            case 3:
                return stepAfter<3>();
            case 4:
                return stepAfter<4>();
            case 5:
                return stepAfter<5>();
            case 6:
                return stepAfter<6>();
            default:
                return stepAfter<7>();
        }
    }

private:
    template <unsigned last>
    bool stepAfter() {
        constexpr unsigned back = last + 4;
        return stepToFirst<back + 1>(std::make_index_sequence<8>());
    }

    template <unsigned from, std::size_t... turn>
    bool stepToFirst(std::index_sequence<turn...>) {
        return (stepTo<(from + turn) % 8>() || ...);
    }

    template <unsigned direction>
    bool stepTo() {
        constexpr Direction way = directions[direction];
        const std::int64_t index = index_ + way.dy * width_ + way.dx;
        const bool within = static_cast<std::uint64_t>(index) < pixels_;  // a negative one is far beyond
        if (!within || buffer_[index] != value_) return false;
        index_ = index;
        position_.x += way.dx;
        position_.y += way.dy;
        direction_ = direction;
        return true;
    }

    const T* buffer_;
    std::uint64_t pixels_;
    std::int64_t width_;
    std::int64_t index_;
    Position position_;
    T value_;
    unsigned direction_ = 6;  // as if it had come from the upper right, so that the search begins at the right
};

}  // namespace

template <class T>
double FollowContour(const T* buffer, const T* startPixel, int width, int height, int areaX, int areaY, int areaW,
                     int areaH, T objectValue, CPoint* points, int* pointCount) {
    OMNAR_EXPECT_NOT_NULL(buffer);
    OMNAR_EXPECT_AS(width, width > 0, "1 or more");
    OMNAR_EXPECT_AS(startPixel, startPixel >= buffer && startPixel - buffer < std::int64_t{width} * height,
                    "buffer <= startPixel < buffer + width * height");
    Walker<T> walker(buffer, startPixel, width, height, objectValue);
    const Position start = walker.position();
    const Position end{(Wrapping(areaX) + areaW).value(), (Wrapping(areaY) + areaH).value()};
    const double limit = (Wrapping(areaW) * areaH).value();  // stops a walk that circles without meeting its start
    double length = 0.0;
    int recorded = 0;
    for (Position left = start; walker.step(); left = walker.position()) {
        if (points != nullptr) points[recorded++] = {static_cast<int>(left.x), static_cast<int>(left.y)};
        const Position& at = walker.position();
        const bool inside = at.x >= areaX && at.x < end.x && at.y >= areaY && at.y < end.y;
        if (!inside || at == start || length > limit) break;
        length += walker.stepLength();
    }
    if (pointCount != nullptr) *pointCount = recorded;
    return length;
}

template double FollowContour(const unsigned char*, const unsigned char*, int, int, int, int, int, int, unsigned char,
                              CPoint*, int*);
template double FollowContour(const int*, const int*, int, int, int, int, int, int, int, CPoint*, int*);
