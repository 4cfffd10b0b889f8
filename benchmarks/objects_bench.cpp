// SPDX-License-Identifier: MIT
#include "benchmarks/objects_bench.h"

#include <OmnarRaster.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <string>
#include <unordered_map>
#include <vector>

#include "benchmarks/peers/objects_peer.h"
#include "buffers/level.h"
#include "tests/support/random.h"

namespace bench {
namespace {

constexpr int side = 4096;
constexpr std::size_t pixels = std::size_t{side} * side;

/// 0 and 255, 0 along all edges.
using Mask = std::vector<unsigned char>;

template <class IsInk>
Mask drawn(IsInk isInk) {
    Mask mask(pixels, 0);
    for (int y = 1; y < side - 1; ++y) {
        for (int x = 1; x < side - 1; ++x) mask[std::size_t(y) * side + std::size_t(x)] = isInk(x, y) ? 255 : 0;
    }
    return mask;
}

Mask drawRectangle() {
    return drawn([](int, int) { return true; });
}

Mask drawNoise() {
    return drawn([random = support::Random(5)](int, int) mutable { return random.oneIn(2); });
}

/// About three thousand discs.
Mask drawBlobs() {
    constexpr int cell = 74;
    support::Random random(3);
    struct Disc {
        int x, y, radius;
    };
    std::vector<Disc> discs;
    for (int i = 0; i < (side / cell + 1) * (side / cell + 1); ++i) {
        const int radius = 4 + int(random.below(32)), x = int(random.below(8)), y = int(random.below(8));
        discs.push_back({33 + x, 33 + y, radius});
    }
    return drawn([&](int x, int y) {
        const Disc disc = discs[std::size_t(y / cell * (side / cell + 1) + x / cell)];
        const int dx = x % cell - disc.x, dy = y % cell - disc.y;
        return dx * dx + dy * dy < disc.radius * disc.radius;
    });
}

/// Ways of one pixel through walls of one pixel, one tree of them.
Mask drawMaze() {
    std::vector<bool> toTheLeft(pixels / 4);
    support::Random random(7);
    for (std::size_t i = 0; i < toTheLeft.size(); ++i) toTheLeft[i] = random.oneIn(2);
    return drawn([&](int x, int y) {
        const auto left = [&](int cellX, int cellY) {
            return cellX > 0 && (cellY == 0 || toTheLeft[std::size_t(cellY) * (side / 2) + std::size_t(cellX)]);
        };
        if (x % 2 == 1 && y % 2 == 1) return true;
        if (x % 2 == 0 && y % 2 == 0) return false;
        return x % 2 == 0 ? left(x / 2, y / 2) : !left(x / 2, y / 2) && y > 0;
    });
}

/// Every other of the rings is cut open on the left, and from there a bridge leads to the next one inside.
Mask drawSpiral() {
    return drawn([](int x, int y) {
        const int ring = std::min({x, y, side - 1 - x, side - 1 - y});
        return (ring % 2 == 1) != (x == ring && y == ring + 1);
    });
}

enum Drawing { rectangle, blobs, noise, maze, spiral };
constexpr struct {
    const char* name;
    Mask (*draw)();
} scenes[] = {{"rectangle", drawRectangle},
              {"blobs", drawBlobs},
              {"noise 50 %", drawNoise},
              {"maze", drawMaze},
              {"spiral", drawSpiral}};

/// Pictures are large and the order of the runs is mixed, so only the one in use is kept.
const Mask& maskOf(Drawing scene) {
    static Mask mask;
    static int of = -1;
    if (of != scene) mask = scenes[scene].draw();
    of = scene;
    return mask;
}

template <class T>
struct Picture : std::vector<T> {
    explicit Picture(Drawing scene) : std::vector<T>(maskOf(scene).begin(), maskOf(scene).end()) {}
};

/// No label is refused: those of bytes are few enough, and the others begin behind the objects' value.
template <class T>
void label(Picture<T>& picture) {
    const T first = sizeof(T) == 1 ? 1 : 256;
    ColorBinaryObjects<T>(picture.data(), side, side, 0, 0, side, side, 0, 255, first, true, INT_MAX);
}

template <class T>
Picture<T> labelled(Drawing scene, omnar::Level level) {
    Picture<T> picture(scene);
    omnar::useLevel(level);
    label(picture);
    return picture;
}

/// The same objects, whatever the labels.
bool sameObjects(const std::vector<int>& a, const std::vector<int>& b) {
    std::unordered_map<int, int> aToB, bToA;
    for (std::size_t i = 0; i < pixels; ++i) {
        if (aToB.try_emplace(a[i], b[i]).first->second != b[i]) return false;
        if (bToA.try_emplace(b[i], a[i]).first->second != a[i]) return false;
    }
    return true;
}

/// Registers "row|contender"; `run(state)` tells whether the result is right before it times anything.
template <class Run>
void measure(const std::string& row, const char* contender, Run run) {
    const std::string name = row + "|" + contender;
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        if (!run(state)) {
            std::fprintf(stderr, "not timed: %s differs\n", name.c_str());
            state.SkipWithError("differs");
        }
        state.SetItemsProcessed(state.iterations() * std::int64_t{pixels});
    });
}

template <class Run>
void measureLevels(const std::string& row, Run run) {
    for (const omnar::Level level : omnar::allLevels) {
        if (!available(level)) continue;
        measure(row, name(level), [=](benchmark::State& state) { return run(state, level); });
    }
}

template <class T>
void measureLabelling(const char* function, Drawing scene) {
    const std::string row = std::string(function) + "|" + scenes[scene].name;
    measureLevels(row, [scene](benchmark::State& state, omnar::Level level) {
        const Picture<T> original(scene);
        Picture<T> picture = labelled<T>(scene, omnar::Level::scalar);
        if (picture != labelled<T>(scene, level)) return false;
        for (auto _ : state) {
            state.PauseTiming();
            picture = original;
            state.ResumeTiming();
            label(picture);
        }
        return true;
    });
    if (!hasObjectsPeer) return;
    measure(row, "OpenCV", [scene](benchmark::State& state) {
        std::vector<int> labels(pixels);
        openCvLabel(maskOf(scene).data(), labels.data(), side);
        if (!sameObjects(labels, labelled<int>(scene, omnar::Level::scalar))) return false;
        for (auto _ : state) openCvLabel(maskOf(scene).data(), labels.data(), side);
        return true;
    });
}

/// Fills the region of the first pixel that holds `from`, again and again with another value.
template <class T, class Filler>
bool fillRepeatedly(benchmark::State& state, Drawing scene, T from, Filler fill) {
    Picture<T> picture(scene), law(scene);
    const auto first = std::find(picture.begin(), picture.end(), from) - picture.begin();
    const int x = static_cast<int>(first % side), y = static_cast<int>(first / side);
    fill(picture.data(), x, y, T{7});
    omnar::useLevel(omnar::Level::scalar);
    Fill<T>(law.data(), side, side, x, y, 0, 0, side, side, 7, nullptr);
    if (picture != law) return false;
    T value = 7;
    for (auto _ : state) fill(picture.data(), x, y, value ^= T{1});
    return true;
}

template <class T>
void measureFilling(const char* function, const char* region, Drawing scene, T from) {
    const std::string row = std::string(function) + "|" + region;
    measureLevels(row, [=](benchmark::State& state, omnar::Level level) {
        return fillRepeatedly<T>(state, scene, from, [level](T* picture, int x, int y, T value) {
            omnar::useLevel(level);
            Fill<T>(picture, side, side, x, y, 0, 0, side, side, value, nullptr);
        });
    });
    if (!hasObjectsPeer) return;
    measure(row, "OpenCV", [=](benchmark::State& state) {
        return fillRepeatedly<T>(state, scene, from,
                                 [](T* picture, int x, int y, T value) { openCvFill(picture, side, x, y, value); });
    });
}

}  // namespace

void measureObjects() {
    for (const Drawing scene : {rectangle, blobs, noise, maze, spiral}) {
        measureLabelling<int>("ColorBinaryObjects<int>", scene);
    }
    measureLabelling<unsigned char>("ColorBinaryObjects<unsigned char>", rectangle);
    measureLabelling<unsigned char>("ColorBinaryObjects<unsigned char>", spiral);
    measureFilling<unsigned char>("Fill<unsigned char>", "rectangle", rectangle, 255);
    measureFilling<unsigned char>("Fill<unsigned char>", "round blobs", blobs, 0);
    measureFilling<unsigned char>("Fill<unsigned char>", "maze", maze, 255);
    measureFilling<unsigned char>("Fill<unsigned char>", "spiral", spiral, 255);
    measureFilling<int>("Fill<int>", "round blobs", blobs, 0);
}

}  // namespace bench
