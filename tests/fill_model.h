// SPDX-License-Identifier: MIT
/// @file
/// Filling said pixel by pixel, and the pictures on which the functions on objects are compared with that.
#pragma once

#include <OmnarRaster.h>

#include <algorithm>
#include <climits>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/support/family.h"
#include "tests/support/fenced.h"

namespace support {

/// A test that runs at every level.
class LeveledTest : public testing::TestWithParam<omnar::Level> {
protected:
    void SetUp() override {
        if (!level_.runs()) GTEST_SKIP() << "this processor or build lacks the level " << name(GetParam());
    }

private:
    ForcedLevel level_{GetParam()};
};

/// A picture with the area that is to be looked at.
template <class T>
struct Picture {
    int width, height, areaX, areaY, areaW, areaH;
    std::vector<T> pixels;

    T& operator[](std::pair<int, int> p) { return pixels[static_cast<std::size_t>(p.second * width + p.first)]; }
};

template <class T>
std::ostream& operator<<(std::ostream& out, const Picture<T>& p) {
    return out << p.width << " x " << p.height << ", area " << p.areaX << ", " << p.areaY << ", " << p.areaW << ", "
               << p.areaH << " of " << sizeof(T) << " bytes";
}

inline int into(int side, int value) { return value < 0 ? 0 : value >= side ? side - 1 : value; }

/// Steps from pixel to pixel, and back the same way where none goes on. Returns the count, which begins with 1.
template <class T>
int walk(Picture<T>& picture, int seedX, int seedY, T value) {
    const int left = into(picture.width, picture.areaX), right = left + into(picture.width - left, picture.areaW);
    const int top = into(picture.height, picture.areaY), bottom = top + into(picture.height - top, picture.areaH);
    std::pair at{into(picture.width, seedX), into(picture.height, seedY)};
    int count = 1;
    const T old = picture[at];
    if (old == value) return count;
    std::vector way{at};
    for (std::size_t steps = 0; !way.empty(); ++steps) {
        if (steps > 2 * picture.pixels.size()) throw std::logic_error("the walk does not end");
        if (picture[at] != value) picture[at] = value, ++count;
        const auto [x, y] = at;
        const std::tuple<bool, int, int> neighbours[] = {
            {x < right, x + 1, y}, {x > left, x - 1, y}, {y < bottom, x, y + 1}, {y > top, x, y - 1}};
        const auto next = std::find_if(std::begin(neighbours), std::end(neighbours), [&](const auto& n) {
            return std::get<0>(n) && picture[{std::get<1>(n), std::get<2>(n)}] == old;
        });
        if (next == std::end(neighbours)) {
            at = way.back();
            way.pop_back();
        } else {
            way.push_back(at);
            at = {std::get<1>(*next), std::get<2>(*next)};
        }
    }
    return count;
}

/// Draws pictures of few values, in long runs and in short ones.
class PictureRandom : public Random {
public:
    using Random::Random;

    int between(int low, int high) { return low + static_cast<int>(below(static_cast<unsigned>(high - low) + 1)); }

    template <class T>
    T value() {
        constexpr T values[] = {0, 1, std::numeric_limits<T>::max(), std::numeric_limits<T>::min()};
        return values[below(4)];
    }

    /// A place along a side, or off it.
    int along(int side) {
        constexpr int far[] = {INT_MIN, -1, INT_MAX};
        return oneIn(5) ? far[below(3)] : between(0, side);
    }

    template <class T>
    Picture<T> picture() {
        const bool wide = oneIn(4);
        const int width = wide ? between(60, 300) : between(1, 14);
        const int height = between(1, wide ? 6 : 14);
        Picture<T> picture{width, height, 0, 0, width, height, {}};
        if (!oneIn(3)) picture.areaX = along(width), picture.areaY = along(height);
        if (!oneIn(3)) picture.areaW = along(width), picture.areaH = along(height);
        const T ground = value<T>(), ink = value<T>();
        const unsigned longest = 1 + below(wide ? 100 : 4), inked = 1 + below(4);
        while (picture.pixels.size() < static_cast<std::size_t>(width * height)) {
            const T next = oneIn(30) ? value<T>() : oneIn(1 + inked) ? ground : ink;
            picture.pixels.resize(picture.pixels.size() + 1 + below(longest), next);
        }
        picture.pixels.resize(static_cast<std::size_t>(width * height));
        return picture;
    }
};

/// What `call(pixels)` gives while the picture begins or ends where nothing may be touched.
template <class T, class Call>
int atFence(PictureRandom& random, Picture<T>& picture, Call call) {
    static const Fenced memory(65536);
    T* pixels = reinterpret_cast<T*>(memory.bytes().data());
    if (random.oneIn(2)) pixels += memory.bytes().size() / sizeof(T) - picture.pixels.size();
    std::copy(picture.pixels.begin(), picture.pixels.end(), pixels);
    const int result = call(pixels);
    std::copy_n(pixels, picture.pixels.size(), picture.pixels.begin());
    return result;
}

/// One number for what `call(random, picture)` does to a fixed stream of pictures, and for its results.
template <class T, class Call>
std::uint64_t checksumOf(Call call) {
    std::uint64_t sum = 0;
    const auto add = [&](int value) { sum = (sum ^ static_cast<std::uint32_t>(value)) * 0x100000001B3U; };
    for (std::uint64_t seed = 1; seed <= 500; ++seed) {
        PictureRandom random(seed);
        auto picture = random.picture<T>();
        add(call(random, picture));
        for (const T pixel : picture.pixels) add(pixel);
    }
    return sum;
}

/// Pictures by a rule, too large for a method that is not linear.
constexpr int bigSide = 2048;

template <class T>
Picture<T> bigPicture(bool (*isInk)(int x, int y)) {
    Picture<T> picture{bigSide, bigSide, 0, 0, bigSide, bigSide, {}};
    for (int y = 0; y < bigSide; ++y) {
        for (int x = 0; x < bigSide; ++x) picture.pixels.push_back(isInk(x, y) ? 255 : 0);
    }
    return picture;
}

inline bool everywhere(int, int) { return true; }
inline bool onComb(int x, int y) { return y == 0 || x % 2 == 0; }
inline bool onChequers(int x, int y) { return (x + y) % 2 == 0; }
/// Every other of the rings is cut open on the left, and from there a bridge leads to the next one inside.
inline bool onSpiral(int x, int y) {
    const int ring = std::min({x, y, bigSide - 1 - x, bigSide - 1 - y});
    return (ring % 2 == 0) != (x == ring && y == ring + 1);
}

}  // namespace support
