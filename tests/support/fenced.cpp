// SPDX-License-Identifier: MIT
#include "tests/support/fenced.h"

#include <new>

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/mman.h>
#endif

namespace support {
namespace {

constexpr std::size_t page = 65536;  // a multiple of the page size of every supported platform

std::byte* reserve(std::size_t size) {
#if defined(_WIN32)
    return static_cast<std::byte*>(VirtualAlloc(nullptr, size, MEM_RESERVE, PAGE_NOACCESS));
#else
    void* memory = mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<std::byte*>(memory);
#endif
}

bool open(std::byte* begin, std::size_t size) {
#if defined(_WIN32)
    return VirtualAlloc(begin, size, MEM_COMMIT, PAGE_READWRITE) != nullptr;
#else
    return mprotect(begin, size, PROT_READ | PROT_WRITE) == 0;
#endif
}

}  // namespace

Fenced::Fenced(std::size_t bytes) {
    const std::size_t inside = (bytes + page - 1) / page * page;
    reservedSize_ = inside + 2 * page;
    reserved_ = reserve(reservedSize_);
    if (reserved_ == nullptr || !open(reserved_ + page, inside)) throw std::bad_alloc();
    bytes_ = {reserved_ + page, inside};
}

Fenced::~Fenced() {
#if defined(_WIN32)
    VirtualFree(reserved_, 0, MEM_RELEASE);
#else
    munmap(reserved_, reservedSize_);
#endif
}

}  // namespace support
