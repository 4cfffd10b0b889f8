// SPDX-License-Identifier: MIT
#include "objects.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "failure.h"

namespace example {
namespace {

constexpr int background = 0, unlabelled = 1, firstLabel = 2;

/// The vertices of an outline polygon. The library gives them as row and column in the square, half a pixel inside the
/// outline, with columns counted from the right.
class Vertices final : public ICoordPolygon {
public:
    explicit Vertices(const CutOut& square) : square_(square) {}

    int GetResX(double* res) override { return *res = 1.0, 0; }
    int GetResY(double* res) override { return *res = 1.0, 0; }
    int Append(ICoordPair* vertex) override {
        double row = 0, column = 0;
        const int status = vertex->GetCoords(&row, &column);
        points.push_back({square_.left + square_.side - column, square_.top + row + 1});
        return status;
    }

    std::vector<Point> points;

private:
    const CutOut& square_;
};

/// Replaces each point by the mean of its neighbourhood, which smooths steps of whole pixels.
std::vector<Point> smoothed(const std::vector<Point>& closed) {
    constexpr int radius = 4;
    const auto count = static_cast<int>(closed.size());
    std::vector<Point> smooth;
    for (int i = 0; i < count; ++i) {
        Point sum{0, 0};
        for (int j = i - radius; j <= i + radius; ++j)
            sum = sum + closed[static_cast<std::size_t>((j % count + count) % count)];
        smooth.push_back((1.0 / (2 * radius + 1)) * sum);
    }
    return smooth;
}

}  // namespace

std::vector<CPoint> CutOut::contour() const {
    const L08* const start = &*std::find(mask.begin(), mask.end(), 255);
    const auto follow = [&](CPoint* points, int* count) {
        return FollowContour<unsigned char>(mask.data(), start, side, side, 0, 0, side, side, 255, points, count);
    };
    // Steps are 1 pixel long or more, and the length does not include the last one.
    std::vector<CPoint> points(static_cast<std::size_t>(follow(nullptr, nullptr)) + 1);
    int count = 0;
    follow(points.data(), &count);
    points.resize(static_cast<std::size_t>(count));
    return points;
}

std::vector<Point> CutOut::envelope(int distance) const {
    std::vector<L08> dilated = mask;
    for (const CPoint point : contour()) {
        for (int y = -distance; y <= distance; ++y) {
            for (int x = -distance; x <= distance; ++x) {
                if (x * x + y * y <= distance * distance) dilated[index(point.x + x, point.y + y)] = 255;
            }
        }
    }
    Vertices vertices(*this);
    GetContourPolygonFromBuffer2(dilated.data(), static_cast<unsigned int>(side), static_cast<unsigned int>(side), 0,
                                 &vertices);
    return smoothed(vertices.points);
}

Objects::Objects(const InkPlane& ink)
    : width_(static_cast<int>(ink.width + 2 * margin)), height_(static_cast<int>(ink.height + 2 * margin)) {
    if (std::uint64_t{ink.width + 2 * margin} * (ink.height + 2 * margin) > INT_MAX)
        throw Failure("the picture is too large to be measured");
    ink_.resize(index(0, height_));
    labels_.resize(ink_.size(), background);
    for (int y = margin; y < height_ - margin; ++y) {
        for (int x = margin; x < width_ - margin; ++x) {
            const L08 value =
                ink.pixels[static_cast<std::size_t>(y - margin) * ink.width + static_cast<std::size_t>(x - margin)];
            ink_[index(x, y)] = value;
            if (value >= 128) labels_[index(x, y)] = unlabelled;
        }
    }
    measure();
    findBoxes();
}

void Objects::measure() {
    const int count = ColorBinaryObjects<int>(labels_.data(), width_, height_, 0, 0, width_, height_, background,
                                              unlabelled, firstLabel, true, INT_MAX);
    features_.resize(static_cast<std::size_t>(count));
    unsigned char cancelled = 0;
    InitFeatureTables(1, 360.0);
    MultiObjectFeatureExtract<int>(labels_.data(), width_, height_, 0, 0, width_, height_, nullptr, firstLabel, count,
                                   features_.data(),
                                   FeatureArea | FeatureCentroid | FeatureOrientation | FeaturePerimeter, &cancelled);
    ReleaseFeatureTables();
    if (cancelled != 0) throw Failure("measuring was cancelled");
}

void Objects::findBoxes() {
    boxes_.resize(features_.size(), Box{width_, height_, 0, 0});
    for (int y = 0; y < height_; ++y) {
        for (int x = 0; x < width_; ++x) {
            const int label = labels_[index(x, y)];
            if (label == background) continue;
            Box& box = boxes_[static_cast<std::size_t>(label - firstLabel)];
            box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x), std::max(box.bottom, y)};
        }
    }
}

bool Objects::contains(std::size_t object, int x, int y) const {
    return labels_[index(x, y)] == firstLabel + static_cast<int>(object);
}

Extent Objects::extent(std::size_t object) const {
    const SFeature& feature = features_[object];
    const Point centre{feature.centerX, feature.centerY}, axis = direction(feature.orientation);
    double front = 0, back = 0, right = 0, left = 0;  // distances from the centre, with a sign
    const Box& box = boxes_[object];
    for (int y = box.top; y <= box.bottom; ++y) {
        for (int x = box.left; x <= box.right; ++x) {
            if (!contains(object, x, y)) continue;
            const Point offset = Point{x + 0.5, y + 0.5} - centre;
            const double parallel = dot(offset, axis), normal = offset.y * axis.x - offset.x * axis.y;
            front = std::max(front, parallel);
            back = std::min(back, parallel);
            right = std::max(right, normal);
            left = std::min(left, normal);
        }
    }
    const auto firstPointInside = [&](double distance) {
        const auto isOutside = [&](Point p) { return !contains(object, static_cast<int>(p.x), static_cast<int>(p.y)); };
        const double step = std::copysign(0.5, distance);
        while (std::abs(distance) > 0.5 && isOutside(centre + distance * axis)) distance -= step;
        return centre + distance * axis;
    };
    return {front - back, right - left, firstPointInside(back), firstPointInside(front)};
}

CutOut Objects::cutOut(std::size_t object) const {
    const Box& box = boxes_[object];
    const int side = std::max(box.right - box.left, box.bottom - box.top) + 1 + 2 * margin;
    const auto pixels = static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
    CutOut cut{box.left - margin, box.top - margin, side, std::vector<L08>(pixels), std::vector<L08>(pixels)};
    for (int y = box.top - 1; y <= box.bottom + 1; ++y) {
        for (int x = box.left - 1; x <= box.right + 1; ++x) {
            const std::size_t pixel = cut.index(x - cut.left, y - cut.top);
            if (contains(object, x, y)) cut.mask[pixel] = 255;
            bool isNear = false;
            for (int i = 0; i < 9; ++i) isNear = isNear || contains(object, x - 1 + i % 3, y - 1 + i / 3);
            if (isNear) cut.coverage[pixel] = ink_[index(x, y)];
        }
    }
    return cut;
}

}  // namespace example
