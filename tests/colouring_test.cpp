// SPDX-License-Identifier: MIT

// Labelling objects against a scan that walks from pixel to pixel, at every level.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

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

template <class T>
void compareWithScan(std::uint64_t seeds) {
    support::forSeeds<PictureRandom>(seeds, [](PictureRandom& random, std::uint64_t number) {
        auto picture = random.picture<T>();
        auto expected = picture;
        const Labels<T> labels = labelsFor(random, picture);
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

TEST_P(Colouring, WrapsAroundAmongManyObjects) {
    for (const bool ascending : {true, false}) {
        Picture<unsigned char> picture{40, 40, 0, 0, 40, 40, {}};
        for (int i = 0; i < 1600; ++i) picture.pixels.push_back((i + i / 40) % 2 == 0 ? 255 : 9);
        auto expected = picture;
        const Labels<unsigned char> labels{0, 255, 100, ascending, -1};
        EXPECT_EQ(label(picture.pixels.data(), picture, labels), scan(expected, labels));
        EXPECT_EQ(picture.pixels, expected.pixels);
    }
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
    for (int blocks = 0; blocks < 5; ++blocks) {
        Picture<int> picture{4, 3, 0, 0, 4, 3, {5, 0, 5, 5, 5, 0, 0, 0, 0, 5, 5, 5}};
        Scarce scarce(blocks);
        EXPECT_EQ(label(picture.pixels.data(), picture, {0, 5, 7, true, -1}), 2);
        EXPECT_EQ(picture.pixels, (std::vector{7, 0, 8, 8, 7, 0, 0, 0, 0, 5, 5, 5})) << "the last row is not scanned";
        EXPECT_EQ(scarce.out, 0) << blocks << " blocks";
    }
}

INSTANTIATE_TEST_SUITE_P(Levels, Colouring, testing::ValuesIn(omnar::allLevels),
                         [](const auto& level) { return std::string(name(level.param)); });

}  // namespace
