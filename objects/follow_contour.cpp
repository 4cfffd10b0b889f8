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

/// Clockwise from the upper left: even directions are diagonal.
constexpr Direction directions[8] = {{-1, -1}, {0, -1}, {1, -1}, {1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}};

/// Of a diagonal and a straight step. Computed while the module loads.
const double stepLengths[2] = {std::sqrt(2.0), 1.0};

/// 64 bits, for a walk that wraps at the ends of rows: x may leave the range of int.
struct Position {
    std::int64_t x, y;
    bool operator==(const Position&) const = default;
};

/// Steps from pixel to pixel of one value. Neighbours lie at fixed offsets in memory: past the end of a row is the next
/// row. Nothing lies past the ends of the buffer.
template <class T>
class Walk {
public:
    Walk(const T* buffer, const T* start, int width, int height, T value)
        : buffer_(buffer),
          pixels_(static_cast<std::uint64_t>(std::int64_t{width} * height)),
          width_(width),
          index_(start - buffer),
          position_{index_ % width, index_ / width},
          value_(value) {}

    const Position& position() const { return position_; }

    /// Of the last step.
    double stepLength() const { return stepLengths[direction_ % 2]; }

    /// Steps to the first neighbour that holds the value, clockwise from the one after the previous pixel. Returns
    /// false if none does. One function per direction makes each offset a constant and lets the processor predict turns
    /// by the direction.
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

    template <unsigned first, std::size_t... turn>
    bool stepToFirst(std::index_sequence<turn...>) {
        return (stepTo<(first + turn) % 8>() || ...);
    }

    template <unsigned direction>
    bool stepTo() {
        constexpr Direction offset = directions[direction];
        const std::int64_t index = index_ + offset.dy * width_ + offset.dx;
        const bool within = static_cast<std::uint64_t>(index) < pixels_;  // false for negative ones
        if (!within || buffer_[index] != value_) return false;
        index_ = index;
        position_.x += offset.dx;
        position_.y += offset.dy;
        direction_ = direction;
        return true;
    }

    const T* buffer_;
    std::uint64_t pixels_;
    std::int64_t width_;
    std::int64_t index_;
    Position position_;
    T value_;
    unsigned direction_ = 6;  // as if from the upper right: the first search begins at the right
};

/// The rectangle that a walk must not leave, without its right column and its bottom row.
struct Bounds {
    std::int64_t left, top, right, bottom;

    bool contain(const Position& position) const {
        return position.x >= left && position.x < right && position.y >= top && position.y < bottom;
    }
};

/// The length of a walk without its last step. Records the pixels that the walk leaves, unless `points` is null.
template <class T>
double follow(Walk<T> walk, Bounds bounds, double maxLength, CPoint* points, int* pointCount) {
    const Position start = walk.position();
    double length = 0.0;
    int recorded = 0;
    for (Position previous = start; walk.step(); previous = walk.position()) {
        if (points != nullptr) points[recorded++] = {static_cast<int>(previous.x), static_cast<int>(previous.y)};
        if (!bounds.contain(walk.position()) || walk.position() == start || length > maxLength) break;
        length += walk.stepLength();
    }
    if (pointCount != nullptr) *pointCount = recorded;
    return length;
}

}  // namespace

template <class T>
double FollowContour(const T* buffer, const T* startPixel, int width, int height, int areaX, int areaY, int areaW,
                     int areaH, T objectValue, CPoint* points, int* pointCount) {
    OMNAR_EXPECT_NOT_NULL(buffer);
    OMNAR_EXPECT_AS(width, width > 0, "1 or more");
    OMNAR_EXPECT_AS(startPixel, startPixel >= buffer && startPixel - buffer < std::int64_t{width} * height,
                    "buffer <= startPixel < buffer + width * height");
    const Bounds bounds{areaX, areaY, (Wrapping(areaX) + areaW).value(), (Wrapping(areaY) + areaH).value()};
    const double maxLength = (Wrapping(areaW) * areaH).value();  // ends a walk that never returns to its start
    return follow(Walk<T>(buffer, startPixel, width, height, objectValue), bounds, maxLength, points, pointCount);
}

template double FollowContour(const unsigned char*, const unsigned char*, int, int, int, int, int, int, unsigned char,
                              CPoint*, int*);
template double FollowContour(const int*, const int*, int, int, int, int, int, int, int, CPoint*, int*);
