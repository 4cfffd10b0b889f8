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

/// Separate blobs, one in each cell of 74 x 74 pixels, away from the edges. A mask of 4096 x 4096 has over 2800.
Mask blobs(unsigned size, bool manyValues) {
    support::Random random(3);
    Mask mask(std::size_t{size} * size);
    constexpr unsigned cell = 74;
    for (unsigned top = cell; top + 2 * cell <= size; top += cell) {
        for (unsigned left = cell; left + 2 * cell <= size; left += cell) {
            const double radius = 3 + random.below(34), flat = 1 + random.below(100) / 50.0;
            const auto value = static_cast<L08>(manyValues ? 1 + random.below(255) : 255);
            for (unsigned y = 0; y < cell; ++y) {
                for (unsigned x = 0; x < cell; ++x) {
                    const double dx = x - cell / 2.0, dy = (y - cell / 2.0) * flat;
                    if (dx * dx + dy * dy < radius * radius) mask[std::size_t{top + y} * size + left + x] = value;
                }
            }
        }
    }
    return mask;
}

enum class Kind { solid, values, soft, down, flat, sized };

/// A frame around blobs, drawn onto a copy of them.
struct Scene {
    Kind kind;
    bool manyValues;
    unsigned width;

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
        const char* const values = kind != Kind::values && kind != Kind::soft ? "solid"
                                   : manyValues                               ? "levels"
                                                                              : "1 level";
        return std::string(values) + " r " + std::to_string(width);
    }
};

class Stage {
public:
    Stage(const Scene& scene, unsigned size)
        : scene_(scene),
          size_(size),
          src_(blobs(size, scene.manyValues)),
          dst_(scene.kind == Kind::sized ? Mask(std::size_t{grown()} * grown()) : src_),
          table_(CreateDistTableForSoftFrame(scene.width)) {}

    void frame() {
        const L08* const src = src_.data();
        L08* const dst = dst_.data();
        const unsigned width = scene_.width;
        switch (scene_.kind) {
            case Kind::solid:
            case Kind::values:
                return HardFrameL08toL08(src, dst, size_, size_, table_.get(), width, width,
                                         scene_.kind == Kind::solid);
            case Kind::soft:
                return SoftFrameL08toL08(src, dst, size_, size_, table_.get(), width, width);
            case Kind::down:
                return HardFrameDownL08toL08(src, dst, size_, size_, table_.get(), width, width);
            case Kind::flat:
                return HardFrameL08toL08DifferentXYFlat(src, dst, size_, size_, size_, size_, table_.get(), width,
                                                        width, 0);
            case Kind::sized:
                return HardFrameL08toL08DifferentSize(src, size_, size_, 0, 0, dst, grown(), grown(), size_, size_,
                                                      table_.get(), width, width, true);
        }
    }

#if defined(OMNAR_HAS_OPENCV)
    /// Dilation or erosion by the same disc. It also covers inner pixels, whose discs add nothing.
    void morph() {
        cv::setNumThreads(1);
        const auto width = static_cast<int>(scene_.width), size = static_cast<int>(size_);
        cv::Mat disc(2 * width + 1, 2 * width + 1, CV_8UC1);
        const int* distance = table_.get();
        for (auto pixel = disc.begin<L08>(); pixel != disc.end<L08>(); ++pixel) *pixel = *distance++ <= width;
        cv::Mat dst(size, size, CV_8UC1, dst_.data());
        const cv::Mat src(size, size, CV_8UC1, src_.data());
        scene_.kind == Kind::down ? cv::erode(src, dst, disc) : cv::dilate(src, dst, disc);
    }
#endif

    const Mask& result() const { return dst_; }

private:
    unsigned grown() const { return size_ + 2 * scene_.width; }

    Scene scene_;
    unsigned size_;
    Mask src_, dst_;
    std::unique_ptr<int[]> table_;
};

/// Every contender must equal the scalar level on a smaller mask.
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
    // The scalar level takes seconds for wide frames.
    contest.add(bench.atLevels(contender("", frame), scene.width > 16 ? omnar::allLevels[1] : omnar::Level::scalar));
#if defined(OMNAR_HAS_OPENCV)
    if (scene.hasPeer()) contest.add({contender("OpenCV", [](Stage& any) { any.morph(); })});
#endif
    return contest;
}

void measure(Bench& bench, const Scene& scene) {
    const bool isQuick = scene.hasPeer() && scene.width <= 4;
    bench.addRow(scene.function(), scene.name(), isQuick ? Runs::every : Runs::full,
                 [&bench, scene] { return contestOf(bench, scene); });
}

}  // namespace

void measureFrames(Bench& bench) {
    for (const unsigned width : {1U, 4U, 16U, 64U}) {
        measure(bench, {Kind::solid, false, width});
        measure(bench, {Kind::values, true, width});
        measure(bench, {Kind::soft, false, width});
        measure(bench, {Kind::soft, true, width});
    }
    for (const Kind kind : {Kind::down, Kind::flat, Kind::sized}) measure(bench, {kind, false, 4});
    bench.addRow("CreateDistTableForSoftFrame", "radius 64", Runs::full, [] {
        const auto create = [] { benchmark::DoNotOptimize(std::unique_ptr<int[]>(CreateDistTableForSoftFrame(64))); };
        return Contest{1, {{.name = plainCode, .work = create}}};
    });
}

}  // namespace bench
