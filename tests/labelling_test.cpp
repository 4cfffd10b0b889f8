// SPDX-License-Identifier: MIT

// Labelling objects against a scan pixel by pixel, at every vector level.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "objects/component_graph.h"
#include "tests/fill_model.h"
#include "tests/support/leveled_test.h"
#include "tests/support/scarce_allocator.h"

namespace {

using support::AreaBuffer;
using support::BufferRandom;

constexpr int noLimit = -1;  // a label that no test reaches

class Labelling : public support::LeveledTest {};

template <class T>
struct Labels {
    T reserved, object, first;
    bool ascending;
    int limit;
};

/// Labels near the values that are refused, or far from them.
template <class T>
Labels<T> labelsFor(BufferRandom& random, AreaBuffer<T>& buffer) {
    const T object = buffer.pixels[random.below(static_cast<std::uint32_t>(buffer.pixels.size()))];
    const T reserved = random.value<T>();
    const T near = random.oneIn(2) ? object : reserved;
    const bool ascending = random.oneIn(2);
    const auto before = static_cast<unsigned>(random.below(4)) - 1;
    const auto first =
        static_cast<T>(ascending ? static_cast<unsigned>(near) - before : static_cast<unsigned>(near) + before);
    const int limit = random.oneIn(2) ? static_cast<int>(static_cast<unsigned>(first) + random.below(6)) : 300;
    return {reserved, object, random.oneIn(2) ? first : T{50}, ascending, limit};
}

template <class T>
int label(T* pixels, const AreaBuffer<T>& p, const Labels<T>& labels) {
    return ColorBinaryObjects(pixels, p.width, p.height, p.areaX, p.areaY, p.areaW, p.areaH, labels.reserved,
                              labels.object, labels.first, labels.ascending, labels.limit);
}

/// The model. Each refused label makes the seeds of its row lag by one more pixel.
template <class T>
int scan(AreaBuffer<T>& buffer, Labels<T> labels) {
    const int x = support::clampInto(buffer.width, buffer.areaX), y = support::clampInto(buffer.height, buffer.areaY);
    const int w = support::clampInto(buffer.width - x, buffer.areaW);
    int count = 0;
    for (int row = y; row < y + support::clampInto(buffer.height - y, buffer.areaH); ++row) {
        int i = 0;
        const int group = 8 / int(sizeof(T));
        const auto isZeroGroup = [&] {
            for (int k = 0; k < group; ++k) {
                if (buffer[{x + i + k, row}] != 0) return false;
            }
            return true;
        };
        while (i < w - group - 1 && isZeroGroup()) i += group;
        for (int lag = 0; i - lag < w; ++i) {
            if (buffer[{x + i, row}] != labels.object) continue;
            if (labels.first == labels.object || labels.first == labels.reserved) {
                ++lag;
            } else {
                support::floodFillModel(buffer, x + i - lag, row, labels.first);
                ++count;
            }
            labels.first = static_cast<T>(static_cast<unsigned>(labels.first) + (labels.ascending ? 1U : ~0U));
            if (labels.first == (labels.ascending ? labels.limit : 1)) return count;
        }
    }
    return count;
}

/// Replaces values by labels that are used soon: fills then merge components.
template <class T>
void paintFutureLabels(BufferRandom& random, AreaBuffer<T>& buffer, const Labels<T>& labels) {
    const unsigned objects = 1 + random.below(8), different = 1 + random.below(12);
    T last = buffer.pixels[0], label = last;
    for (T& pixel : buffer.pixels) {
        if (pixel != std::exchange(last, pixel) || random.oneIn(8)) {
            const unsigned steps = random.below(different);
            const auto first = static_cast<unsigned>(labels.first);
            label = random.below(8) < objects ? labels.object : T(labels.ascending ? first + steps : first - steps);
        }
        pixel = label;
    }
}

template <class T>
void compareWithScan(std::uint64_t seeds) {
    support::forSeeds<BufferRandom>(seeds, [](BufferRandom& random, std::uint64_t number) {
        auto buffer = random.buffer<T>();
        const Labels<T> labels = labelsFor(random, buffer);
        if (random.oneIn(2)) paintFutureLabels(random, buffer, labels);
        auto expected = buffer;
        const int count = scan(expected, labels);
        SCOPED_TRACE(testing::Message() << "seed " << number << ": " << buffer << ", object " << +labels.object
                                        << ", reserved " << +labels.reserved << ", labels from " << +labels.first
                                        << (labels.ascending ? " up to " : " down, not to ") << labels.limit);
        EXPECT_EQ(callFenced(random, buffer, [&](T* pixels) { return label(pixels, buffer, labels); }), count);
        EXPECT_EQ(buffer.pixels, expected.pixels);
    });
}

TEST_P(Labelling, EqualsTheScan) {
    compareWithScan<unsigned char>(8000);
    compareWithScan<int>(8000);
}

/// The labels wrap around many times, while the seeds lag further and further.
TEST_P(Labelling, WrapsAroundAmongManyObjects) {
    support::forSeeds<BufferRandom>(30, [](BufferRandom& random, std::uint64_t) {
        const int width = random.between(30, 800), height = 3000 / width + 1;
        AreaBuffer<unsigned char> buffer{width, height, random.between(0, 3), 0, width, height, {}};
        const unsigned ink = 1 + random.below(7), values = 1 + random.below(3);
        for (int i = 0; i < width * height; ++i) {
            const bool inked = values == 3 ? (i + i / width) % 2 == 0 : random.below(8) < ink;
            buffer.pixels.push_back(static_cast<unsigned char>(inked ? 255 : 9 + random.below(values)));
        }
        auto expected = buffer;
        const Labels<unsigned char> labels{random.value<unsigned char>(), 255, 100, random.oneIn(2), noLimit};
        EXPECT_EQ(label(buffer.pixels.data(), buffer, labels), scan(expected, labels));
        EXPECT_EQ(buffer.pixels, expected.pixels);
    });
}

/// On graphs of nodes of any size. The value `object` is never filled.
TEST(ComponentGraph, EqualsAFloodOverAllEdges) {
    support::forSeeds<BufferRandom>(1000, [](BufferRandom& random, std::uint64_t number) {
        constexpr int object = 9;
        const int nodes = random.between(2, 60), values = random.between(2, 8);
        const auto node = [&] { return random.between(0, nodes - 1); };
        omnar::ComponentGraph<int> graph(object, object);
        std::vector<int> model;
        std::vector<std::pair<int, int>> edges;
        for (int i = 0; i < nodes; ++i) {
            model.push_back(random.oneIn(3) ? object : random.between(0, values));
            graph.enlarge(graph.add(model.back()), 1U << random.below(random.oneIn(9) ? 32 : 4));
        }
        const auto connect = [&](int a, int b) {
            if (model[std::size_t(a)] != model[std::size_t(b)]) edges.emplace_back(a, b), graph.connect(a, b);
        };
        for (int i = random.between(0, nodes); i > 0; --i) connect(random.oneIn(2) ? 0 : node(), node());
        for (int fills = 0; fills < 60; ++fills) {
            const int seed = random.oneIn(3) ? node() : 0, value = random.between(0, values);
            std::vector<bool> inside(std::size_t(nodes), false);
            inside[std::size_t(seed)] = true;
            for (int i = 0; i < nodes; ++i) {
                for (const auto& [a, b] : edges) {
                    if (model[std::size_t(a)] != model[std::size_t(b)]) continue;
                    const bool either = inside[std::size_t(a)] || inside[std::size_t(b)];
                    inside[std::size_t(a)] = inside[std::size_t(b)] = either;
                }
            }
            graph.fill(seed, value);
            for (int i = 0; i < nodes; ++i) {
                if (inside[std::size_t(i)]) model[std::size_t(i)] = value;
                ASSERT_EQ(graph.valueOf(i), model[std::size_t(i)]) << "seed " << number << ", fill " << fills;
            }
        }
    });
}

template <class T>
int labelRandomly(BufferRandom& random, AreaBuffer<T>& buffer) {
    const Labels<T> labels = labelsFor(random, buffer);
    return label(buffer.pixels.data(), buffer, labels);
}

TEST_P(Labelling, HasTheCommittedChecksums) {
    EXPECT_EQ(support::checksumOf<unsigned char>(labelRandomly<unsigned char>), 3325850363815112330U);
    EXPECT_EQ(support::checksumOf<int>(labelRandomly<int>), 7936860737339739383U);
}

TEST_P(Labelling, LabelsLargeBuffers) {
    constexpr int firstLabel = 1000, object = support::inkValue;
    const Labels<int> labels{0, object, firstLabel, true, noLimit};
    for (const auto isInk : {support::everywhere, support::onComb, support::onSpiral}) {
        auto buffer = support::largeBuffer<int>(isInk);
        const auto ink = std::count(buffer.pixels.begin(), buffer.pixels.end(), object);
        EXPECT_EQ(label(buffer.pixels.data(), buffer, labels), 1);
        EXPECT_EQ(std::count(buffer.pixels.begin(), buffer.pixels.end(), firstLabel), ink);
    }
    auto chequers = support::largeBuffer<int>(support::onChequers);
    constexpr int cells = (support::largeSide - 1) * (support::largeSide - 1) / 2 + 1;
    EXPECT_EQ(label(chequers.pixels.data(), chequers, labels), cells);
    std::erase_if(chequers.pixels, [](int pixel) { return pixel == 0 || pixel == object; });
    EXPECT_TRUE(std::is_sorted(chequers.pixels.begin(), chequers.pixels.end()));
    EXPECT_EQ(std::set<int>(chequers.pixels.begin(), chequers.pixels.end()).size(), chequers.pixels.size());
    EXPECT_EQ(chequers.pixels.back(), firstLabel + cells - 1);
}

TEST(ColorBinaryObjects, WorksWithoutLargeBlocksAndLeaksNone) {
    AreaBuffer<int> lines{24, 4, 0, 0, 24, 4, std::vector<int>(96)};
    for (std::size_t i = 0; i < 72; i += 2) lines.pixels[i] = 5;
    // The second label is refused: the background is then filled for each object of the row.
    for (const Labels<int> labels : {Labels<int>{0, 5, 7, true, noLimit}, Labels<int>{0, 5, 4, true, noLimit}}) {
        AreaBuffer<int> expected = lines;
        const int count = scan(expected, labels);
        for (int blocks = 0; blocks < 60; ++blocks) {
            AreaBuffer<int> buffer = lines;
            const support::ScarceAllocator allocator(blocks);
            EXPECT_EQ(label(buffer.pixels.data(), buffer, labels), count);
            EXPECT_EQ(buffer.pixels, expected.pixels) << blocks << " blocks";
            EXPECT_EQ(allocator.blocks(), 0) << blocks << " blocks";
        }
    }
}

/// After one refused label per row, most fills hit the background. Painting it each time would take a time of objects
/// times pixels.
TEST(ColorBinaryObjects, FillsABackgroundOftenWithoutPaintingIt) {
    BufferRandom random(3);
    constexpr int side = 700;
    AreaBuffer<unsigned char> noise{side, side, 0, 0, side, side, {}};
    for (int i = 0; i < side * side; ++i) noise.pixels.push_back(random.oneIn(4) ? 255 : 0);
    const auto background = std::count(noise.pixels.begin(), noise.pixels.end(), 0);
    EXPECT_GT(label<unsigned char>(noise.pixels.data(), noise, {0, 255, 2, true, noLimit}), 50000);
    EXPECT_LT(std::count(noise.pixels.begin(), noise.pixels.end(), 0), background / 10);
}

/// The scan of a row with two refused labels ends past the right edge: at the object in the next row's first column,
/// which has its label already.
TEST(ColorBinaryObjects, SeesLabelsPastTheRightEdge) {
    constexpr int width = 800, height = 12;
    constexpr unsigned char object = 255, background = 9;
    AreaBuffer<unsigned char> buffer{width, height, 0, 0, width, height, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool isObject = x == 0 ? y % 4 != 3 : x % 3 == 0 && y % 4 == 0;
            buffer.pixels.push_back(isObject ? object : background);
        }
    }
    auto expected = buffer;
    const Labels<unsigned char> labels{0, object, 254, true, noLimit};
    EXPECT_EQ(label(buffer.pixels.data(), buffer, labels), scan(expected, labels));
    EXPECT_EQ(buffer.pixels, expected.pixels);
}

INSTANTIATE_AT_EVERY_LEVEL(Labelling);

}  // namespace
