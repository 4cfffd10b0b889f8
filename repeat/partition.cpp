// SPDX-License-Identifier: MIT

// Splitting a run at tile boundaries, and an image into bands for worker threads.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <utility>

#include "buffers/host/contract.h"
#include "buffers/host/large_block.h"
#include "buffers/host/module.h"
#include "buffers/host/services.h"
#include "numeric/integers.h"

using namespace omnar;

namespace {

void putParts(std::initializer_list<Wrapping> lengths, int* count, int* parts) {
    for (const Wrapping length : lengths) *parts++ = length.value();
    *count = static_cast<int>(lengths.size());
}

/// A grid of boundaries as a run meets it.
class Grid {
public:
    Grid(int period, int start) : period_(period), offset_(period == 0 ? 0 : placeOf(start, period).rest) {}

    Wrapping toBoundary() const { return period_ - offset_; }
    bool cuts(Wrapping length) const { return offset_ + length > period_; }

private:
    Wrapping period_;
    Wrapping offset_;
};

struct Release {
    void operator()(IMemMgr* manager) const { manager->Release(); }
};

/// A quarter of the available memory, in bytes.
std::uint64_t memoryBudget(IMemMgr& manager) {
    unsigned int megabytes = 0;
    throwIfFailed(manager.GetAvailableMegabytes(&megabytes));
    constexpr std::uint64_t halfMegabyte = 1U << 19;
    return megabytes / 2 * halfMegabyte;
}

/// As many of `wanted` things as the budget allows.
std::uint64_t affordable(std::uint64_t wanted, std::uint64_t bytesEach, std::uint64_t budget) {
    return bytesEach == 0 ? wanted : std::min(wanted, budget / bytesEach);
}

/// The part of the image that one thread works on.
struct Band {
    std::uint64_t rows;
    std::uint64_t pixels;
    std::uint64_t rowBytes;
};

/// Not even one row, or one byte of each row, for each thread; or a row or block whose size cannot be told.
[[noreturn]] void throwNoBand() { throw COmnarException(1, "partition.cpp", __LINE__, 0); }

/// Bands beside one another: for want of memory they become narrower, by whole pixels.
Band straightBand(unsigned int pixels, unsigned int rows, unsigned int pixelBytes, unsigned int threads,
                  std::uint64_t budget) {
    const unsigned int wanted = pixels * pixelBytes;
    const std::uint64_t rowBytes = affordable(wanted, std::uint64_t{rows} * threads, budget);
    if (rowBytes == 0) throwNoBand();
    const std::uint64_t wholePixels = rowBytes / pixelBytes;
    return {rows, wholePixels, wholePixels * pixelBytes};
}

/// Bands one below the other: for want of memory they become lower.
Band turnedBand(unsigned int pixels, unsigned int rows, unsigned int pixelBytes, unsigned int threads,
                std::uint64_t budget) {
    const unsigned int rowBytes = pixels * pixelBytes;
    const std::uint64_t wholeRows = affordable(rows, std::uint64_t{rowBytes} * threads, budget);
    if (wholeRows == 0) throwNoBand();
    return {wholeRows, pixels, rowBytes};
}

}  // namespace

void CalcParts2(int period, int start, int length, int* count, int* parts) {
    OMNAR_EXPECT_NOT_NULL(count, parts);
    if (period == 0) {
        *count = 0;
        parts[0] = length;
        return;
    }
    const Grid grid(period, start);
    if (!grid.cuts(length)) {
        putParts({length}, count, parts);
        return;
    }
    const Wrapping rest = length - grid.toBoundary();
    const int whole = rest <= period ? 0 : rest.value() / period;
    OMNAR_EXPECT_AS(period, whole >= -1, "not negative, unless all parts have their place in the array");
    putParts({grid.toBoundary(), rest}, count, parts);
    if (rest <= period) return;

    std::fill_n(parts + 1, whole, period);
    parts[whole + 1] = rest.value() % period;  // 0 behind the last of several whole periods
    *count = (Wrapping(2) + whole).value();
}

void CalcParts(int periodA, int startA, int periodB, int startB, int length, int* count, int* parts) {
    OMNAR_EXPECT_NOT_NULL(count, parts);
    const Grid a(periodA, startA), b(periodB, startB);
    const Wrapping toA = a.toBoundary(), toB = b.toBoundary();
    if (!a.cuts(length) && !b.cuts(length)) {
        putParts({length}, count, parts);
    } else if (!a.cuts(length)) {
        putParts({toB, length - toB}, count, parts);
    } else if (b.cuts(toA)) {
        putParts({toB, toA - toB, length - toA}, count, parts);
    } else if (b.cuts(length)) {
        putParts({toA, toB - toA, length - toB}, count, parts);
    } else {
        putParts({toA, length - toA}, count, parts);
    }
}

void CalcAndGetFixedBufferForThreads(unsigned int width, unsigned int height, int bytesPerPixel,
                                     unsigned int threadCount, unsigned int* rowsPerThread, unsigned int* pixelsPerRow,
                                     unsigned int* bytesPerRow, unsigned char** buffer, _ERotateMode rotateMode) {
    OMNAR_EXPECT_AS(bytesPerPixel, bytesPerPixel >= 1, "1 or more");
    OMNAR_EXPECT_AS(threadCount, threadCount != 0, "not 0");
    OMNAR_EXPECT_NOT_NULL(rowsPerThread, pixelsPerRow, bytesPerRow, buffer, g_pLargeAllocator);
    IMemMgr* const getMemMgr = memMgr();  // named as in SHostServices, for the report
    OMNAR_EXPECT_NOT_NULL(getMemMgr);

    const std::unique_ptr<IMemMgr, Release> manager(getMemMgr);
    const std::uint64_t budget = memoryBudget(*manager);
    const unsigned int share = width / threadCount;
    const unsigned int pixelBytes = Wrapping(bytesPerPixel).bits();
    const Band band = rotateMode == eRotateStraight ? straightBand(share, height, pixelBytes, threadCount, budget)
                                                    : turnedBand(height, share, pixelBytes, threadCount, budget);
    const std::uint64_t rowBytes = (band.rowBytes + 3) / 4 * 4;
    const std::uint64_t size = band.rows * threadCount * rowBytes;
    if (!std::in_range<unsigned int>(rowBytes) || !std::in_range<std::size_t>(size)) throwNoBand();

    auto* const block = static_cast<unsigned char*>(allocateLarge(static_cast<std::size_t>(size)));
    std::fill_n(block, size, static_cast<unsigned char>(0));
    *rowsPerThread = static_cast<unsigned int>(band.rows);
    *pixelsPerRow = static_cast<unsigned int>(band.pixels);
    *bytesPerRow = static_cast<unsigned int>(rowBytes);
    *buffer = block;
}
