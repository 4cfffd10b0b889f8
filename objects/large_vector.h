// SPDX-License-Identifier: MIT

/// @file
/// Growing arrays in memory from the host's large-block allocator.
#pragma once

#include <cstddef>
#include <vector>

#include "buffers/host/large_block.h"

namespace omnar {

/// The host's allocator as the standard containers want it. A block returns to the allocator that it came from.
template <class T>
class LargeBlocks {
public:
    using value_type = T;

    LargeBlocks() = default;
    template <class U>
    explicit LargeBlocks(const LargeBlocks<U>& other) : allocator_(other.allocator()) {}

    T* allocate(std::size_t count) {
        void* const block = allocator_->Alloc(count * sizeof(T));
        if (block == nullptr) throw COmnarException(outOfMemory, "large_vector.h", __LINE__, 0);
        return static_cast<T*>(block);
    }
    void deallocate(T* block, std::size_t) { allocator_->Free(block); }

    LargeAllocatorItf* allocator() const { return allocator_; }
    friend bool operator==(const LargeBlocks& a, const LargeBlocks& b) { return a.allocator_ == b.allocator_; }

private:
    LargeAllocatorItf* allocator_ = g_pLargeAllocator;
};

/// Throws a COmnarException where the host has no more memory.
template <class T>
using LargeVector = std::vector<T, LargeBlocks<T>>;

}  // namespace omnar
