// Splitting work: runs against walking along them, bands against their definition, with a host that keeps count.
#include <cstdint>
#include <numeric>

#include "buffers/large_block.h"
#include "tests/support/calls.h"
#include "tests/support/fenced.h"

namespace {

using support::Input;
using Parts = std::vector<int>;

constexpr std::uint64_t seed = 8;

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

Parts parts2(int period, int start, int length) {
    return written([=](int* count, int* parts) { CalcParts2(period, start, length, count, parts); });
}

Parts partsOf(int periodA, int startA, int periodB, int startB, int length) {
    return written([=](int* count, int* parts) { CalcParts(periodA, startA, periodB, startB, length, count, parts); });
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

TEST(Parts, EndWhereAWalkCrossesABoundary) {
    EXPECT_EQ(parts2(100, 90, 310), (Parts{10, 100, 100, 100, 0}));
    EXPECT_EQ(parts2(100, 90, 110), (Parts{10, 100})) << "a rest of one period leaves no part of 0";
    EXPECT_EQ(parts2(0, 90, 110), Parts{});
    EXPECT_EQ(parts2(INT_MAX, -2, 10), (Parts{10})) << "off + length wraps to below the period";
    EXPECT_EQ(parts2(-10, 5, -13), (Parts{-15, 2})) << "2 / -10 is 0, which changes nothing";
    EXPECT_EQ(partsOf(100, 90, 50, 40, 20), (Parts{10, 0, 10})) << "at one place";
    EXPECT_EQ(partsOf(INT_MAX, -2, 50, 45, 20), (Parts{5, 15})) << "A's sum wraps to below its period";
    EXPECT_EQ(partsOf(-10, 5, 50, 45, 20), (Parts{-15, 20, 15})) << "A's boundary lies before the run";

    Input random(seed);
    for (int i = 0; i < 50000; ++i) {
        const int periodA = random.between(0, 30), periodB = random.between(0, 30), length = random.between(0, 70);
        const int startA = random.between(-99, 99), startB = random.between(-99, 99);
        SCOPED_TRACE(testing::Message() << "seed " << seed << ": " << length << " from " << startA << " by " << periodA
                                        << " and from " << startB << " by " << periodB);
        Parts cuts = boundariesInside(periodA, startA, length, false);
        const Parts ofB = boundariesInside(periodB, startB, length, false);
        cuts.insert(cuts.end(), ofB.begin(), ofB.end());
        ASSERT_EQ(partsOf(periodA, startA, periodB, startB, length), pieces(cuts, length));
        if (periodA == 0) continue;
        Parts expected = pieces(boundariesInside(periodA, startA, length, true), length);
        if (expected.size() > 2 && expected.back() == periodA) expected.push_back(0);
        ASSERT_EQ(parts2(periodA, startA, length), expected);
    }
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
        const std::span<std::byte> all = memory.bytes();
        std::fill(all.begin(), all.end(), std::byte{0xA5});
        asked = bytes;
        return bytes > all.size() ? nullptr : all.data() + (all.size() - bytes);
    }
    void Free(void*) override {}

    unsigned megabytes = UINT_MAX;
    int status = 0, held = 0;
    long double asked = NAN;  // bytes

private:
    static inline Host* self;
    LargeAllocatorItf* heap = g_pLargeAllocator;
    support::Fenced memory{1U << 20};
};

struct Image {
    unsigned width, height;
    int pixelBytes;
    unsigned threads;
    int mode;
};

/// Rows, pixels and bytes of a row, or the code of the exception.
using Bands = std::vector<long long>;

Bands bandsOf(Image i, unsigned char** buffer) {
    unsigned rows = 7, pixels = 7, rowBytes = 7;
    try {
        CalcAndGetFixedBufferForThreads(i.width, i.height, i.pixelBytes, i.threads, &rows, &pixels, &rowBytes, buffer,
                                        _ERotateMode{i.mode});
    } catch (const COmnarException& error) {
        EXPECT_TRUE(*buffer == nullptr && rows == 7 && pixels == 7 && rowBytes == 7) << "written, but failed";
        return {error.code()};
    }
    return {rows, pixels, rowBytes};
}

/// The definition, with sizes that nothing limits; NaN where the call must fail.
long double expectedSize(Image i, unsigned megabytes, Bands& bands) {
    const std::uint64_t budget = megabytes / 2 * 1048576ULL / 2, pixelBytes = unsigned(i.pixelBytes);
    std::uint64_t share = i.width / i.threads, rows = i.mode ? share : i.height, pixels = i.mode ? i.height : share;
    std::uint64_t rowBytes = static_cast<std::uint32_t>(pixels * pixelBytes);
    const bool tooMuch = 1.0L * rows * i.threads * rowBytes > budget;
    if (tooMuch && i.mode) rows = budget / (rowBytes * i.threads);
    if (tooMuch && !i.mode) rowBytes = budget / (rows * i.threads);
    if ((i.mode ? rows : rowBytes) == 0) return NAN;
    if (!i.mode) pixels = rowBytes / pixelBytes, rowBytes = pixels * pixelBytes;
    while (rowBytes % 4 != 0) ++rowBytes;
    bands = {std::int64_t(rows), std::int64_t(pixels), std::int64_t(rowBytes)};
    return rowBytes > UINT_MAX ? NAN : 1.0L * rows * i.threads * rowBytes;
}

TEST(BufferForThreads, IsWhatItsDefinitionSays) {
    Host host;
    Input random(seed);
    for (int n = 0; n < 3000; ++n) {
        const bool small = !random.oneIn(3);
        Image image{};
        image.width = small ? random.below(300) : random.anySize();
        image.height = small ? random.below(300) : random.anySize();
        image.pixelBytes = random.between(1, 5);
        image.threads = random.oneIn(9) ? random.anySize() : 1 + random.below(8);
        image.mode = random.coin() ? 0 : random.position() | 1;
        host.megabytes = small ? random.below(6) : unsigned(random.next());
        host.asked = NAN;
        SCOPED_TRACE(testing::Message() << "seed " << seed << ": " << image.width << " x " << image.height << " x "
                                        << image.pixelBytes << ", " << image.threads << " threads, mode " << image.mode
                                        << ", " << host.megabytes << " MB");
        Bands expected;
        unsigned char* buffer = nullptr;
        const long double size = expectedSize(image, host.megabytes, expected);
        if (!(size <= 1U << 20)) expected = {std::isnan(size) ? 1 : omnar::outOfMemory};
        ASSERT_EQ(bandsOf(image, &buffer), expected);
        ASSERT_EQ(host.held, 0);
        ASSERT_TRUE(host.asked == size || (std::isnan(size) && std::isnan(host.asked))) << double(host.asked);
        ASSERT_TRUE(buffer == nullptr || std::count(buffer, buffer + std::ptrdiff_t(size), 0) == size);
    }
    unsigned char* buffer = nullptr;
    host.megabytes = 2;
    EXPECT_EQ(bandsOf({9, 200000, 3, 1, eRotateStraight}, &buffer), (Bands{200000, 0, 0})) << "2 bytes a row";
    buffer = nullptr;
    host.status = -5;
    EXPECT_EQ(bandsOf({100, 100, 1, 1, eRotateStraight}, &buffer), Bands{-5});
    EXPECT_EQ(host.held, 0);
}

TEST(BufferForThreads, WorksWithTheDefaults) {
    unsigned char* buffer = nullptr;
    EXPECT_EQ(bandsOf({1000, 500, 3, 4, eRotateStraight}, &buffer), (Bands{500, 250, 752}));
    EXPECT_EQ(std::count(buffer, buffer + 1504000, 0), 1504000);
    g_pLargeAllocator->Free(buffer);
}

void sumParts2(unsigned period, int start, int length, int* count, int* parts) {
    CalcParts2(int(period % 90) + 30, start, length & 127, count, parts);
}
void sumBands(unsigned width, unsigned height, unsigned threads, bool turned, long long* out) {
    unsigned char* buffer = nullptr;
    const Bands bands = bandsOf({width % 5000, height % 5000, 3, threads % 9 + 1, turned}, &buffer);
    std::copy(bands.begin(), bands.end(), out);
}

TEST(Partition, HasTheCommittedChecksums) {
    using support::expectChecksum;
    Host host;
    host.megabytes = 2;
    expectChecksum("CalcParts2", sumParts2, 10215492685760134652U);
    expectChecksum("CalcParts", CalcParts, 7553422902270521173U);
    expectChecksum("CalcAndGetFixedBufferForThreads", sumBands, 12064038891956914744U);
}

#if defined(OMNAR_CHECKED)
TEST(Partition, ReportsBrokenPreconditions) {
    static int n, parts[3];
    static unsigned char* buffer;
    support::expectReports({
        {"CalcParts2", "period", "-10", [] { CalcParts2(-10, 5, 100, &n, parts); }},
        {"CalcParts", "parts", "null", [] { CalcParts(1, 2, 3, 4, 5, &n, nullptr); }},
        {"CalcAndGetFixedBufferForThreads", "threadCount", "0",
         [] {
             bandsOf({9, 9, 1, 0, 0}, &buffer);
         }},
        {"CalcAndGetFixedBufferForThreads", "bytesPerPixel", "0",
         [] {
             bandsOf({9, 9, 0, 1, 1}, &buffer);
         }},
    });
}
#endif

}  // namespace
