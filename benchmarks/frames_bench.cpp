// SPDX-License-Identifier: MIT
#include "benchmarks/frames_bench.h"

#include <OmnarRaster.h>
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#if defined(OMNAR_HAS_OPENCV)
#include <opencv2/imgproc.hpp>
#endif

#include "buffers/level.h"
#include "tests/support/random.h"

namespace bench {
namespace {

using Mask = std::vector<L08>;

/// Blobs that do not touch, one in each cell of 74 pixels, away from the edges. The whole mask has over 3000 of them.
Mask blobs(unsigned size, bool manyLevels) {
    support::Random random(3);
    Mask mask(std::size_t{size} * size);
    constexpr unsigned cell = 74;
    for (unsigned top = cell; top + 2 * cell <= size; top += cell) {
        for (unsigned left = cell; left + 2 * cell <= size; left += cell) {
            const double radius = 3 + random.below(34), flat = 1 + random.below(100) / 50.0;
            const auto level = static_cast<L08>(manyLevels ? 1 + random.below(255) : 255);
            for (unsigned y = 0; y < cell; ++y) {
                for (unsigned x = 0; x < cell; ++x) {
                    const double dx = x - cell / 2.0, dy = (y - cell / 2.0) * flat;
                    if (dx * dx + dy * dy < radius * radius) mask[std::size_t{top + y} * size + left + x] = level;
                }
            }
        }
    }
    return mask;
}

enum class Kind { solid, levels, soft, down, flat, sized };

/// A frame of a width around blobs, onto a copy of them.
struct Scene {
    Kind kind;
    bool manyLevels;
    unsigned reach;

    bool hasPeer() const { return kind != Kind::soft && kind != Kind::sized; }

    const char* function() const {
        constexpr const char* functions[] = {"HardFrameL08toL08",
                                             "HardFrameL08toL08",
                                             "SoftFrameL08toL08",
                                             "HardFrameDownL08toL08",
                                             "HardFrameL08toL08DifferentXYFlat",
                                             "HardFrameL08toL08DifferentSize"};
        return functions[static_cast<int>(kind)];
    }

    std::string name() const {
        const char* const values = kind != Kind::levels && kind != Kind::soft ? "solid"
                                   : manyLevels                               ? "levels"
                                                                              : "1 level";
        return std::string(values) + " r " + std::to_string(reach);
    }
};

class Stage {
public:
    Stage(const Scene& scene, unsigned size)
        : scene_(scene),
          size_(size),
          src_(blobs(size, scene.manyLevels)),
          dst_(scene.kind == Kind::sized ? Mask(std::size_t{grown()} * grown()) : src_),
          table_(CreateDistTableForSoftFrame(scene.reach)) {}

    void frame() {
        const L08* const src = src_.data();
        L08* const dst = dst_.data();
        const unsigned reach = scene_.reach;
        switch (scene_.kind) {
            case Kind::solid:
            case Kind::levels:
                return HardFrameL08toL08(src, dst, size_, size_, table_.get(), reach, reach,
                                         scene_.kind == Kind::solid);
            case Kind::soft:
                return SoftFrameL08toL08(src, dst, size_, size_, table_.get(), reach, reach);
            case Kind::down:
                return HardFrameDownL08toL08(src, dst, size_, size_, table_.get(), reach, reach);
            case Kind::flat:
                return HardFrameL08toL08DifferentXYFlat(src, dst, size_, size_, size_, size_, table_.get(), reach,
                                                        reach, 0);
            case Kind::sized:
                return HardFrameL08toL08DifferentSize(src, size_, size_, 0, 0, dst, grown(), grown(), size_, size_,
                                                      table_.get(), reach, reach, true);
        }
    }

#if defined(OMNAR_HAS_OPENCV)
    /// The same discs around all pixels of the shapes, or of the ground: those inside draw nothing that is not there.
    void morph() {
        cv::setNumThreads(1);
        const auto reach = static_cast<int>(scene_.reach), size = static_cast<int>(size_);
        cv::Mat disc(2 * reach + 1, 2 * reach + 1, CV_8UC1);
        const int* distance = table_.get();
        for (auto pixel = disc.begin<L08>(); pixel != disc.end<L08>(); ++pixel) *pixel = *distance++ <= reach;
        cv::Mat dst(size, size, CV_8UC1, dst_.data());
        const cv::Mat src(size, size, CV_8UC1, src_.data());
        scene_.kind == Kind::down ? cv::erode(src, dst, disc) : cv::dilate(src, dst, disc);
    }
#endif

    const Mask& result() const { return dst_; }

private:
    unsigned grown() const { return size_ + 2 * scene_.reach; }

    Scene scene_;
    unsigned size_;
    Mask src_, dst_;
    std::unique_ptr<int[]> table_;
};

/// Every contender must give what the plain walk gives for a smaller mask.
Contest contestOf(const Bench& bench, const Scene& scene) {
    constexpr unsigned size = 4096, checkedSize = 600;
    const auto stage = std::make_shared<Stage>(scene, size);
    const auto resultOf = [scene](auto work) {
        Stage small(scene, checkedSize);
        work(small);
        return small.result();
    };
    const auto frame = [](Stage& any) { any.frame(); };
    omnar::useLevel(omnar::Level::scalar);
    const auto contender = [=, expected = resultOf(frame)](const char* name, auto work) {
        return Contender{
            .name = name, .work = [=] { work(*stage); }, .isRight = [=] { return resultOf(work) == expected; }};
    };
    Contest contest{stage->result().size(), {}};
    // The plain walk takes seconds for wide frames.
    contest.add(bench.atLevels(contender("", frame), scene.reach > 16 ? omnar::allLevels[1] : omnar::Level::scalar));
#if defined(OMNAR_HAS_OPENCV)
    if (scene.hasPeer()) contest.add({contender("OpenCV", [](Stage& any) { any.morph(); })});
#endif
    return contest;
}

void measure(Bench& bench, const Scene& scene) {
    const bool isQuick = scene.hasPeer() && scene.reach <= 4;
    bench.row(scene.function(), scene.name(), isQuick ? In::everyRun : In::fullRun,
              [&bench, scene] { return contestOf(bench, scene); });
}

}  // namespace

void measureFrames(Bench& bench) {
    for (const unsigned reach : {1U, 4U, 16U, 64U}) {
        measure(bench, {Kind::solid, false, reach});
        measure(bench, {Kind::levels, true, reach});
        measure(bench, {Kind::soft, false, reach});
        measure(bench, {Kind::soft, true, reach});
    }
    for (const Kind kind : {Kind::down, Kind::flat, Kind::sized}) measure(bench, {kind, false, 4});
    bench.row("CreateDistTableForSoftFrame", "radius 64", In::fullRun, [] {
        const auto create = [] { benchmark::DoNotOptimize(std::unique_ptr<int[]>(CreateDistTableForSoftFrame(64))); };
        return Contest{1, {{.name = plainCode, .work = create}}};
    });
}

}  // namespace bench
