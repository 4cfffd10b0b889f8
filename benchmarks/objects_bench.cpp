// SPDX-License-Identifier: MIT
#include "benchmarks/objects_bench.h"

#include <OmnarRaster.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/peers/objects_peer.h"
#include "buffers/level.h"
#include "tests/support/random.h"

namespace bench {
namespace {

constexpr int side = 4096;
constexpr std::size_t pixels = std::size_t{side} * side;

/// Pixels of 0 and 255; 0 along all edges.
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

/// About 3000 discs.
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

/// A maze without loops; paths and walls are one pixel wide.
Mask drawMaze() {
    std::vector<bool> opensLeft(pixels / 4);
    support::Random random(7);
    for (std::size_t i = 0; i < opensLeft.size(); ++i) opensLeft[i] = random.oneIn(2);
    return drawn([&](int x, int y) {
        const auto left = [&](int cellX, int cellY) {
            return cellX > 0 && (cellY == 0 || opensLeft[std::size_t(cellY) * (side / 2) + std::size_t(cellX)]);
        };
        if (x % 2 == 1 && y % 2 == 1) return true;
        if (x % 2 == 0 && y % 2 == 0) return false;
        return x % 2 == 0 ? left(x / 2, y / 2) : !left(x / 2, y / 2) && y > 0;
    });
}

/// Concentric rings. Every other ring has a gap on the left and a bridge from there to the next ring inside.
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

/// The mask, kept for the next row, which often has the same.
const Mask& maskOf(Drawing scene) {
    static Mask mask;
    static int drawn = -1;
    if (drawn != scene) mask = scenes[scene].draw();
    drawn = scene;
    return mask;
}

template <class T>
struct Picture : std::vector<T> {
    explicit Picture(Drawing scene) : std::vector<T>(maskOf(scene).begin(), maskOf(scene).end()) {}
};

/// Labels that start at 1 reach 255, which is refused because it is the value of the objects. The byte pictures have too
/// few objects for that.
enum class Labels { accepted, refused };

template <class T>
void label(Picture<T>& picture, Labels labels) {
    const T first = sizeof(T) == 1 || labels == Labels::refused ? 1 : 256;
    ColorBinaryObjects<T>(picture.data(), side, side, 0, 0, side, side, 0, 255, first, true, INT_MAX);
}

template <class T>
Picture<T> labelled(Drawing scene, Labels labels, omnar::Level level) {
    Picture<T> picture(scene);
    omnar::useLevel(level);
    label(picture, labels);
    return picture;
}

/// True if both label the same objects, with any labels from 0 on.
bool sameObjects(const std::vector<int>& a, const std::vector<int>& b) {
    const auto unknown = [](const std::vector<int>& labels) {
        return std::vector<int>(std::size_t(*std::max_element(labels.begin(), labels.end())) + 1, -1);
    };
    std::vector<int> aToB = unknown(a), bToA = unknown(b);
    for (std::size_t i = 0; i < pixels; ++i) {
        int &counterpart = aToB[std::size_t(a[i])], &original = bToA[std::size_t(b[i])];
        if (counterpart == -1 && original == -1) counterpart = b[i], original = a[i];
        if (counterpart != b[i] || original != a[i]) return false;
    }
    return true;
}

template <class T>
Contest labellingOf(const Bench& bench, Drawing scene, Labels labels) {
    const auto original = std::make_shared<const Picture<T>>(scene);
    const auto picture = std::make_shared<Picture<T>>(scene);
    const auto expected = std::make_shared<const Picture<T>>(labelled<T>(scene, labels, omnar::Level::scalar));
    const auto reset = [=] { *picture = *original; };
    Contest contest{pixels, {}};
    contest.add(bench.atLevels({.name = "",
                                .work = [=] { label(*picture, labels); },
                                .isRight =
                                    [=] {
                                        reset();
                                        label(*picture, labels);
                                        return *picture == *expected;
                                    },
                                .reset = reset}));
    if (hasObjectsPeer && labels == Labels::accepted) {
        const auto theirs = std::make_shared<std::vector<int>>(pixels);
        const auto work = [=] { openCvLabel(maskOf(scene).data(), theirs->data(), side); };
        contest.add({{.name = "OpenCV", .work = work, .isRight = [=] {
                          work();
                          return sameObjects(*theirs, std::vector<int>(expected->begin(), expected->end()));
                      }}});
    }
    return contest;
}

/// Fills the connected pixels of the first one that holds `value`, each time with another value.
template <class T>
Contest fillingOf(const Bench& bench, Drawing scene, T value) {
    const auto original = std::make_shared<const Picture<T>>(scene);
    const auto picture = std::make_shared<Picture<T>>(scene);
    const auto first = std::find(picture->begin(), picture->end(), value) - picture->begin();
    const int x = static_cast<int>(first % side), y = static_cast<int>(first / side);
    const auto fill = [x, y](Picture<T>& filled, T color) {
        Fill<T>(filled.data(), side, side, x, y, 0, 0, side, side, color, nullptr);
    };
    const auto expected = std::make_shared<Picture<T>>(scene);
    omnar::useLevel(omnar::Level::scalar);
    fill(*expected, 7);

    // Shared by the contenders: each must fill with another value than the one before.
    const auto last = std::make_shared<T>(T{7});
    const auto contender = [=](const char* name, auto filler) {
        return Contender{.name = name,
                         .work = [=] { filler(*picture, *last ^= T{1}); },
                         .isRight =
                             [=] {
                                 *picture = *original;
                                 filler(*picture, 7);
                                 return *picture == *expected;
                             }};
    };
    Contest contest{pixels, {}};
    contest.add(bench.atLevels(contender("", fill)));
    if (hasObjectsPeer) {
        contest.add({contender("OpenCV",
                               [x, y](Picture<T>& filled, T color) { openCvFill(filled.data(), side, x, y, color); })});
    }
    return contest;
}

template <class T>
void measureFilling(Bench& bench, const char* function, const char* region, Drawing scene, T value) {
    bench.addRow(function, region, Runs::every, [=, &bench] { return fillingOf<T>(bench, scene, value); });
}

template <class T>
void measureLabelling(Bench& bench, const char* function, Drawing scene, Labels labels) {
    const bool isLong = scene == noise || scene == maze;
    bench.addRow(function, scenes[scene].name + std::string(labels == Labels::refused ? ", refused" : ""),
                 isLong ? Runs::full : Runs::every, [=, &bench] { return labellingOf<T>(bench, scene, labels); });
}

}  // namespace

void measureObjects(Bench& bench) {
    for (const Drawing scene : {rectangle, blobs, noise, maze, spiral}) {
        measureLabelling<int>(bench, "ColorBinaryObjects<int>", scene, Labels::accepted);
    }
    for (const Drawing scene : {blobs, noise}) {
        measureLabelling<int>(bench, "ColorBinaryObjects<int>", scene, Labels::refused);
    }
    const char* const labelBytes = "ColorBinaryObjects<unsigned char>";
    for (const Drawing scene : {rectangle, spiral})
        measureLabelling<unsigned char>(bench, labelBytes, scene, Labels::accepted);
    measureFilling<unsigned char>(bench, "Fill<unsigned char>", "rectangle", rectangle, 255);
    measureFilling<unsigned char>(bench, "Fill<unsigned char>", "round blobs", blobs, 0);
    measureFilling<unsigned char>(bench, "Fill<unsigned char>", "maze", maze, 255);
    measureFilling<unsigned char>(bench, "Fill<unsigned char>", "spiral", spiral, 255);
    measureFilling<int>(bench, "Fill<int>", "round blobs", blobs, 0);
}

}  // namespace bench
