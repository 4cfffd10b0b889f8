// SPDX-License-Identifier: MIT
#include "benchmarks/outline_bench.h"

#include <OmnarRaster.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "buffers/level.h"
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

/// The contour of a square mask, drawn into a buffer that has no room for more.
struct Drawing {
    explicit Drawing(const Scene& scene)
        : size(static_cast<unsigned>(scene.size)), mask(scene.mask(scene.size)), target((size - 2) * (size - 2)) {}

    void run() {
        DrawContourOfL08toTRC(mask.data(), size, size, 0, 0, target.data(), size - 2, size - 2, 0, 0, size, size, 1);
    }

    /// What a plain loop would do.
    void runPlainly() {
        for (std::size_t y = 1; y < size - 1; ++y) {
            const L08* const row = &mask[y * size];
            for (std::size_t x = 1; x < size - 1; ++x) {
                if (row[x] == 0) continue;
                const bool rightIsClear = x < size - 2 && row[x + 1] == 0;
                if (row[x - 1] == 0 || rightIsClear || (row - size)[x] == 0 || (row + size)[x] == 0) {
                    target[(y - 1) * (size - 2) + x - 1] = 1;
                }
            }
        }
    }

    void copyMask() {
        std::memcpy(copy.data(), mask.data(), mask.size());
        benchmark::ClobberMemory();
    }

    std::size_t pixels() const { return mask.size(); }

    unsigned size;
    Mask mask, copy = mask;
    std::vector<TRC> target;
};

/// Counts vertices.
class Polygon final : public ICoordPolygon {
public:
    int GetResX(double*) override { return 0; }
    int GetResY(double*) override { return 0; }
    int Append(ICoordPair*) override { return ++vertices & 0xFFFF; }

    int vertices = 0;
};

template <class Work>
void measure(const char* name, const Scene& scene, const char* contender, Work work) {
    const std::string row = std::string(name) + "|" + scene.name + "|" + contender;
    benchmark::RegisterBenchmark(row.c_str(), [&scene, work](benchmark::State& state) {
        Drawing drawing(scene);
        for (auto _ : state) work(drawing);
        state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(drawing.pixels()));
    });
}

void measureDrawing(const Scene& scene) {
    const char* const name = "DrawContourOfL08toTRC";
    Drawing plain(scene);
    plain.runPlainly();
    for (const omnar::Level level : omnar::allLevels) {
        if (!omnar::useLevel(level)) continue;
        Drawing drawing(scene);
        drawing.run();
        if (drawing.target != plain.target) {
            std::fprintf(stderr, "not timed: %s at %s is wrong\n", name, omnar::name(level));
            continue;
        }
        measure(name, scene, omnar::name(level), [level](Drawing& each) {
            omnar::useLevel(level);
            each.run();
        });
    }
    measure(name, scene, "plain", [](Drawing& each) { each.runPlainly(); });
    measure(name, scene, "memcpy", [](Drawing& each) { each.copyMask(); });
}

void measurePolygon(const Scene& scene) {
    measure("GetContourPolygonFromBuffer2", scene, "scalar", [](Drawing& each) {
        Polygon polygon;
        GetContourPolygonFromBuffer2(each.mask.data(), each.size, each.size, 0, &polygon);
        benchmark::DoNotOptimize(polygon.vertices);
    });
}

}  // namespace

void measureOutlines() {
    for (const Scene& scene : scenes) {
        measureDrawing(scene);
        measurePolygon(scene);
    }
}

}  // namespace bench
