// SPDX-License-Identifier: MIT
/// @file
/// Memory between two inaccessible pages: an access one byte outside it crashes.
#pragma once

#include <cstddef>
#include <span>

namespace support {

class Fenced {
public:
    /// Rounds `bytes` up to whole pages.
    explicit Fenced(std::size_t bytes);
    ~Fenced();
    Fenced(const Fenced&) = delete;
    Fenced& operator=(const Fenced&) = delete;

    std::span<std::byte> bytes() const { return bytes_; }

    /// `count` values directly after the first fence, or directly before the second one.
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
