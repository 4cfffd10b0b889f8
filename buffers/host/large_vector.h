// SPDX-License-Identifier: MIT

/// @file
/// Growing arrays in memory of the host's large-block allocator.
#pragma once

#include <cstddef>
#include <vector>

#include "buffers/host/large_block.h"

namespace omnar {

/// The host's allocator as an allocator of the standard containers. A block returns to the allocator that gave it.
template <class T>
class LargeBlocks {
public:
    using value_type = T;

    LargeBlocks() = default;
    template <class U>
    explicit LargeBlocks(const LargeBlocks<U>& other) : allocator_(other.allocator()) {}

    T* allocate(std::size_t count) { return static_cast<T*>(allocateLarge(count * sizeof(T), allocator_)); }
    void deallocate(T* block, std::size_t) { allocator_->Free(block); }

    LargeAllocatorItf* allocator() const { return allocator_; }
    friend bool operator==(const LargeBlocks& a, const LargeBlocks& b) { return a.allocator_ == b.allocator_; }

private:
    LargeAllocatorItf* allocator_ = g_pLargeAllocator;
};

/// Throws a COmnarException if the host has no more memory.
template <class T>
using LargeVector = std::vector<T, LargeBlocks<T>>;

}  // namespace omnar
