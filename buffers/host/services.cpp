// SPDX-License-Identifier: MIT
#include "buffers/host/services.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "buffers/host/platform.h"

namespace omnar {
namespace {

class HeapAllocator final : public LargeAllocatorItf {
public:
    void* Alloc(std::size_t bytes) override { return std::malloc(bytes == 0 ? 1 : bytes); }
    void Free(void* block) override { std::free(block); }
};

class SystemMemMgr final : public IMemMgr {
public:
    int GetAvailableMegabytes(unsigned int* megabytes) override {
        *megabytes = platform::availableMegabytes();
        return 0;
    }
    void Release() override {}  // the object is static
};

class PlainCoordPair final : public ICoordPair {
public:
    int SetCoords(double x, double y) override {
        x_ = x;
        y_ = y;
        return 0;
    }
    int GetCoords(double* x, double* y) override {
        *x = x_;
        *y = y_;
        return 0;
    }
    void Release() override { delete this; }

private:
    double x_ = 0.0;
    double y_ = 0.0;
};

constinit HeapAllocator heapAllocator;
constinit SystemMemMgr systemMemMgr;

IMemMgr* defaultMemMgr() { return &systemMemMgr; }
ITextMgr* defaultTextMgr() { return nullptr; }
ICoordPair* defaultCoordPair(const char*, long, double) { return new (std::nothrow) PlainCoordPair; }

constexpr SHostServices defaults{sizeof(SHostServices), defaultMemMgr, defaultTextMgr, defaultCoordPair,
                                 platform::cancelKeyDown};
constinit SHostServices current = defaults;

template <class Service>
void setDefault(Service& service, Service standard) {
    if (service == nullptr) service = standard;
}

}  // namespace

IMemMgr* memMgr() { return current.getMemMgr(); }
ITextMgr* textMgr() { return current.getTextMgr(); }
ICoordPair* createCoordPair(const char* file, long line, double res) {
    return current.createCoordPair(file, line, res);
}
bool (*cancelService())() { return current.cancelRequested; }
bool cancellable() { return platform::hasCancelKey() || current.cancelRequested != defaults.cancelRequested; }

}  // namespace omnar

LargeAllocatorItf* g_pLargeAllocator = &omnar::heapAllocator;

void SetHostServices(const SHostServices* services) {
    using namespace omnar;
    SHostServices next{};
    if (services != nullptr) {
        std::memcpy(&next, services, std::min<std::size_t>(services->size, sizeof next));
        next.size = sizeof next;
    }
    setDefault(next.getMemMgr, defaults.getMemMgr);
    setDefault(next.getTextMgr, defaults.getTextMgr);
    setDefault(next.createCoordPair, defaults.createCoordPair);
    setDefault(next.cancelRequested, defaults.cancelRequested);
    current = next;
}
