// SPDX-License-Identifier: MIT

// Splitting a run of pixels at the boundaries of tiles, and a buffer into bands for worker threads.

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
#include "repeat/tile_position.h"

using namespace omnar;

namespace {

void writeParts(std::initializer_list<Wrapping> lengths, int* count, int* parts) {
    for (const Wrapping length : lengths) *parts++ = length.value();
    *count = static_cast<int>(lengths.size());
}

/// The grid of boundaries at multiples of a period, seen from the start of a run. A period of 0 has its only boundary
/// at the start.
class Grid {
public:
    Grid(int period, int start) : period_(period), offset_(period == 0 ? 0 : tilePosition(start, period).offset) {}

    Wrapping firstBoundary() const { return period_ - offset_; }  ///< counted from the start
    bool hasBoundaryWithin(Wrapping length) const { return offset_ + length > period_; }

private:
    Wrapping period_;
    Wrapping offset_;
};

struct ReleaseMemMgr {
    void operator()(IMemMgr* manager) const { manager->Release(); }
};

/// A quarter of the available memory, in bytes.
std::uint64_t memoryBudget(IMemMgr& manager) {
    unsigned int megabytes = 0;
    throwIfFailed(manager.GetAvailableMegabytes(&megabytes));
    constexpr std::uint64_t halfMegabyte = 1U << 19;
    return megabytes / 2 * halfMegabyte;
}

/// The greatest count up to `wanted` that fits the budget.
std::uint64_t affordableCount(std::uint64_t wanted, std::uint64_t bytesEach, std::uint64_t budget) {
    return bytesEach == 0 ? wanted : std::min(wanted, budget / bytesEach);
}

/// The part of the buffer for one thread.
struct Band {
    std::uint64_t rows;
    std::uint64_t pixels;
    std::uint64_t rowBytes;
};

/// Thrown if a thread gets no row or no byte of a row, or if the size of a row or of the block does not fit its type.
[[noreturn]] void throwNoBand() { throw COmnarException(1, "partition.cpp", __LINE__, 0); }

/// A band of columns. Too small a budget makes it narrower, by whole pixels.
Band straightBand(unsigned int pixels, unsigned int rows, unsigned int pixelBytes, unsigned int threads,
                  std::uint64_t budget) {
    const unsigned int wanted = pixels * pixelBytes;
    const std::uint64_t rowBytes = affordableCount(wanted, std::uint64_t{rows} * threads, budget);
    if (rowBytes == 0) throwNoBand();
    const std::uint64_t wholePixels = rowBytes / pixelBytes;
    return {rows, wholePixels, wholePixels * pixelBytes};
}

/// A band of rows. Too small a budget gives it fewer rows.
Band turnedBand(unsigned int pixels, unsigned int rows, unsigned int pixelBytes, unsigned int threads,
                std::uint64_t budget) {
    const unsigned int rowBytes = pixels * pixelBytes;
    const std::uint64_t wholeRows = affordableCount(rows, std::uint64_t{rowBytes} * threads, budget);
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
    if (!grid.hasBoundaryWithin(length)) {
        writeParts({length}, count, parts);
        return;
    }
    const Wrapping remainder = length - grid.firstBoundary();
    const int wholePeriods = remainder <= period ? 0 : remainder.value() / period;
    OMNAR_EXPECT_AS(period, wholePeriods >= -1, "not negative, unless all parts have their place in the array");
    writeParts({grid.firstBoundary(), remainder}, count, parts);
    if (remainder <= period) return;

    std::fill_n(parts + 1, wholePeriods, period);
    parts[wholePeriods + 1] = remainder.value() % period;  // written even if 0
    *count = (Wrapping(2) + wholePeriods).value();
}

void CalcParts(int periodA, int startA, int periodB, int startB, int length, int* count, int* parts) {
    OMNAR_EXPECT_NOT_NULL(count, parts);
    const Grid gridA(periodA, startA), gridB(periodB, startB);
    const Wrapping a = gridA.firstBoundary(), b = gridB.firstBoundary();
    if (!gridA.hasBoundaryWithin(length) && !gridB.hasBoundaryWithin(length)) {
        writeParts({length}, count, parts);
    } else if (!gridA.hasBoundaryWithin(length)) {
        writeParts({b, length - b}, count, parts);
    } else if (gridB.hasBoundaryWithin(a)) {
        writeParts({b, a - b, length - a}, count, parts);
    } else if (gridB.hasBoundaryWithin(length)) {
        writeParts({a, b - a, length - b}, count, parts);
    } else {
        writeParts({a, length - a}, count, parts);
    }
}

void CalcAndGetFixedBufferForThreads(unsigned int width, unsigned int height, int bytesPerPixel,
                                     unsigned int threadCount, unsigned int* rowsPerThread, unsigned int* pixelsPerRow,
                                     unsigned int* bytesPerRow, unsigned char** buffer, _ERotateMode rotateMode) {
    OMNAR_EXPECT_AS(bytesPerPixel, bytesPerPixel >= 1, "1 or more");
    OMNAR_EXPECT_AS(threadCount, threadCount != 0, "not 0");
    OMNAR_EXPECT_NOT_NULL(rowsPerThread, pixelsPerRow, bytesPerRow, buffer, g_pLargeAllocator);
    IMemMgr* const getMemMgr = memMgr();  // the name in SHostServices, which the contract handler receives
    OMNAR_EXPECT_NOT_NULL(getMemMgr);

    const std::unique_ptr<IMemMgr, ReleaseMemMgr> manager(getMemMgr);
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
