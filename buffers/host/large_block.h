// SPDX-License-Identifier: MIT
/// @file
/// Work memory from the host's large-block allocator.
#pragma once

#include <OmnarRaster.h>

#include <cstddef>
#include <new>
#include <span>
#include <type_traits>

namespace omnar {

/// The exception code for a failed allocation. It equals E_OUTOFMEMORY of Windows.
inline constexpr long outOfMemory = -2147024882;

/// Throws a COmnarException if the allocator gives no block. For 0 bytes null is a valid block.
inline void* allocateLarge(std::size_t bytes, LargeAllocatorItf* allocator = g_pLargeAllocator) {
    void* const block = allocator->Alloc(bytes);
    if (block == nullptr && bytes != 0) throw COmnarException(outOfMemory, "large_block.h", __LINE__, 0);
    return block;
}

/// An array of trivially copyable, uninitialised values. Its block returns to the allocator that gave it.
template <class T>
class LargeArray {
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) <= alignof(std::max_align_t));

public:
    explicit LargeArray(std::size_t count)
        : allocator_(g_pLargeAllocator), values_(static_cast<T*>(allocateLarge(count * sizeof(T))), count) {}
    /// Does not throw: without memory the array is empty and its data() null.
    LargeArray(std::nothrow_t, std::size_t count) : allocator_(g_pLargeAllocator) {
        if (void* const block = allocator_->Alloc(count * sizeof(T))) values_ = {static_cast<T*>(block), count};
    }
    ~LargeArray() { allocator_->Free(values_.data()); }
    LargeArray(const LargeArray&) = delete;
    LargeArray& operator=(const LargeArray&) = delete;

    T* data() const { return values_.data(); }
    std::size_t size() const { return values_.size(); }
    T& operator[](std::size_t i) const { return values_[i]; }
    T* begin() const { return data(); }
    T* end() const { return data() + size(); }

private:
    LargeAllocatorItf* allocator_;
    std::span<T> values_;
};

}  // namespace omnar
