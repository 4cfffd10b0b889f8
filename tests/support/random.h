// SPDX-License-Identifier: MIT
/// @file
/// Random input, equal on every platform and rich in edge values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace support {

/// SplitMix64. The standard library's distributions differ between platforms.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        std::uint64_t z = state_ += 0x9E3779B97F4A7C15U;
        z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9U;
        z = (z ^ z >> 27) * 0x94D049BB133111EBU;
        return z ^ z >> 31;
    }

    /// A number in [0, bound).
    std::uint32_t below(std::uint32_t bound) { return static_cast<std::uint32_t>((next() >> 32) * bound >> 32); }
    bool oneIn(std::uint32_t n) { return below(n) == 0; }

    /// A byte; with probability 1/2 an edge value.
    std::uint8_t byte() {
        constexpr std::uint8_t edges[] = {0, 1, 127, 128, 254, 255};
        return oneIn(2) ? edges[below(sizeof edges)] : static_cast<std::uint8_t>(next());
    }

    /// Single bytes, and runs of 0 and of 255, as masks have them.
    void fill(std::span<std::byte> bytes) {
        for (std::size_t i = 0; i < bytes.size();) {
            const std::size_t run = oneIn(8) ? 1 + below(100) : 1;
            const std::uint8_t value = run == 1 ? byte() : oneIn(2) ? 0 : 255;
            for (std::size_t end = i + run; i < end && i < bytes.size(); ++i) bytes[i] = std::byte{value};
        }
    }

private:
    std::uint64_t state_;
};

}  // namespace support
