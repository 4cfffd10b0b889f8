// SPDX-License-Identifier: MIT
#include "benchmarks/outline_bench.h"

#include <OmnarRaster.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <span>
#include <vector>

#include "benchmarks/pass.h"
#include "tests/support/random.h"

namespace bench {
namespace {

using Mask = std::vector<L08>;

void paintDisc(Mask& mask, int size, int centreX, int centreY, int radius) {
    for (int y = std::max(centreY - radius, 0); y < std::min(centreY + radius, size); ++y) {
        for (int x = std::max(centreX - radius, 0); x < std::min(centreX + radius, size); ++x) {
            const int dx = x - centreX, dy = y - centreY;
            if (dx * dx + dy * dy < radius * radius) mask[static_cast<std::size_t>(y * size + x)] = 255;
        }
    }
}

Mask blobs(int size) {
    Mask mask(static_cast<std::size_t>(size * size));
    support::Random random(3);
    for (int count = size * size / 5000; count > 0; --count) {
        const auto x = static_cast<int>(random.below(static_cast<unsigned>(size)));
        const auto y = static_cast<int>(random.below(static_cast<unsigned>(size)));
        paintDisc(mask, size, x, y, static_cast<int>(4 + random.below(30)));
    }
    return mask;
}

Mask disc(int size) {
    Mask mask(static_cast<std::size_t>(size * size));
    paintDisc(mask, size, size / 2, size / 2, size * 9 / 20);
    return mask;
}

Mask noise(int size) {
    Mask mask(static_cast<std::size_t>(size * size));
    support::Random random(3);
    for (L08& pixel : mask) pixel = random.oneIn(2) ? 255 : 0;
    return mask;
}

struct Scene {
    const char* name;
    int size;
    Mask (*mask)(int size);
};
constexpr Scene scenes[] = {
    {"blobs 512", 512, blobs}, {"blobs 4096", 4096, blobs}, {"disc 4096", 4096, disc}, {"noise 512", 512, noise}};

/// The contour of a square mask, drawn into a buffer of exactly its size.
struct Drawing {
    explicit Drawing(const Scene& scene)
        : size(static_cast<unsigned>(scene.size)), mask(scene.mask(scene.size)), dst((size - 2) * (size - 2)) {}

    void run() {
        DrawContourOfL08toTRC(mask.data(), size, size, 0, 0, dst.data(), size - 2, size - 2, 0, 0, size, size, 1);
    }

    /// The peer is a plain loop, since no library draws these contours.
    void runPlainly() {
        for (std::size_t y = 1; y < size - 1; ++y) {
            const L08* const row = &mask[y * size];
            for (std::size_t x = 1; x < size - 1; ++x) {
                if (row[x] == 0) continue;
                const bool rightIsEmpty = x < size - 2 && row[x + 1] == 0;
                if (row[x - 1] == 0 || rightIsEmpty || (row - size)[x] == 0 || (row + size)[x] == 0) {
                    dst[(y - 1) * (size - 2) + x - 1] = 1;
                }
            }
        }
    }

    /// Reads the mask. The few pixels that the contour writes do not count.
    Pass readMask() { return {.src = {std::as_writable_bytes(std::span(mask)).data(), size, size}, .rows = size}; }

    unsigned size;
    Mask mask;
    std::vector<TRC> dst;
};

/// Counts vertices.
class Polygon final : public ICoordPolygon {
public:
    int GetResX(double*) override { return 0; }
    int GetResY(double*) override { return 0; }
    int Append(ICoordPair*) override { return ++vertices & 0xFFFF; }

    int vertices = 0;
};

Contest drawingOf(const Bench& bench, const Scene& scene) {
    const auto drawing = std::make_shared<Drawing>(scene);
    Drawing plain(scene);
    plain.runPlainly();
    Contest contest{drawing->mask.size(), {}};
    contest.add(bench.atLevels({.name = "",
                                .work = [=] { drawing->run(); },
                                .isRight =
                                    [&scene, expected = plain.dst] {
                                        Drawing fresh(scene);
                                        fresh.run();
                                        return fresh.dst == expected;
                                    }}));
    contest.add({{.name = "plain", .work = [=] { drawing->runPlainly(); }},
                 {.name = plainPass, .work = [=] { drawing->readMask().run(); }, .level = widestLevel()}});
    return contest;
}

Contest polygonOf(const Scene& scene) {
    const auto drawing = std::make_shared<Drawing>(scene);
    const auto trace = [=] {
        Polygon polygon;
        GetContourPolygonFromBuffer2(drawing->mask.data(), drawing->size, drawing->size, 0, &polygon);
        benchmark::DoNotOptimize(polygon.vertices);
    };
    return {drawing->mask.size(), {{.name = plainCode, .work = trace}}};
}

}  // namespace

void measureOutlines(Bench& bench) {
    for (const Scene& scene : scenes) {
        const Runs runs = scene.size < 1000 ? Runs::every : Runs::full;
        bench.addRow("DrawContourOfL08toTRC", scene.name, runs, [&] { return drawingOf(bench, scene); });
        bench.addRow("GetContourPolygonFromBuffer2", scene.name, Runs::full, [&] { return polygonOf(scene); });
    }
}

}  // namespace bench
