// SPDX-License-Identifier: MIT
#include "tests/support/fenced_new.h"

#include <cstddef>
#include <cstdlib>
#include <new>

#include "tests/support/fenced.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

support::FencedNew::FencedNew() = default;
support::FencedNew::~FencedNew() = default;

#else

namespace {

constexpr std::size_t room = 65536;
constexpr std::size_t alignment = alignof(std::max_align_t);

constinit std::byte* fence = nullptr;
constinit std::byte* fencedBlock = nullptr;  // the block before the fence while it is allocated
thread_local bool isActive = false;

}  // namespace

support::FencedNew::FencedNew() {
    static const Fenced memory(room);
    fence = memory.bytes().data() + memory.bytes().size();
    isActive = true;
}

support::FencedNew::~FencedNew() { isActive = false; }

void* operator new(std::size_t bytes) {
    if (isActive && fencedBlock == nullptr && bytes <= room) {
        return fencedBlock = fence - (bytes + alignment - 1) / alignment * alignment;
    }
    if (void* const block = std::malloc(bytes == 0 ? 1 : bytes)) return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
    if (block != nullptr && block == fencedBlock) {
        fencedBlock = nullptr;
    } else {
        std::free(block);
    }
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

#endif
