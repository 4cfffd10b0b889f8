// SPDX-License-Identifier: MIT

// Labelling objects against a scan that walks from pixel to pixel, at every level.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "objects/component_graph.h"
#include "tests/fill_model.h"
#include "tests/support/calls.h"

namespace {

using support::Picture;
using support::PictureRandom;

class Colouring : public support::LeveledTest {};

template <class T>
struct Labels {
    T reserved, object, first;
    bool ascending;
    int limit;
};

/// Labels that are near the values they must not have, or far from them.
template <class T>
Labels<T> labelsFor(PictureRandom& random, Picture<T>& picture) {
    const T object = picture.pixels[random.below(static_cast<std::uint32_t>(picture.pixels.size()))];
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
int label(T* pixels, const Picture<T>& p, const Labels<T>& labels) {
    return ColorBinaryObjects(pixels, p.width, p.height, p.areaX, p.areaY, p.areaW, p.areaH, labels.reserved,
                              labels.object, labels.first, labels.ascending, labels.limit);
}

/// Scans pixel by pixel. A label that is refused makes the seeds of the row lag behind by one more pixel.
template <class T>
int scan(Picture<T>& picture, Labels<T> labels) {
    const int x = support::into(picture.width, picture.areaX), y = support::into(picture.height, picture.areaY);
    const int w = support::into(picture.width - x, picture.areaW);
    int count = 0;
    for (int row = y; row < y + support::into(picture.height - y, picture.areaH); ++row) {
        int i = 0;
        const int group = 8 / int(sizeof(T));
        const auto zeros = [&] {
            for (int k = 0; k < group; ++k) {
                if (picture[{x + i + k, row}] != 0) return false;
            }
            return true;
        };
        while (i < w - group - 1 && zeros()) i += group;
        for (int lag = 0; i - lag < w; ++i) {
            if (picture[{x + i, row}] != labels.object) continue;
            if (labels.first == labels.object || labels.first == labels.reserved) {
                ++lag;
            } else {
                support::walk(picture, x + i - lag, row, labels.first);
                ++count;
            }
            labels.first = static_cast<T>(static_cast<unsigned>(labels.first) + (labels.ascending ? 1U : ~0U));
            if (labels.first == (labels.ascending ? labels.limit : 1)) return count;
        }
    }
    return count;
}

/// Replaces values by labels that are given out soon: a fill then makes a region one with some of its neighbours.
template <class T>
void labelBefore(PictureRandom& random, Picture<T>& picture, const Labels<T>& labels) {
    const unsigned objects = 1 + random.below(8), different = 1 + random.below(12);
    T last = picture.pixels[0], label = last;
    for (T& pixel : picture.pixels) {
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
    support::forSeeds<PictureRandom>(seeds, [](PictureRandom& random, std::uint64_t number) {
        auto picture = random.picture<T>();
        const Labels<T> labels = labelsFor(random, picture);
        if (random.oneIn(2)) labelBefore(random, picture, labels);
        auto expected = picture;
        const int count = scan(expected, labels);
        SCOPED_TRACE(testing::Message() << "seed " << number << ": " << picture << ", object " << +labels.object
                                        << ", reserved " << +labels.reserved << ", labels from " << +labels.first
                                        << (labels.ascending ? " up to " : " down, not to ") << labels.limit);
        EXPECT_EQ(atFence(random, picture, [&](T* pixels) { return label(pixels, picture, labels); }), count);
        EXPECT_EQ(picture.pixels, expected.pixels);
    });
}

TEST_P(Colouring, EqualsTheScan) {
    compareWithScan<unsigned char>(8000);
    compareWithScan<int>(8000);
}

/// From one end of the labels to the other many times, while the seeds lag behind further and further.
TEST_P(Colouring, WrapsAroundAmongManyObjects) {
    support::forSeeds<PictureRandom>(30, [](PictureRandom& random, std::uint64_t) {
        const int width = random.between(30, 800), height = 3000 / width + 1;
        Picture<unsigned char> picture{width, height, random.between(0, 3), 0, width, height, {}};
        const unsigned ink = 1 + random.below(7), values = 1 + random.below(3);
        for (int i = 0; i < width * height; ++i) {
            const bool isInk = values == 3 ? (i + i / width) % 2 == 0 : random.below(8) < ink;
            picture.pixels.push_back(static_cast<unsigned char>(isInk ? 255 : 9 + random.below(values)));
        }
        auto expected = picture;
        const Labels<unsigned char> labels{random.value<unsigned char>(), 255, 100, random.oneIn(2), -1};
        EXPECT_EQ(label(picture.pixels.data(), picture, labels), scan(expected, labels));
        EXPECT_EQ(picture.pixels, expected.pixels);
    });
}

/// Against a flood over all edges, on graphs of nodes of any size. The one value is never given again.
TEST(ComponentGraph, FillsAsAFloodDoes) {
    support::forSeeds<PictureRandom>(1000, [](PictureRandom& random, std::uint64_t number) {
        constexpr int never = 9;
        const int nodes = random.between(2, 60), values = random.between(2, 8);
        const auto node = [&] { return random.between(0, nodes - 1); };
        omnar::ComponentGraph<int> graph(never, never);
        std::vector<int> model;
        std::vector<std::pair<int, int>> edges;
        for (int i = 0; i < nodes; ++i) {
            model.push_back(random.oneIn(3) ? never : random.between(0, values));
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
int labelDrawn(PictureRandom& random, Picture<T>& picture) {
    const Labels<T> labels = labelsFor(random, picture);
    return label(picture.pixels.data(), picture, labels);
}

TEST_P(Colouring, HasTheCommittedChecksums) {
    EXPECT_EQ(support::checksumOf<unsigned char>(labelDrawn<unsigned char>), 3325850363815112330U);
    EXPECT_EQ(support::checksumOf<int>(labelDrawn<int>), 7936860737339739383U);
}

TEST_P(Colouring, MastersBigPictures) {
    const Labels<int> labels{0, 255, 1000, true, -1};
    for (const auto rule : {support::everywhere, support::onComb, support::onSpiral}) {
        auto picture = support::bigPicture<int>(rule);
        const auto ink = std::count(picture.pixels.begin(), picture.pixels.end(), 255);
        EXPECT_EQ(label(picture.pixels.data(), picture, labels), 1);
        EXPECT_EQ(std::count(picture.pixels.begin(), picture.pixels.end(), 1000), ink);
    }
    auto chequers = support::bigPicture<int>(support::onChequers);
    constexpr int cells = (support::bigSide - 1) * (support::bigSide - 1) / 2 + 1;
    EXPECT_EQ(label(chequers.pixels.data(), chequers, labels), cells);
    std::erase_if(chequers.pixels, [](int pixel) { return pixel == 0 || pixel == 255; });
    EXPECT_TRUE(std::is_sorted(chequers.pixels.begin(), chequers.pixels.end()));
    EXPECT_EQ(std::set<int>(chequers.pixels.begin(), chequers.pixels.end()).size(), chequers.pixels.size());
    EXPECT_EQ(chequers.pixels.back(), 1000 + cells - 1);
}

/// Gives out so many blocks and then no more.
class Scarce final : public LargeAllocatorItf {
public:
    explicit Scarce(int blocks) : left_(blocks), before_(g_pLargeAllocator) { g_pLargeAllocator = this; }
    ~Scarce() { g_pLargeAllocator = before_; }

    void* Alloc(std::size_t bytes) override {
        if (left_ == 0) return nullptr;
        --left_, ++out;
        return before_->Alloc(bytes);
    }
    void Free(void* block) override {
        out -= block != nullptr;
        before_->Free(block);
    }

    int out = 0;

private:
    int left_;
    LargeAllocatorItf* before_;
};

TEST(ColorBinaryObjects, NeedsNoneOfTheLargeBlocksAndGivesAllBack) {
    Picture<int> lines{24, 4, 0, 0, 24, 4, std::vector<int>(96)};
    for (std::size_t i = 0; i < 72; i += 2) lines.pixels[i] = 5;
    // The second label is refused: from then on the background is filled again for each object of the row.
    for (const Labels<int> labels : {Labels<int>{0, 5, 7, true, -1}, Labels<int>{0, 5, 4, true, -1}}) {
        Picture<int> expected = lines;
        const int count = scan(expected, labels);
        for (int blocks = 0; blocks < 60; ++blocks) {
            Picture<int> picture = lines;
            Scarce scarce(blocks);
            EXPECT_EQ(label(picture.pixels.data(), picture, labels), count);
            EXPECT_EQ(picture.pixels, expected.pixels) << blocks << " blocks";
            EXPECT_EQ(scarce.out, 0) << blocks << " blocks";
        }
    }
}

/// In which most of the background is filled for most of the objects, one refused label a row being enough for that.
TEST(ColorBinaryObjects, FillsABackgroundOftenWithoutPaintingIt) {
    PictureRandom random(3);
    Picture<unsigned char> noise{700, 700, 0, 0, 700, 700, {}};
    for (int i = 0; i < 700 * 700; ++i) noise.pixels.push_back(random.oneIn(4) ? 255 : 0);
    const auto ground = std::count(noise.pixels.begin(), noise.pixels.end(), 0);
    EXPECT_GT(label<unsigned char>(noise.pixels.data(), noise, {0, 255, 2, true, -1}), 50000);
    EXPECT_LT(std::count(noise.pixels.begin(), noise.pixels.end(), 0), ground / 10);
}

INSTANTIATE_TEST_SUITE_P(Levels, Colouring, testing::ValuesIn(omnar::allLevels),
                         [](const auto& level) { return std::string(name(level.param)); });

}  // namespace
