// SPDX-License-Identifier: MIT

// Flood fill against its model, at every vector level.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/fill_model.h"
#include "tests/support/leveled_test.h"

namespace {

using support::AreaBuffer;
using support::BufferRandom;

class FloodFill : public support::LeveledTest {};

constexpr int unset = -7;

struct Seed {
    int x, y;
};

template <class T>
Seed seedIn(BufferRandom& random, const AreaBuffer<T>& buffer) {
    const int x = random.position(buffer.width), y = random.position(buffer.height);
    return {x, y};
}

template <class T>
int fill(T* pixels, const AreaBuffer<T>& p, Seed seed, T value) {
    int count = unset;
    EXPECT_EQ(Fill(pixels, p.width, p.height, seed.x, seed.y, p.areaX, p.areaY, p.areaW, p.areaH, value, &count), 0);
    return count;
}

template <class T>
void compareWithModel(std::uint64_t seeds) {
    support::forSeeds<BufferRandom>(seeds, [](BufferRandom& random, std::uint64_t number) {
        auto buffer = random.buffer<T>();
        auto expected = buffer;
        const Seed seed = seedIn(random, buffer);
        const T value = random.value<T>();
        const int count = support::floodFillModel(expected, seed.x, seed.y, value);
        SCOPED_TRACE(testing::Message() << "seed " << number << ": " << buffer << ", from " << seed.x << ", "
                                        << seed.y);
        EXPECT_EQ(callFenced(random, buffer, [&](T* pixels) { return fill(pixels, buffer, seed, value); }), count);
        EXPECT_EQ(buffer.pixels, expected.pixels);
    });
}

TEST_P(FloodFill, EqualsItsModel) {
    compareWithModel<unsigned char>(8000);
    compareWithModel<int>(8000);
}

template <class T>
int fillRandomly(BufferRandom& random, AreaBuffer<T>& buffer) {
    const Seed seed = seedIn(random, buffer);
    return fill(buffer.pixels.data(), buffer, seed, random.value<T>());
}

TEST_P(FloodFill, HasTheCommittedChecksums) {
    EXPECT_EQ(support::checksumOf<unsigned char>(fillRandomly<unsigned char>), 2748249416709642064U);
    EXPECT_EQ(support::checksumOf<int>(fillRandomly<int>), 7030529894374998545U);
}

TEST_P(FloodFill, FillsLargeComponents) {
    constexpr unsigned char filled = 7;
    for (const auto isInk : {support::everywhere, support::onComb, support::onSpiral}) {
        auto buffer = support::largeBuffer<unsigned char>(isInk);
        const auto ink = std::count(buffer.pixels.begin(), buffer.pixels.end(), support::inkValue);
        EXPECT_EQ(fill(buffer.pixels.data(), buffer, {0, 0}, filled), ink + 1);
        EXPECT_EQ(std::count(buffer.pixels.begin(), buffer.pixels.end(), filled), ink);
    }
}

TEST(Fill, KnownCases) {
    AreaBuffer<int> one{3, 3, 0, 0, 3, 3, {5, 5, 0, 5, -1, 5, 0, 5, 5}};
    EXPECT_EQ(fill(one.pixels.data(), one, {1, 1}, 5), 2) << "a pixel without an equal neighbour";
    EXPECT_EQ(fill(one.pixels.data(), one, {1, 1}, 5), 1) << "the seed holds the value already";
    EXPECT_EQ(Fill(one.pixels.data(), 3, 3, 9, -9, 0, 0, 0, 2, 7, nullptr), 0);
    EXPECT_EQ(one.pixels, (std::vector{5, 5, 7, 5, 5, 5, 0, 5, 5})) << "a seed moved to the corner";
}

INSTANTIATE_AT_EVERY_LEVEL(FloodFill);

}  // namespace
