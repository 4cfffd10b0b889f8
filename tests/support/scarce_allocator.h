// SPDX-License-Identifier: MIT
/// @file
/// A host's allocator that runs out of memory.
#pragma once

#include <OmnarRaster.h>

#include <cstddef>

namespace support {

/// Serves a number of allocations for its lifetime, and counts the blocks that are not given back.
class ScarceAllocator final : public LargeAllocatorItf {
public:
    static constexpr int unlimited = -1;

    explicit ScarceAllocator(int allocations) : left_(allocations) { g_pLargeAllocator = this; }
    ~ScarceAllocator() { g_pLargeAllocator = before_; }
    ScarceAllocator(const ScarceAllocator&) = delete;
    ScarceAllocator& operator=(const ScarceAllocator&) = delete;

    void* Alloc(std::size_t bytes) override {
        if (left_ == 0) return nullptr;
        if (left_ != unlimited) --left_;
        ++blocks_;
        return before_->Alloc(bytes);
    }
    void Free(void* block) override {
        blocks_ -= block != nullptr;
        before_->Free(block);
    }

    int blocks() const { return blocks_; }  ///< allocated and not freed

private:
    LargeAllocatorItf* const before_ = g_pLargeAllocator;
    int left_, blocks_ = 0;
};

}  // namespace support
