// SPDX-License-Identifier: MIT

// Splitting work: runs against walking along them, bands against their definition, with a host that counts references.
#include <cstdint>
#include <numeric>

#include "buffers/host/large_block.h"
#include "tests/support/calls.h"
#include "tests/support/fenced.h"

namespace {

using Parts = std::vector<int>;

constexpr int untouched = -77;

/// The counted parts that a call writes. Fails the test if it writes any other entry.
template <class Call>
Parts written(Call call) {
    int count = untouched;
    Parts parts(300, untouched);
    call(&count, parts.data() + 1);
    EXPECT_EQ(parts[0], untouched);
    EXPECT_EQ(parts[std::size_t(count) + 1], count == 0 ? parts[1] : untouched) << "an entry past the count";
    return {parts.begin() + 1, parts.begin() + 1 + count};
}

Parts partsOfGrid(int period, int start, int length, int = 0, int = 0) {
    return written([=](int* count, int* parts) { CalcParts2(period, start, length, count, parts); });
}

Parts partsOfGrids(int period, int start, int length, int periodB, int startB) {
    return written([=](int* count, int* parts) { CalcParts(period, start, periodB, startB, length, count, parts); });
}

/// The boundaries within a run, all or only the first.
Parts boundariesWithin(int period, int start, int length, bool all) {
    Parts found;
    for (int i = period == 0 ? 0 : 1; i < length && (all || found.empty()); ++i) {
        if (period == 0 || (start + i) % period == 0) found.push_back(i);
    }
    return found;
}

/// The lengths of the parts between boundaries.
Parts partsBetween(Parts cuts, int length) {
    std::sort(cuts.begin(), cuts.end());
    cuts.push_back(length);
    std::adjacent_difference(cuts.begin(), cuts.end(), cuts.begin());
    return cuts;
}

Parts walkedGrid(int period, int start, int length, int, int) {
    Parts parts = partsBetween(boundariesWithin(period, start, length, true), length);
    if (parts.size() > 2 && parts.back() == period) parts.push_back(0);
    return period == 0 ? Parts{} : parts;
}

Parts walkedGrids(int period, int start, int length, int periodB, int startB) {
    Parts cuts = boundariesWithin(period, start, length, false);
    const Parts cutsB = boundariesWithin(periodB, startB, length, false);
    cuts.insert(cuts.end(), cutsB.begin(), cutsB.end());
    return partsBetween(cuts, length);
}

/// Splits a short run by short periods, from random numbers.
template <auto split>
void splitRandomRun(unsigned period, int start, unsigned length, unsigned periodB, int startB, int* six) {
    support::fold(split(int(period % 31), start / 2, int(length % 71), int(periodB % 31), startB / 2), six);
}

TEST(Parts, KnownAnswers) {
    EXPECT_EQ(partsOfGrid(100, 90, 310), (Parts{10, 100, 100, 100, 0}));
    EXPECT_EQ(partsOfGrid(100, 90, 110), (Parts{10, 100})) << "a remainder of one period leaves no part of 0";
    EXPECT_EQ(partsOfGrid(INT_MAX, -2, 10), (Parts{10})) << "offset + length wraps to below the period";
    EXPECT_EQ(partsOfGrid(-10, 5, -13), (Parts{-15, 2})) << "2 / -10 is 0: no whole periods";
    EXPECT_EQ(partsOfGrids(100, 90, 20, 50, 40), (Parts{10, 0, 10})) << "two boundaries at one position";
    EXPECT_EQ(partsOfGrids(INT_MAX, -2, 20, 50, 45), (Parts{5, 15})) << "A's sum wraps to below its period";
    EXPECT_EQ(partsOfGrids(-10, 5, 20, 50, 45), (Parts{-15, 20, 15})) << "A's boundary lies before the run";
}

constexpr std::size_t hostMemory = std::size_t{1} << 20;

/// A host that reports `megabytes` of memory, and whose blocks end at a fence.
class Host final : public IMemMgr, public LargeAllocatorItf {
public:
    Host() {
        self = this;
        g_pLargeAllocator = this;
        SHostServices services;
        services.getMemMgr = []() -> IMemMgr* { return ++self->held, self; };
        SetHostServices(&services);
    }
    ~Host() {
        g_pLargeAllocator = heap;
        SetHostServices(nullptr);
    }
    int GetAvailableMegabytes(unsigned* available) override { return *available = megabytes, status; }
    void Release() override { --held; }
    void* Alloc(std::size_t bytes) override {
        static const support::Fenced memory(hostMemory);
        requested = static_cast<long long>(bytes);
        if (bytes == 0 || bytes > memory.bytes().size()) return nullptr;  // a null block of 0 bytes is no failure
        const std::span<std::byte> block = memory.bytes().last(bytes);
        std::fill(block.begin(), block.end(), std::byte{0xA5});
        return block.data();
    }
    void Free(void*) override {}

    unsigned megabytes = UINT_MAX;
    int status = 0;
    int held = 0;              // references to the memory manager
    long long requested = -1;  // bytes, -1 without a request

private:
    static inline Host* self;
    LargeAllocatorItf* heap = g_pLargeAllocator;
};

struct Image {
    unsigned width, height;
    int pixelBytes;
    unsigned threads;
    int mode;
};

/// Rows, pixels and bytes of a row, and bytes of the block; or the code of the exception.
using Bands = std::vector<long long>;

Bands bandsOf(Image i, Host& host) {
    constexpr unsigned unwritten = 7;
    unsigned rows = unwritten, pixels = unwritten, rowBytes = unwritten;
    unsigned char* buffer = nullptr;
    host.requested = -1;
    try {
        CalcAndGetFixedBufferForThreads(i.width, i.height, i.pixelBytes, i.threads, &rows, &pixels, &rowBytes, &buffer,
                                        _ERotateMode{i.mode});
        EXPECT_EQ(std::count(buffer, buffer + host.requested, 0), host.requested);
    } catch (const COmnarException& error) {
        EXPECT_TRUE(buffer == nullptr && rows == unwritten && pixels == unwritten && rowBytes == unwritten);
        EXPECT_EQ(host.requested != -1, error.code() == omnar::outOfMemory);
        EXPECT_EQ(host.held, 0);
        return {error.code()};
    }
    EXPECT_EQ(host.held, 0);
    return {rows, pixels, rowBytes, host.requested};
}

/// The definition, in sizes without limits.
Bands expectedBands(Image i, Host& host) {
    const std::uint64_t budget = host.megabytes / 2 * (std::uint64_t{1} << 20) / 2, pixelBytes = unsigned(i.pixelBytes);
    std::uint64_t share = i.width / i.threads, rows = i.mode ? share : i.height, pixels = i.mode ? i.height : share;
    std::uint64_t rowBytes = static_cast<std::uint32_t>(pixels * pixelBytes);
    const bool exceedsBudget = 1.0L * rows * i.threads * rowBytes > budget;
    if (exceedsBudget && i.mode) rows = budget / (rowBytes * i.threads);
    if (exceedsBudget && !i.mode) rowBytes = budget / (rows * i.threads);
    if ((i.mode ? rows : rowBytes) == 0) return {1};
    if (!i.mode) pixels = rowBytes / pixelBytes, rowBytes = pixels * pixelBytes;
    while (rowBytes % 4 != 0) ++rowBytes;
    if (rowBytes > UINT_MAX) return {1};
    const std::uint64_t size = rows * i.threads * rowBytes;
    if (size > hostMemory) return {omnar::outOfMemory};
    return {std::int64_t(rows), std::int64_t(pixels), std::int64_t(rowBytes), std::int64_t(size)};
}

/// The bands of an image, from random numbers.
template <auto bands>
void divideRandomImage(unsigned w, unsigned h, unsigned char pixelBytes, unsigned threads, int mode, bool small,
                       unsigned megabytes, double* out) {
    Host host;
    host.megabytes = small ? megabytes % 6 : megabytes;
    if (small) w %= 300, h %= 300;
    const Bands found = bands({w, h, pixelBytes + 1, threads % 9 ? threads % 9 : threads, mode % 2 ? mode : 0}, host);
    std::copy(found.begin(), found.end(), out);
}

TEST(Partition, EqualsItsDefinitions) {
    using support::expectChecksum;
    expectChecksum("CalcParts2", splitRandomRun<partsOfGrid>, 16824374847456062327U, splitRandomRun<walkedGrid>);
    expectChecksum("CalcParts", splitRandomRun<partsOfGrids>, 6874062388286715936U, splitRandomRun<walkedGrids>);
    expectChecksum("CalcAndGetFixedBufferForThreads", divideRandomImage<bandsOf>, 13773317713016802071U,
                   divideRandomImage<expectedBands>);
}

TEST(BufferForThreads, KnownAnswers) {
    unsigned rows = 0, pixels = 0, rowBytes = 0;
    unsigned char* buffer = nullptr;
    CalcAndGetFixedBufferForThreads(1000, 500, 3, 4, &rows, &pixels, &rowBytes, &buffer, eRotateStraight);
    EXPECT_TRUE(rows == 500 && pixels == 250 && rowBytes == 752);
    g_pLargeAllocator->Free(buffer);

    Host host;
    host.megabytes = 2;
    EXPECT_EQ(bandsOf({9, 200000, 3, 1, eRotateStraight}, host), (Bands{200000, 0, 0, 0}))
        << "2 bytes a row hold no pixel";
    host.status = -5;
    EXPECT_EQ(bandsOf({100, 100, 1, 1, eRotateStraight}, host), Bands{-5});
}

}  // namespace
