// Splitting work: runs against walking along them, bands against their definition, with a host that keeps count.
#include <cstdint>
#include <numeric>
#include <optional>

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

bool boundary(int position, int period) { return position % period == 0; }

TEST(CalcParts2, CutsWhereAWalkCrossesABoundary) {
    EXPECT_EQ(parts2(100, 250, 30), (Parts{30}));
    EXPECT_EQ(parts2(100, 90, 310), (Parts{10, 100, 100, 100, 0}));
    EXPECT_EQ(parts2(100, 90, 110), (Parts{10, 100})) << "a rest of one period leaves no part of 0";
    EXPECT_EQ(parts2(0, 90, 110), Parts{});
    EXPECT_EQ(parts2(INT_MAX, -2, 10), (Parts{10})) << "off + length wraps to below the period";
    EXPECT_EQ(parts2(-10, 5, -20), (Parts{-20})) << "-15 is not above -10";
    EXPECT_EQ(parts2(-10, 5, -13), (Parts{-15, 2})) << "2 / -10 is 0, which changes nothing";

    Input random(seed);
    for (int i = 0; i < 20000; ++i) {
        const int period = random.between(1, 40), start = random.between(-500, 500), length = random.between(0, 200);
        Parts expected{0};
        for (int x = start; x < start + length; ++x) {
            if (x > start && boundary(x, period)) expected.push_back(0);
            ++expected.back();
        }
        if (boundary(start + length, period) && expected.size() > 2) expected.push_back(0);
        ASSERT_EQ(parts2(period, start, length), expected)
            << "seed " << seed << ": " << length << " from " << start << " by " << period;
    }
}

TEST(CalcParts, CutsAtTheFirstBoundaryOfEachGrid) {
    EXPECT_EQ(partsOf(100, 90, 50, 45, 20), (Parts{5, 5, 10}));
    EXPECT_EQ(partsOf(100, 90, 50, 40, 20), (Parts{10, 0, 10})) << "at one place";
    EXPECT_EQ(partsOf(INT_MAX, -2, 50, 45, 20), (Parts{5, 15})) << "A's sum wraps to below its period";
    EXPECT_EQ(partsOf(-10, 5, 50, 45, 20), (Parts{-15, 20, 15})) << "A's boundary lies before the run";

    Input random(seed);
    for (int i = 0; i < 50000; ++i) {
        const int period[] = {random.between(0, 30), random.between(0, 30)};
        const int start[] = {random.between(-99, 99), random.between(-99, 99)};
        const int length = random.between(0, 70);
        Parts cuts{0, length};
        for (int grid = 0; grid < 2; ++grid) {
            int way = period[grid] == 0 ? 0 : 1;
            while (way != 0 && !boundary(start[grid] + way, period[grid])) ++way;
            if (way < length) cuts.push_back(way);
        }
        std::sort(cuts.begin(), cuts.end());
        std::adjacent_difference(cuts.begin(), cuts.end(), cuts.begin());
        ASSERT_EQ(partsOf(period[0], start[0], period[1], start[1], length), Parts(cuts.begin() + 1, cuts.end()))
            << "seed " << seed << ": " << length << " from " << start[0] << " by " << period[0] << " and from "
            << start[1] << " by " << period[1];
    }
}

/// A host with so much memory to report, and blocks at the very end of the memory that it has.
class Host final : public IMemMgr, public LargeAllocatorItf {
public:
    Host() {
        host = this;
        g_pLargeAllocator = this;
        SHostServices services;
        services.getMemMgr = []() -> IMemMgr* {
            ++host->held;
            return host;
        };
        SetHostServices(&services);
    }
    ~Host() {
        g_pLargeAllocator = heap_;
        SetHostServices(nullptr);
    }

    int GetAvailableMegabytes(unsigned* available) override {
        *available = megabytes;
        return status;
    }
    void Release() override { --held; }
    void* Alloc(std::size_t bytes) override {
        asked = bytes;
        const std::span<std::byte> all = memory_.bytes();
        if (bytes > all.size()) return nullptr;
        std::fill(all.begin(), all.end(), std::byte{0xA5});
        return all.data() + (all.size() - bytes);
    }
    void Free(void*) override {}

    unsigned megabytes = 0;
    int status = 0;
    int held = 0;
    std::optional<std::size_t> asked;

private:
    static inline Host* host;
    LargeAllocatorItf* heap_ = g_pLargeAllocator;
    support::Fenced memory_{1U << 20};
};

struct Image {
    unsigned width, height;
    int pixelBytes;
    unsigned threads;
    bool turned;
};

/// What a call told, or the code that it threw.
struct Bands {
    long code = 0;
    unsigned rows = 7, pixels = 7, rowBytes = 7;
    unsigned char* buffer = nullptr;

    bool operator==(const Bands& b) const {
        return code == b.code && rows == b.rows && pixels == b.pixels && rowBytes == b.rowBytes;
    }
    friend std::ostream& operator<<(std::ostream& out, const Bands& b) {
        return out << b.rows << " x " << b.pixels << " of " << b.rowBytes << ", code " << b.code;
    }
};

Bands bandsOf(Image i, int turned = 1) {
    Bands bands;
    try {
        CalcAndGetFixedBufferForThreads(i.width, i.height, i.pixelBytes, i.threads, &bands.rows, &bands.pixels,
                                        &bands.rowBytes, &bands.buffer, _ERotateMode{i.turned ? turned : 0});
    } catch (const COmnarException& error) {
        bands.code = error.code();
        EXPECT_EQ(bands.buffer, nullptr);
        EXPECT_EQ(std::string(error.file()).empty(), error.code() == -5);
    }
    return bands;
}

/// The definition, with sizes that nothing limits; NaN where the call must fail.
long double expectedSize(Image i, unsigned megabytes, Bands& bands) {
    const std::uint64_t budget = megabytes / 2 * 1048576ULL / 2;
    bands.pixels = i.turned ? i.height : i.width / i.threads;
    bands.rows = i.turned ? i.width / i.threads : i.height;
    std::uint64_t rowBytes = static_cast<std::uint32_t>(std::uint64_t{bands.pixels} * unsigned(i.pixelBytes));
    const long double need = 1.0L * bands.rows * i.threads * rowBytes;
    if (need > budget && i.turned) bands.rows = unsigned(budget / (rowBytes * i.threads));
    if (need > budget && !i.turned) rowBytes = budget / (std::uint64_t{bands.rows} * i.threads);
    if ((i.turned ? bands.rows : rowBytes) == 0) return NAN;
    if (!i.turned) bands.pixels = unsigned(rowBytes / unsigned(i.pixelBytes));
    if (!i.turned) rowBytes = std::uint64_t{bands.pixels} * unsigned(i.pixelBytes);
    while (rowBytes % 4 != 0) ++rowBytes;
    if (rowBytes > UINT_MAX) return NAN;
    bands.rowBytes = unsigned(rowBytes);
    return 1.0L * bands.rows * i.threads * rowBytes;
}

TEST(BufferForThreads, IsWhatItsDefinitionSays) {
    Host host;
    Input random(seed);
    for (int n = 0; n < 3000; ++n) {
        const bool small = !random.oneIn(3);
        const auto side = [&] { return small ? random.below(300) : random.anySize(); };
        Image image{};
        image.width = side();
        image.height = side();
        image.pixelBytes = random.between(1, 5);
        image.threads = random.oneIn(9) ? random.anySize() : 1 + random.below(8);
        image.turned = random.coin();
        host.megabytes = small ? random.below(6) : unsigned(random.next());
        host.asked.reset();
        Bands expected;
        const long double size = expectedSize(image, host.megabytes, expected);
        if (size > 1U << 20) expected = {.code = omnar::outOfMemory};
        if (std::isnan(size)) expected = {.code = 1};

        const Bands bands = bandsOf(image, random.position() | 1);
        SCOPED_TRACE(testing::Message() << "seed " << seed << ": " << image.width << " x " << image.height << " x "
                                        << image.pixelBytes << ", " << image.threads << " threads, turned "
                                        << image.turned << ", " << host.megabytes << " MB");
        ASSERT_EQ(bands, expected);
        ASSERT_EQ(host.held, 0);
        ASSERT_EQ(host.asked.has_value(), !std::isnan(size));
        if (std::isnan(size)) continue;
        ASSERT_EQ(*host.asked, std::size_t(size));
        if (bands.code != 0) continue;
        ASSERT_EQ(std::count(bands.buffer, bands.buffer + *host.asked, 0), std::ptrdiff_t(*host.asked));
    }
}

TEST(BufferForThreads, FailsWithoutATrace) {
    Host host;
    host.status = -5;
    EXPECT_EQ(bandsOf({100, 100, 1, 1, false}), (Bands{.code = -5}));
    host.status = 0;
    host.megabytes = UINT_MAX;
    EXPECT_EQ(bandsOf({UINT_MAX, 1, 1, 1, false}), (Bands{.code = 1})) << "a row of 2^32 bytes";
    EXPECT_FALSE(host.asked.has_value());
    EXPECT_EQ(host.held, 0);
}

TEST(BufferForThreads, WorksWithTheDefaults) {
    const Bands bands = bandsOf({1000, 500, 3, 4, false});
    EXPECT_EQ(bands, (Bands{.rows = 500, .pixels = 250, .rowBytes = 752}));
    EXPECT_EQ(std::count(bands.buffer, bands.buffer + 1504000, 0), 1504000);
    g_pLargeAllocator->Free(bands.buffer);
}

void sumParts2(unsigned period, int start, int length, int* count, int* parts) {
    CalcParts2(int(period % 90) + 30, start, length & 127, count, parts);
}
void sumBands(unsigned width, unsigned height, unsigned threads, bool turned, unsigned* out) {
    const Bands bands = bandsOf({width % 5000, height % 5000, 3, threads % 9 + 1, turned});
    out[0] = bands.rows, out[1] = bands.pixels, out[2] = bands.rowBytes;
}

TEST(Partition, HasTheCommittedChecksums) {
    using support::expectChecksum;
    Host host;
    host.megabytes = 2;
    expectChecksum("CalcParts2", sumParts2, 10215492685760134652U);
    expectChecksum("CalcParts", CalcParts, 7553422902270521173U);
    expectChecksum("CalcAndGetFixedBufferForThreads", sumBands, 1675562104602179267U);
}

#if defined(OMNAR_CHECKED)
TEST(Partition, ReportsBrokenPreconditions) {
    static int n, parts[3];
    static unsigned u;
    support::expectReports({
        {"CalcParts2", "count", "null", [] { CalcParts2(1, 2, 3, nullptr, parts); }},
        {"CalcParts2", "period", "-10", [] { CalcParts2(-10, 5, 100, &n, parts); }},
        {"CalcParts", "parts", "null", [] { CalcParts(1, 2, 3, 4, 5, &n, nullptr); }},
        {"CalcAndGetFixedBufferForThreads", "threadCount", "0",
         [] {
             bandsOf({9, 9, 1, 0, false});
         }},
        {"CalcAndGetFixedBufferForThreads", "bytesPerPixel", "0",
         [] {
             bandsOf({9, 9, 0, 1, true});
         }},
        {"CalcAndGetFixedBufferForThreads", "buffer", "null",
         [] { CalcAndGetFixedBufferForThreads(9, 9, 1, 1, &u, &u, &u, nullptr, eRotateStraight); }},
    });
}
#endif

}  // namespace
