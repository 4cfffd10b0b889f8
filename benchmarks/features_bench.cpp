// SPDX-License-Identifier: MIT
#include "benchmarks/features_bench.h"

#include <OmnarRaster.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#if defined(OMNAR_HAS_OPENCV)
#include <opencv2/imgproc.hpp>
#endif

#include "tests/support/random.h"

namespace bench {
namespace {

constexpr int side = 4096;
constexpr std::size_t pixels = std::size_t{side} * side;
constexpr std::size_t roomForPoints = 100000;
constexpr EFeaturesNeeded centroid = FeatureArea | FeatureCentroid;
constexpr EFeaturesNeeded perimeter = FeatureArea | FeaturePerimeter;
constexpr EFeaturesNeeded orientation = centroid | FeatureOrientation;

/// Blobs in rows and columns, labelled from 1 on.
class Blobs {
public:
    explicit Blobs(int perRow) : labels_(pixels), mask_(pixels), starts_(std::size_t(perRow) * std::size_t(perRow)) {
        const int cell = side / perRow, radius = cell / 6;
        support::Random random(3);
        const auto offset = [&] { return static_cast<int>(random.below(static_cast<unsigned>(radius))) - radius / 2; };
        for (int blob = 0; blob < objects(); ++blob) {
            const int x = blob % perRow * cell + cell / 2, y = blob / perRow * cell + cell / 2;
            for (int part = 0; part < 6; ++part) {
                const int dx = offset(), dy = offset();
                fillDisc(x + dx, y + dy, radius, blob + 1);
            }
        }
        for (std::size_t i = pixels; i-- > 0;) {
            mask_[i] = labels_[i] == 0 ? 0 : 255;
            if (labels_[i] != 0) starts_[std::size_t(labels_[i]) - 1] = i;
        }
    }

    int objects() const { return static_cast<int>(starts_.size()); }
    const std::vector<std::size_t>& starts() const { return starts_; }  ///< the first pixel of each blob in row order
    const std::vector<int>& labels() const { return labels_; }
    std::vector<unsigned char>& mask() { return mask_; }  ///< 0 and 255

    std::vector<SFeature> measured(EFeaturesNeeded needed) const { return measured(needed, 1, objects()); }
    std::vector<SFeature> measured(EFeaturesNeeded needed, int first, int count) const {
        std::vector<SFeature> features(static_cast<std::size_t>(count));
        unsigned char cancelled;
        MultiObjectFeatureExtract<int>(labels_.data(), side, side, 0, 0, side, side, nullptr, first, count,
                                       features.data(), needed, &cancelled);
        return features;
    }

    /// Follows the contour of a blob and returns the number of its points.
    std::size_t follow(std::size_t blob, std::vector<CPoint>& points) const {
        int count;
        FollowContour<unsigned char>(mask_.data(), &mask_[starts_[blob]], side, side, 0, 0, side, side, 255,
                                     points.data(), &count);
        return static_cast<std::size_t>(count);
    }

private:
    void fillDisc(int x, int y, int radius, int label) {
        for (int dy = -radius; dy <= radius; ++dy) {
            const int half = static_cast<int>(std::sqrt(radius * radius - dy * dy));
            std::fill_n(&labels_[std::size_t(y + dy) * side + std::size_t(x - half)], 2 * half + 1, label);
        }
    }

    std::vector<int> labels_;
    std::vector<unsigned char> mask_;
    std::vector<std::size_t> starts_;
};

/// The blobs, kept for the next row, which often has the same.
Blobs& blobs(int perRow) {
    static std::pair<int, std::unique_ptr<Blobs>> kept;
    if (kept.first != perRow) kept = {perRow, std::make_unique<Blobs>(perRow)};
    return *kept.second;
}

/// True if each object has the same features when measured alone and together with the others.
bool sameAlone(const Blobs& scene, EFeaturesNeeded needed) {
    const std::vector<SFeature> together = scene.measured(needed);
    for (int blob = 0; blob < scene.objects(); blob += 1 + scene.objects() / 9) {
        const SFeature alone = scene.measured(needed, blob + 1, 1)[0], &among = together[std::size_t(blob)];
        if (alone.area != among.area || alone.centerX != among.centerX || alone.centerY != among.centerY ||
            alone.orientation != among.orientation || alone.perimeter != among.perimeter) {
            return false;
        }
    }
    return true;
}

#if defined(OMNAR_HAS_OPENCV)

cv::Mat matOf(Blobs& scene) { return {side, side, CV_8UC1, scene.mask().data()}; }

/// Labels and measures in one call, so that the time includes labelling.
struct Components {
    explicit Components(Blobs& scene) {
        cv::connectedComponentsWithStats(matOf(scene), labels, stats, centroids, 8, CV_32S);
    }
    cv::Mat labels, stats, centroids;
};

bool sameCentroids(Blobs& scene) {
    const Components peer(scene);
    const std::vector<SFeature> features = scene.measured(centroid);
    for (std::size_t blob = 0; blob < features.size(); ++blob) {
        const int label = reinterpret_cast<const int*>(peer.labels.data)[scene.starts()[blob]];
        const double x = peer.centroids.at<double>(label, 0) + 0.5, y = peer.centroids.at<double>(label, 1) + 0.5;
        if (peer.stats.at<int>(label, cv::CC_STAT_AREA) != features[blob].area ||
            std::hypot(x - features[blob].centerX, y - features[blob].centerY) > 1e-6) {
            return false;
        }
    }
    return true;
}

std::vector<std::vector<cv::Point>> contoursOf(Blobs& scene) {
    std::vector<std::vector<cv::Point>> contours;
    cv::findContours(matOf(scene), contours, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    return contours;
}

/// True if both find the same points, in any order.
bool sameContours(Blobs& scene) {
    const auto rowOrder = [](const auto& a, const auto& b) { return std::pair(a.y, a.x) < std::pair(b.y, b.x); };
    const auto samePlace = [](const CPoint& a, const cv::Point& b) { return a.x == b.x && a.y == b.y; };
    auto theirs = contoursOf(scene);
    for (auto& contour : theirs) std::sort(contour.begin(), contour.end(), rowOrder);
    std::sort(theirs.begin(), theirs.end(), [&](const auto& a, const auto& b) { return rowOrder(a[0], b[0]); });
    std::vector<std::vector<CPoint>> ours;
    for (std::size_t blob = 0; blob < scene.starts().size(); ++blob) {
        std::vector<CPoint>& contour = ours.emplace_back(roomForPoints);
        contour.resize(scene.follow(blob, contour));
        std::sort(contour.begin(), contour.end(), rowOrder);
    }
    std::sort(ours.begin(), ours.end(), [&](const auto& a, const auto& b) { return rowOrder(a[0], b[0]); });
    return std::equal(ours.begin(), ours.end(), theirs.begin(), theirs.end(), [&](const auto& a, const auto& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), samePlace);
    });
}

#endif

Contest extractionOf(int perRow, EFeaturesNeeded needed) {
    Contest contest{pixels, {}};
    contest.add({{.name = plainCode,
                  .work = [=] { benchmark::DoNotOptimize(blobs(perRow).measured(needed)); },
                  .isRight = [=] { return sameAlone(blobs(perRow), needed); }}});
#if defined(OMNAR_HAS_OPENCV)
    if (needed == centroid) {
        contest.add({{.name = "OpenCV",
                      .work = [=] { benchmark::DoNotOptimize(Components(blobs(perRow)).centroids.data); },
                      .isRight = [=] { return sameCentroids(blobs(perRow)); }}});
    }
#endif
    return contest;
}

Contest followingOf(int perRow) {
    const auto follow = [=] {
        static std::vector<CPoint> points(roomForPoints);
        const Blobs& scene = blobs(perRow);
        std::size_t sum = 0;
        for (std::size_t blob = 0; blob < scene.starts().size(); ++blob) sum += scene.follow(blob, points);
        return sum;
    };
    Contest contest{follow(), {{.name = plainCode, .work = [=] { benchmark::DoNotOptimize(follow()); }}}};
#if defined(OMNAR_HAS_OPENCV)
    contest.contenders[0].isRight = [=] { return sameContours(blobs(perRow)); };
    contest.add({{.name = "OpenCV", .work = [=] { benchmark::DoNotOptimize(contoursOf(blobs(perRow)).data()); }}});
#endif
    return contest;
}

}  // namespace

void measureFeatures(Bench& bench) {
    InitFeatureTables(1, 360.0);
    for (const int perRow : {8, 55}) {
        const std::string objects = std::to_string(perRow * perRow);
        const auto extraction = [&](const char* feature, EFeaturesNeeded needed) {
            bench.addRow("MultiObjectFeatureExtract", feature + objects, needed == centroid ? Runs::every : Runs::full,
                         [=] { return extractionOf(perRow, needed); });
        };
        extraction("place of ", centroid);
        extraction("round ", perimeter);
        extraction("turn of ", orientation);
        bench.addRow("FollowContour", objects + " blobs", Runs::every, [=] { return followingOf(perRow); });
    }
}

}  // namespace bench
