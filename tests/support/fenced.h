// SPDX-License-Identifier: MIT
/// @file
/// Memory between two pages that nobody may touch: one byte too far is a crash.
#pragma once

#include <cstddef>
#include <span>

namespace support {

class Fenced {
public:
    /// `bytes` is rounded up to whole pages.
    explicit Fenced(std::size_t bytes);
    ~Fenced();
    Fenced(const Fenced&) = delete;
    Fenced& operator=(const Fenced&) = delete;

    std::span<std::byte> bytes() const { return bytes_; }

    /// So many values right behind the first fence, or right before the second one.
    template <class T>
    std::span<T> values(std::size_t count, bool atEnd) const {
        const std::span<std::byte> part = atEnd ? bytes_.last(count * sizeof(T)) : bytes_.first(count * sizeof(T));
        return {reinterpret_cast<T*>(part.data()), count};
    }

private:
    std::span<std::byte> bytes_;
    std::byte* reserved_;
    std::size_t reservedSize_;
};

}  // namespace support
