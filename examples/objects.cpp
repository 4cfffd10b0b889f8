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

constexpr int ground = 0, unlabelled = 1, firstLabel = 2;

/// Takes the vertices of an outline polygon. They come as row and column of the outlined square, columns counted from the
/// right, half a pixel inside the outline.
class Vertices final : public ICoordPolygon {
public:
    explicit Vertices(const CutOut& outlined) : outlined_(outlined) {}

    int GetResX(double* res) override { return *res = 1.0, 0; }
    int GetResY(double* res) override { return *res = 1.0, 0; }
    int Append(ICoordPair* vertex) override {
        double row = 0, column = 0;
        const int status = vertex->GetCoords(&row, &column);
        points.push_back({outlined_.left + outlined_.side - column, outlined_.top + row + 1});
        return status;
    }

    std::vector<Point> points;

private:
    const CutOut& outlined_;
};

/// Each point becomes the mean of its neighbours, so that steps of whole pixels become a line.
std::vector<Point> smoothed(const std::vector<Point>& closed) {
    constexpr int reach = 4;
    const auto count = static_cast<int>(closed.size());
    std::vector<Point> smooth;
    for (int i = 0; i < count; ++i) {
        Point sum{0, 0};
        for (int j = i - reach; j <= i + reach; ++j)
            sum = sum + closed[static_cast<std::size_t>((j % count + count) % count)];
        smooth.push_back((1.0 / (2 * reach + 1)) * sum);
    }
    return smooth;
}

}  // namespace

std::vector<CPoint> CutOut::contour() const {
    const L08* const start = &*std::find(mask.begin(), mask.end(), 255);
    const auto follow = [&](CPoint* points, int* count) {
        return FollowContour<unsigned char>(mask.data(), start, side, side, 0, 0, side, side, 255, points, count);
    };
    // No step is shorter than a pixel, and the length leaves out the last one.
    std::vector<CPoint> points(static_cast<std::size_t>(follow(nullptr, nullptr)) + 1);
    int count = 0;
    follow(points.data(), &count);
    points.resize(static_cast<std::size_t>(count));
    return points;
}

std::vector<Point> CutOut::envelope(int distance) const {
    std::vector<L08> grown = mask;
    for (const CPoint point : contour()) {
        for (int y = -distance; y <= distance; ++y) {
            for (int x = -distance; x <= distance; ++x) {
                if (x * x + y * y <= distance * distance) grown[index(point.x + x, point.y + y)] = 255;
            }
        }
    }
    Vertices vertices(*this);
    GetContourPolygonFromBuffer2(grown.data(), static_cast<unsigned int>(side), static_cast<unsigned int>(side), 0,
                                 &vertices);
    return smoothed(vertices.points);
}

Objects::Objects(const InkPlane& ink)
    : width_(static_cast<int>(ink.width + 2 * frame)), height_(static_cast<int>(ink.height + 2 * frame)) {
    if (std::uint64_t{ink.width + 2 * frame} * (ink.height + 2 * frame) > INT_MAX)
        throw Failure("the picture is too large to be measured");
    ink_.resize(index(0, height_));
    labels_.resize(ink_.size(), ground);
    for (int y = frame; y < height_ - frame; ++y) {
        for (int x = frame; x < width_ - frame; ++x) {
            const L08 level =
                ink.pixels[static_cast<std::size_t>(y - frame) * ink.width + static_cast<std::size_t>(x - frame)];
            ink_[index(x, y)] = level;
            if (level >= 128) labels_[index(x, y)] = unlabelled;
        }
    }
    measure();
    findBoxes();
}

void Objects::measure() {
    const int count = ColorBinaryObjects<int>(labels_.data(), width_, height_, 0, 0, width_, height_, ground,
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
            if (label == ground) continue;
            Box& box = boxes_[static_cast<std::size_t>(label - firstLabel)];
            box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x), std::max(box.bottom, y)};
        }
    }
}

bool Objects::holds(std::size_t object, int x, int y) const {
    return labels_[index(x, y)] == firstLabel + static_cast<int>(object);
}

Extent Objects::extent(std::size_t object) const {
    const SFeature& feature = features_[object];
    const Point centre{feature.centerX, feature.centerY}, along = direction(feature.orientation);
    double front = 0, back = 0, right = 0, left = 0;
    const Box& box = boxes_[object];
    for (int y = box.top; y <= box.bottom; ++y) {
        for (int x = box.left; x <= box.right; ++x) {
            if (!holds(object, x, y)) continue;
            const Point off = Point{x + 0.5, y + 0.5} - centre;
            const double way = off.x * along.x + off.y * along.y, aside = off.y * along.x - off.x * along.y;
            front = std::max(front, way);
            back = std::min(back, way);
            right = std::max(right, aside);
            left = std::min(left, aside);
        }
    }
    const auto insideFrom = [&](double end) {
        const auto outside = [&](Point p) { return !holds(object, static_cast<int>(p.x), static_cast<int>(p.y)); };
        double at = end;
        while (std::abs(at) > 0.5 && outside(centre + at * along)) at -= std::copysign(0.5, end);
        return centre + at * along;
    };
    return {front - back, right - left, insideFrom(back), insideFrom(front)};
}

CutOut Objects::cutOut(std::size_t object) const {
    const Box& box = boxes_[object];
    const int side = std::max(box.right - box.left, box.bottom - box.top) + 1 + 2 * frame;
    const auto pixels = static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
    CutOut cut{box.left - frame, box.top - frame, side, std::vector<L08>(pixels), std::vector<L08>(pixels)};
    for (int y = box.top - 1; y <= box.bottom + 1; ++y) {
        for (int x = box.left - 1; x <= box.right + 1; ++x) {
            const std::size_t at = cut.index(x - cut.left, y - cut.top);
            if (holds(object, x, y)) cut.mask[at] = 255;
            bool nearby = false;
            for (int i = 0; i < 9; ++i) nearby = nearby || holds(object, x - 1 + i % 3, y - 1 + i / 3);
            if (nearby) cut.coverage[at] = ink_[index(x, y)];
        }
    }
    return cut;
}

}  // namespace example
