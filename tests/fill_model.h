// SPDX-License-Identifier: MIT
/// @file
/// Models and random buffers for the functions that fill and label.
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

/// A buffer and the area to work in.
template <class T>
struct AreaBuffer {
    int width, height, areaX, areaY, areaW, areaH;
    std::vector<T> pixels;

    T& operator[](std::pair<int, int> p) { return pixels[static_cast<std::size_t>(p.second * width + p.first)]; }
};

template <class T>
std::ostream& operator<<(std::ostream& out, const AreaBuffer<T>& p) {
    return out << p.width << " x " << p.height << ", area " << p.areaX << ", " << p.areaY << ", " << p.areaW << ", "
               << p.areaH << " of " << sizeof(T) << " bytes";
}

/// The nearest of 0 to side - 1.
inline int clampInto(int side, int value) { return value < 0 ? 0 : value >= side ? side - 1 : value; }

/// Walks from pixel to pixel and backtracks. Returns 1 + the number of changed pixels.
template <class T>
int floodFillModel(AreaBuffer<T>& buffer, int seedX, int seedY, T value) {
    const int left = clampInto(buffer.width, buffer.areaX), right = left + clampInto(buffer.width - left, buffer.areaW);
    const int top = clampInto(buffer.height, buffer.areaY), bottom = top + clampInto(buffer.height - top, buffer.areaH);
    std::pair position{clampInto(buffer.width, seedX), clampInto(buffer.height, seedY)};
    int count = 1;
    const T old = buffer[position];
    if (old == value) return count;
    std::vector path{position};
    for (std::size_t steps = 0; !path.empty(); ++steps) {
        if (steps > 2 * buffer.pixels.size()) throw std::logic_error("the model does not end");
        if (buffer[position] != value) buffer[position] = value, ++count;
        const auto [x, y] = position;
        const std::tuple<bool, int, int> neighbours[] = {
            {x < right, x + 1, y}, {x > left, x - 1, y}, {y < bottom, x, y + 1}, {y > top, x, y - 1}};
        const auto next = std::find_if(std::begin(neighbours), std::end(neighbours), [&](const auto& n) {
            return std::get<0>(n) && buffer[{std::get<1>(n), std::get<2>(n)}] == old;
        });
        if (next == std::end(neighbours)) {
            position = path.back();
            path.pop_back();
        } else {
            path.push_back(position);
            position = {std::get<1>(*next), std::get<2>(*next)};
        }
    }
    return count;
}

/// Random buffers of few values, in short and in long runs.
class BufferRandom : public Random {
public:
    using Random::Random;

    int between(int low, int high) { return low + static_cast<int>(below(static_cast<unsigned>(high - low) + 1)); }

    template <class T>
    T value() {
        constexpr T values[] = {0, 1, std::numeric_limits<T>::max(), std::numeric_limits<T>::min()};
        return values[below(4)];
    }

    /// A position on a side, one past its end, or far outside.
    int position(int side) {
        constexpr int outside[] = {INT_MIN, -1, INT_MAX};
        return oneIn(5) ? outside[below(3)] : between(0, side);
    }

    template <class T>
    AreaBuffer<T> buffer() {
        const bool wide = oneIn(4);
        const int width = wide ? between(60, 300) : between(1, 14);
        const int height = between(1, wide ? 6 : 14);
        AreaBuffer<T> buffer{width, height, 0, 0, width, height, {}};
        if (!oneIn(3)) buffer.areaX = position(width), buffer.areaY = position(height);
        if (!oneIn(3)) buffer.areaW = position(width), buffer.areaH = position(height);
        const T ground = value<T>(), ink = value<T>();
        const unsigned longest = 1 + below(wide ? 100 : 4), inked = 1 + below(4);
        while (buffer.pixels.size() < static_cast<std::size_t>(width * height)) {
            const T next = oneIn(30) ? value<T>() : oneIn(1 + inked) ? ground : ink;
            buffer.pixels.resize(buffer.pixels.size() + 1 + below(longest), next);
        }
        buffer.pixels.resize(static_cast<std::size_t>(width * height));
        return buffer;
    }
};

/// The result of `call(pixels)` on a copy of the buffer at the beginning or the end of fenced memory.
template <class T, class Call>
int callFenced(BufferRandom& random, AreaBuffer<T>& buffer, Call call) {
    static const Fenced memory(65536);
    T* pixels = reinterpret_cast<T*>(memory.bytes().data());
    if (random.oneIn(2)) pixels += memory.bytes().size() / sizeof(T) - buffer.pixels.size();
    std::copy(buffer.pixels.begin(), buffer.pixels.end(), pixels);
    const int result = call(pixels);
    std::copy_n(pixels, buffer.pixels.size(), buffer.pixels.begin());
    return result;
}

/// The checksum of what `call(random, buffer)` returns and writes for a fixed sequence of buffers.
template <class T, class Call>
std::uint64_t checksumOf(Call call) {
    std::uint64_t sum = 0;
    const auto add = [&](int value) { sum = (sum ^ static_cast<std::uint32_t>(value)) * 0x100000001B3U; };
    for (std::uint64_t seed = 1; seed <= 500; ++seed) {
        BufferRandom random(seed);
        auto buffer = random.buffer<T>();
        add(call(random, buffer));
        for (const T pixel : buffer.pixels) add(pixel);
    }
    return sum;
}

/// The side of buffers that are too large for a method of more than linear time.
constexpr int largeSide = 2048;
constexpr int inkValue = 255;  // on zeros

template <class T>
AreaBuffer<T> largeBuffer(bool (*isInk)(int x, int y)) {
    AreaBuffer<T> buffer{largeSide, largeSide, 0, 0, largeSide, largeSide, {}};
    for (int y = 0; y < largeSide; ++y) {
        for (int x = 0; x < largeSide; ++x) buffer.pixels.push_back(isInk(x, y) ? inkValue : 0);
    }
    return buffer;
}

inline bool everywhere(int, int) { return true; }
inline bool onComb(int x, int y) { return y == 0 || x % 2 == 0; }
inline bool onChequers(int x, int y) { return (x + y) % 2 == 0; }
/// Every other ring is ink, open on the left, where a bridge leads to the next ring inside.
inline bool onSpiral(int x, int y) {
    const int ring = std::min({x, y, largeSide - 1 - x, largeSide - 1 - y});
    return (ring % 2 == 0) != (x == ring && y == ring + 1);
}

}  // namespace support
