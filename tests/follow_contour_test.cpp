// SPDX-License-Identifier: MIT

// Contours of objects against a walk that turns a pointer by an eighth at a time.
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

/// Its length and its points.
using Contour = std::pair<double, std::vector<std::pair<int, int>>>;

template <class T>
struct Picture {
    std::span<T> pixels;
    int width, height;
    T value;
    int start;
    int x, y, w, h;  // the area

    Contour followed() const {
        const auto follow = [this](CPoint* points, int* count) {
            return FollowContour<T>(pixels.data(), pixels.data() + start, width, height, x, y, w, h, value, points,
                                    count);
        };
        CPoint points[2000];
        int count = -1;
        Contour contour{follow(points, &count), {}};
        for (int i = 0; i < count; ++i) contour.second.emplace_back(points[i].x, points[i].y);
        EXPECT_EQ(follow(nullptr, &count), contour.first);
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

/// Small pictures in all states from empty to full, between fences; areas that cut them, that reach beyond them, or
/// whose size does not fit 32 bits.
template <class T>
Picture<T> draw(Input& random, const support::Fenced& memory) {
    Picture<T> picture{{}, random.between(1, 20), random.between(1, 12), T(5), 0, 0, 0, 0, 0};
    picture.pixels = memory.values<T>(static_cast<std::size_t>(picture.width * picture.height), random.coin());
    const unsigned density = random.below(11);
    constexpr T alike = sizeof(T) == 1 ? 4 : T(5 + 256);
    for (T& pixel : picture.pixels) pixel = random.below(10) < density ? T(5) : random.coin() ? alike : T(0);

    const int size = picture.width * picture.height;
    if (random.coin()) picture.start = random.between(0, size - 1);
    while (random.coin() && picture.start < size - 1 && picture.pixels[std::size_t(picture.start)] != T(5)) {
        ++picture.start;
    }
    picture.w = picture.width;
    picture.h = picture.height;
    if (random.coin()) return picture;
    const bool tooLarge = random.coin();
    picture.x = tooLarge ? random.between(0, 1) : random.between(-9, 9);
    picture.y = tooLarge ? random.between(0, 1) : random.between(-9, 9);
    picture.w = !tooLarge ? random.between(-1, 30) : picture.x == 1 ? INT_MAX : picture.y == 1 ? 31 : 65536;
    picture.h = !tooLarge ? random.between(-1, 30) : picture.y == 1 ? INT_MAX : 65536 - random.between(1, 30);
    return picture;
}

template <class T>
void expectModelAndChecksum() {
    const support::Fenced memory(65536);
    std::uint64_t sum = 0;
    for (std::uint64_t seed = 1; seed <= 20000; ++seed) {
        Input random(seed);
        const Picture<T> picture = draw<T>(random, memory);
        const Contour contour = picture.followed();
        ASSERT_EQ(contour, picture.model()) << "seed " << seed << ", " << picture.width << " pixels a row";
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
