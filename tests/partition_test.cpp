// SPDX-License-Identifier: MIT

// Splitting work: runs against walking along them, bands against their definition, with a host that keeps count.
#include <cstdint>
#include <numeric>

#include "buffers/host/large_block.h"
#include "tests/support/calls.h"
#include "tests/support/fenced.h"

namespace {

using Parts = std::vector<int>;

/// The parts that a call wrote, as many as it counts.
template <class Call>
Parts written(Call call) {
    int count = -77;
    Parts parts(300, -77);
    call(&count, parts.data() + 1);
    EXPECT_EQ(parts[0], -77);
    EXPECT_EQ(parts[std::size_t(count) + 1], count == 0 ? parts[1] : -77) << "an entry past the count";
    return {parts.begin() + 1, parts.begin() + 1 + count};
}

Parts parts2(int period, int start, int length, int = 0, int = 0) {
    return written([=](int* count, int* parts) { CalcParts2(period, start, length, count, parts); });
}

Parts partsOf(int period, int start, int length, int periodB, int startB) {
    return written([=](int* count, int* parts) { CalcParts(period, start, periodB, startB, length, count, parts); });
}

/// Walks along the run to the boundaries inside it, and perhaps no further than the first.
Parts boundariesInside(int period, int start, int length, bool all) {
    Parts found;
    for (int way = period == 0 ? 0 : 1; way < length && (all || found.empty()); ++way) {
        if (period == 0 || (start + way) % period == 0) found.push_back(way);
    }
    return found;
}

/// What sorted cuts make of a run.
Parts pieces(Parts cuts, int length) {
    std::sort(cuts.begin(), cuts.end());
    cuts.push_back(length);
    std::adjacent_difference(cuts.begin(), cuts.end(), cuts.begin());
    return cuts;
}

Parts walked2(int period, int start, int length, int, int) {
    Parts parts = pieces(boundariesInside(period, start, length, true), length);
    if (parts.size() > 2 && parts.back() == period) parts.push_back(0);
    return period == 0 ? Parts{} : parts;
}

Parts walked(int period, int start, int length, int periodB, int startB) {
    Parts cuts = boundariesInside(period, start, length, false);
    const Parts ofB = boundariesInside(periodB, startB, length, false);
    cuts.insert(cuts.end(), ofB.begin(), ofB.end());
    return pieces(cuts, length);
}

template <auto cut>
void ofRandomRun(unsigned period, int start, unsigned length, unsigned periodB, int startB, int* six) {
    support::fold(cut(int(period % 31), start / 2, int(length % 71), int(periodB % 31), startB / 2), six);
}

TEST(Parts, KnownAnswers) {
    EXPECT_EQ(parts2(100, 90, 310), (Parts{10, 100, 100, 100, 0}));
    EXPECT_EQ(parts2(100, 90, 110), (Parts{10, 100})) << "a rest of one period leaves no part of 0";
    EXPECT_EQ(parts2(INT_MAX, -2, 10), (Parts{10})) << "off + length wraps to below the period";
    EXPECT_EQ(parts2(-10, 5, -13), (Parts{-15, 2})) << "2 / -10 is 0, which changes nothing";
    EXPECT_EQ(partsOf(100, 90, 20, 50, 40), (Parts{10, 0, 10})) << "at one place";
    EXPECT_EQ(partsOf(INT_MAX, -2, 20, 50, 45), (Parts{5, 15})) << "A's sum wraps to below its period";
    EXPECT_EQ(partsOf(-10, 5, 20, 50, 45), (Parts{-15, 20, 15})) << "A's boundary lies before the run";
}

/// A host with so much memory to report, and blocks that end where its memory does.
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
        static const support::Fenced memory(1U << 20);
        asked = static_cast<long long>(bytes);
        if (bytes == 0 || bytes > memory.bytes().size()) return nullptr;  // no memory for no bytes is no failure
        const std::span<std::byte> block = memory.bytes().last(bytes);
        std::fill(block.begin(), block.end(), std::byte{0xA5});
        return block.data();
    }
    void Free(void*) override {}

    unsigned megabytes = UINT_MAX;
    int status = 0, held = 0;
    long long asked = -1;  // bytes, if any

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

/// Rows, pixels and bytes of a row, and bytes in all; or the code of the exception.
using Bands = std::vector<long long>;

Bands bandsOf(Image i, Host& host) {
    unsigned rows = 7, pixels = 7, rowBytes = 7;
    unsigned char* buffer = nullptr;
    host.asked = -1;
    try {
        CalcAndGetFixedBufferForThreads(i.width, i.height, i.pixelBytes, i.threads, &rows, &pixels, &rowBytes, &buffer,
                                        _ERotateMode{i.mode});
        EXPECT_EQ(std::count(buffer, buffer + host.asked, 0), host.asked);
    } catch (const COmnarException& error) {
        EXPECT_TRUE(buffer == nullptr && rows == 7 && pixels == 7 && rowBytes == 7) << "written, but failed";
        EXPECT_EQ(host.asked != -1, error.code() == omnar::outOfMemory);
        EXPECT_EQ(host.held, 0);
        return {error.code()};
    }
    EXPECT_EQ(host.held, 0);
    return {rows, pixels, rowBytes, host.asked};
}

/// The definition, with sizes that nothing limits.
Bands expectedBands(Image i, Host& host) {
    const std::uint64_t budget = host.megabytes / 2 * 1048576ULL / 2, pixelBytes = unsigned(i.pixelBytes);
    std::uint64_t share = i.width / i.threads, rows = i.mode ? share : i.height, pixels = i.mode ? i.height : share;
    std::uint64_t rowBytes = static_cast<std::uint32_t>(pixels * pixelBytes);
    const bool tooMuch = 1.0L * rows * i.threads * rowBytes > budget;
    if (tooMuch && i.mode) rows = budget / (rowBytes * i.threads);
    if (tooMuch && !i.mode) rowBytes = budget / (rows * i.threads);
    if ((i.mode ? rows : rowBytes) == 0) return {1};
    if (!i.mode) pixels = rowBytes / pixelBytes, rowBytes = pixels * pixelBytes;
    while (rowBytes % 4 != 0) ++rowBytes;
    if (rowBytes > UINT_MAX) return {1};
    const std::uint64_t size = rows * i.threads * rowBytes;
    if (size > 1U << 20) return {omnar::outOfMemory};
    return {std::int64_t(rows), std::int64_t(pixels), std::int64_t(rowBytes), std::int64_t(size)};
}

template <auto bands>
void ofRandomImage(unsigned w, unsigned h, unsigned char pixelBytes, unsigned threads, int mode, bool small,
                   unsigned megabytes, double* out) {
    Host host;
    host.megabytes = small ? megabytes % 6 : megabytes;
    if (small) w %= 300, h %= 300;
    const Bands told = bands({w, h, pixelBytes + 1, threads % 9 ? threads % 9 : threads, mode % 2 ? mode : 0}, host);
    std::copy(told.begin(), told.end(), out);
}

TEST(Partition, EqualsItsDefinitions) {
    using support::expectChecksum;
    expectChecksum("CalcParts2", ofRandomRun<parts2>, 16824374847456062327U, ofRandomRun<walked2>);
    expectChecksum("CalcParts", ofRandomRun<partsOf>, 6874062388286715936U, ofRandomRun<walked>);
    expectChecksum("CalcAndGetFixedBufferForThreads", ofRandomImage<bandsOf>, 13773317713016802071U,
                   ofRandomImage<expectedBands>);
}

TEST(BufferForThreads, KnownAnswers) {
    unsigned rows = 0, pixels = 0, rowBytes = 0;
    unsigned char* buffer = nullptr;
    CalcAndGetFixedBufferForThreads(1000, 500, 3, 4, &rows, &pixels, &rowBytes, &buffer, eRotateStraight);
    EXPECT_TRUE(rows == 500 && pixels == 250 && rowBytes == 752);
    g_pLargeAllocator->Free(buffer);

    Host host;
    host.megabytes = 2;
    EXPECT_EQ(bandsOf({9, 200000, 3, 1, eRotateStraight}, host), (Bands{200000, 0, 0, 0})) << "2 bytes a row";
    host.status = -5;
    EXPECT_EQ(bandsOf({100, 100, 1, 1, eRotateStraight}, host), Bands{-5});
}

}  // namespace
