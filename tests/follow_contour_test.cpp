// SPDX-License-Identifier: MIT

// Contours of objects against a walk that turns by an eighth at a time.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/support/calls.h"
#include "tests/support/fenced.h"

namespace {

using support::Input;

constexpr int maxPoints = 2000;

/// The length and the points.
using Contour = std::pair<double, std::vector<std::pair<int, int>>>;

/// A buffer, and the object and the area of a walk.
template <class T>
struct Case {
    std::span<T> pixels;
    int width, height;
    T value;
    int start;
    int x, y, w, h;  // the area

    Contour follow() const {
        const auto call = [this](CPoint* points, int* count) {
            return FollowContour<T>(pixels.data(), pixels.data() + start, width, height, x, y, w, h, value, points,
                                    count);
        };
        CPoint points[maxPoints];
        int count = -1;
        Contour contour{call(points, &count), {}};
        for (int i = 0; i < count; ++i) contour.second.emplace_back(points[i].x, points[i].y);
        EXPECT_EQ(call(nullptr, &count), contour.first);
        EXPECT_EQ(count, 0);
        return contour;
    }

    bool holds(int column, int row) const {
        const std::int64_t index = std::int64_t{row} * width + column;
        return index >= 0 && index < std::ssize(pixels) && pixels[static_cast<std::size_t>(index)] == value;
    }

    Contour model() const {
        const auto low = [](std::int64_t n) { return static_cast<std::int32_t>(n); };
        const auto sign = [](int n) { return (n > 0) - (n < 0); };
        const auto home = std::pair(start % width, start / width);
        auto [column, row] = home;
        Contour contour;
        auto& [length, points] = contour;
        for (int dx = 1, dy = 0;; dx = -dx, dy = -dy) {
            const auto turn = [&] { std::tie(dx, dy) = std::pair(sign(dx - dy), sign(dx + dy)); };
            if (!points.empty()) turn();
            int turns = 0;
            for (; turns < 8 && !holds(column + dx, row + dy); ++turns) turn();
            if (turns == 8) return contour;
            points.emplace_back(column, row);
            column += dx;
            row += dy;
            const bool outside =
                column < x || column >= low(std::int64_t{x} + w) || row < y || row >= low(std::int64_t{y} + h);
            const bool closed = std::pair(column, row) == home;
            if (outside || closed || length > low(std::int64_t{w} * h)) return contour;
            length += std::sqrt(std::abs(dx) + std::abs(dy));
        }
    }
};

/// Small fenced buffers from empty to full. Areas lie inside, reach outside, or have a size that does not fit 32 bits.
template <class T>
Case<T> randomCase(Input& random, const support::Fenced& memory) {
    constexpr T object = 5, other = sizeof(T) == 1 ? 4 : T(object + 256);  // the same low byte, if there is more
    Case<T> walk{{}, random.between(1, 20), random.between(1, 12), object, 0, 0, 0, 0, 0};
    walk.pixels = memory.values<T>(static_cast<std::size_t>(walk.width * walk.height), random.coin());
    const unsigned density = random.below(11);
    for (T& pixel : walk.pixels) pixel = random.below(10) < density ? object : random.coin() ? other : T(0);

    const int size = walk.width * walk.height;
    if (random.coin()) walk.start = random.between(0, size - 1);
    while (random.coin() && walk.start < size - 1 && walk.pixels[std::size_t(walk.start)] != object) {
        ++walk.start;
    }
    walk.w = walk.width;
    walk.h = walk.height;
    if (random.coin()) return walk;
    const bool tooLarge = random.coin();
    walk.x = tooLarge ? random.between(0, 1) : random.between(-9, 9);
    walk.y = tooLarge ? random.between(0, 1) : random.between(-9, 9);
    walk.w = !tooLarge ? random.between(-1, 30) : walk.x == 1 ? INT_MAX : walk.y == 1 ? 31 : 65536;
    walk.h = !tooLarge ? random.between(-1, 30) : walk.y == 1 ? INT_MAX : 65536 - random.between(1, 30);
    return walk;
}

template <class T>
void expectModelAndChecksum() {
    const support::Fenced memory(65536);
    std::uint64_t sum = 0;
    for (std::uint64_t seed = 1; seed <= 20000; ++seed) {
        Input random(seed);
        const Case<T> walk = randomCase<T>(random, memory);
        const Contour contour = walk.follow();
        ASSERT_EQ(contour, walk.model()) << "seed " << seed << ", " << walk.width << " pixels a row";
        sum = (std::rotl(sum, 23) ^ std::bit_cast<std::uint64_t>(contour.first)) * 0x9E3779B97F4A7C15U;
        for (const auto& [x, y] : contour.second) sum = sum * 31 + static_cast<unsigned>(x * 64 + y);
    }
    EXPECT_EQ(sum, 10434960434702141878U);
}

TEST(FollowContour, EqualsItsModelAndTheCommittedChecksum) {
    expectModelAndChecksum<unsigned char>();
    expectModelAndChecksum<int>();
}

}  // namespace
