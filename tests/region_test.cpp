// SPDX-License-Identifier: MIT

// How regions are cut and addressed: edges, huge extents, buffers above 4 GiB, and concurrent calls.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <array>
#include <span>
#include <thread>
#include <vector>

#include "buffers/overlap.h"
#include "buffers/region.h"
#include "tests/support/random.h"

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace {

using omnar::clip;
using omnar::Plane;
using omnar::Region;

Region cut(std::uint32_t w, std::uint32_t h, std::uint32_t width, std::uint32_t height, std::uint32_t x,
           std::uint32_t y) {
    return clip(w, h, Plane<TRC>(nullptr, width, height, x, y));
}

TEST(Region, IsCutAtTheEdgesOfEachPlane) {
    const auto expect = [](Region region, std::size_t cols, std::size_t rows) {
        EXPECT_EQ(region.cols, cols);
        EXPECT_EQ(region.rows, rows);
    };
    expect(cut(5, 5, 10, 10, 0, 0), 5, 5);
    expect(cut(5, 5, 10, 10, 6, 7), 4, 3);
    expect(cut(5, 5, 10, 10, 10, 0), 0, 5);
    expect(cut(0, 5, 10, 10, 0, 0), 0, 5);
    // The end of the region does not wrap. A corner outside the buffer gives an empty region.
    expect(cut(UINT32_MAX, UINT32_MAX, 10, UINT32_MAX, 9, 1), 1, UINT32_MAX - 1);
    expect(cut(5, 5, 10, 10, 11, 20), 0, 0);
    expect(clip(100, 100, Plane<L08>(nullptr, 50, 9, 10, 0), Plane<TRC>(nullptr, 30, 30, 0, 25)), 30, 5);
}

TEST(Region, OrderIsFreeOnlyWhereOverlapHasNoEffect) {
    std::array<TRC, 64> row{};
    const auto* bytes = reinterpret_cast<const L08*>(row.data());
    EXPECT_TRUE(omnar::orderIsFree(row.data(), row.data() + 16, 16));
    EXPECT_TRUE(omnar::orderIsFree(row.data() + 16, row.data(), 16));
    EXPECT_FALSE(omnar::orderIsFree(row.data(), row.data() + 15, 16));  // reads a pixel that an earlier one wrote
    EXPECT_TRUE(omnar::orderIsFree(row.data() + 15, row.data(), 16));   // reads every pixel before it is written
    EXPECT_TRUE(omnar::orderIsFree(row.data(), row.data(), 16));
    EXPECT_TRUE(omnar::orderIsFree(row.data(), bytes, 16));  // the source has the larger pixels and stays ahead
    EXPECT_FALSE(omnar::orderIsFree(row.data(), bytes + 1, 16));
    EXPECT_FALSE(omnar::orderIsFree(bytes, row.data(), 16));
    EXPECT_FALSE(omnar::orderIsFree(bytes + 63, row.data(), 16));
    EXPECT_TRUE(omnar::orderIsFree(bytes + 64, row.data(), 16));
}

#if defined(__linux__) && !defined(__SANITIZE_THREAD__)
TEST(Region, IsAddressedWith64Bits) {
    constexpr unsigned width = 1 << 16;
    constexpr unsigned height = (1 << 16) + 2;  // more than 2^32 pixels
    constexpr unsigned cols = 20;               // of the region, after it is cut
    constexpr std::size_t bytes = std::size_t{width} * height * sizeof(TRC);
    void* memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED) GTEST_SKIP() << "no address space for " << bytes << " bytes";
    auto* const dst = static_cast<TRC*>(memory);
    AlphaBlendColorWithConstAlphaToTRC(0xFF123456U, dst, width, height, width - cols, height - 1, 100, 100, false);
    const std::size_t corner = std::size_t{width} * height - cols;
    EXPECT_EQ(dst[corner - 1], 0U);
    for (std::size_t i = 0; i < cols; ++i) ASSERT_EQ(dst[corner + i], 0x123456U);
    EXPECT_EQ(dst[corner & UINT32_MAX], 0U) << "the offset is truncated to 32 bits";
    munmap(memory, bytes);
}
#endif

TEST(Region, ThreadsOnDisjointStripesEqualOneThread) {
    constexpr unsigned width = 301, height = 64, stripes = 8;
    std::vector<TRC> src(width * height), single(width * height);
    support::Random random(3);
    random.fill(std::as_writable_bytes(std::span(src)));
    random.fill(std::as_writable_bytes(std::span(single)));
    std::vector<TRC> threaded = single;

    AlphaBlendTRCToTRC(src.data(), width, height, 0, 0, single.data(), width, height, 0, 0, 200, width, height, false);
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < stripes; ++i) {
        threads.emplace_back([&, top = i * height / stripes] {
            AlphaBlendTRCToTRC(src.data(), width, height, 0, top, threaded.data(), width, height, 0, top, 200, width,
                               height / stripes, false);
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(threaded, single);
}

}  // namespace
