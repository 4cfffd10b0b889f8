// SPDX-License-Identifier: MIT

// Filling a region against the walk from pixel to pixel, at every level.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/fill_model.h"
#include "tests/support/calls.h"

namespace {

using support::Picture;
using support::PictureRandom;

class Filling : public support::LeveledTest {};

struct Seed {
    int x, y;
};

template <class T>
Seed seedIn(PictureRandom& random, const Picture<T>& picture) {
    const int x = random.along(picture.width), y = random.along(picture.height);
    return {x, y};
}

/// The count, which the call must have set.
template <class T>
int fill(T* pixels, const Picture<T>& p, Seed seed, T value) {
    int count = -7;
    EXPECT_EQ(Fill(pixels, p.width, p.height, seed.x, seed.y, p.areaX, p.areaY, p.areaW, p.areaH, value, &count), 0);
    return count;
}

template <class T>
void compareWithWalk(std::uint64_t seeds) {
    support::forSeeds<PictureRandom>(seeds, [](PictureRandom& random, std::uint64_t number) {
        auto picture = random.picture<T>();
        auto expected = picture;
        const Seed seed = seedIn(random, picture);
        const T value = random.value<T>();
        const int count = support::walk(expected, seed.x, seed.y, value);
        SCOPED_TRACE(testing::Message() << "seed " << number << ": " << picture << ", from " << seed.x << ", "
                                        << seed.y);
        EXPECT_EQ(atFence(random, picture, [&](T* pixels) { return fill(pixels, picture, seed, value); }), count);
        EXPECT_EQ(picture.pixels, expected.pixels);
    });
}

TEST_P(Filling, EqualsTheWalk) {
    compareWithWalk<unsigned char>(8000);
    compareWithWalk<int>(8000);
}

template <class T>
int fillDrawn(PictureRandom& random, Picture<T>& picture) {
    const Seed seed = seedIn(random, picture);
    return fill(picture.pixels.data(), picture, seed, random.value<T>());
}

TEST_P(Filling, HasTheCommittedChecksums) {
    EXPECT_EQ(support::checksumOf<unsigned char>(fillDrawn<unsigned char>), 2748249416709642064U);
    EXPECT_EQ(support::checksumOf<int>(fillDrawn<int>), 7030529894374998545U);
}

TEST_P(Filling, MastersBigRegions) {
    for (const auto rule : {support::everywhere, support::onComb, support::onSpiral}) {
        auto picture = support::bigPicture<unsigned char>(rule);
        const auto ink = std::count(picture.pixels.begin(), picture.pixels.end(), 255);
        EXPECT_EQ(fill<unsigned char>(picture.pixels.data(), picture, {0, 0}, 7), ink + 1);
        EXPECT_EQ(std::count(picture.pixels.begin(), picture.pixels.end(), 7), ink);
    }
}

TEST(Fill, KnownCases) {
    Picture<int> one{3, 3, 0, 0, 3, 3, {5, 5, 0, 5, -1, 5, 0, 5, 5}};
    EXPECT_EQ(fill(one.pixels.data(), one, {1, 1}, 5), 2) << "a pixel without an equal neighbour";
    EXPECT_EQ(fill(one.pixels.data(), one, {1, 1}, 5), 1) << "the value that it has, and neighbours, too";
    EXPECT_EQ(Fill(one.pixels.data(), 3, 3, 9, -9, 0, 0, 0, 2, 7, nullptr), 0);
    EXPECT_EQ(one.pixels, (std::vector{5, 5, 7, 5, 5, 5, 0, 5, 5})) << "from beyond a corner, which takes part";
}

INSTANTIATE_TEST_SUITE_P(Levels, Filling, testing::ValuesIn(omnar::allLevels),
                         [](const auto& level) { return std::string(name(level.param)); });

}  // namespace
