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

private:
    std::span<std::byte> bytes_;
    std::byte* reserved_;
    std::size_t reservedSize_;
};

}  // namespace support
