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

/// The code of the exception for memory that the host's allocator does not give; on Windows the system's own number.
inline constexpr long outOfMemory = -2147024882;

/// A block of the host's allocator, or a COmnarException. For 0 bytes null is a block.
inline void* allocateLarge(std::size_t bytes) {
    void* const block = g_pLargeAllocator->Alloc(bytes);
    if (block == nullptr && bytes != 0) throw COmnarException(outOfMemory, "large_block.h", __LINE__, 0);
    return block;
}

/// An array of plain values that is given back when it goes out of scope, to the allocator that gave it. Its values are
/// not initialised.
template <class T>
class LargeArray {
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) <= alignof(std::max_align_t));

public:
    explicit LargeArray(std::size_t count)
        : allocator_(g_pLargeAllocator), values_(static_cast<T*>(allocateLarge(count * sizeof(T))), count) {}
    /// Where a lack of memory is no error: the array is then empty, and its data() null.
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
