// SPDX-License-Identifier: MIT

// Conversions, look-ups, fills and markers: what the table of members does not show.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <span>
#include <string>
#include <vector>

#include "tests/support/calls.h"
#include "tests/support/family.h"
#include "tests/support/fenced.h"

namespace {

using omnar::Level;
using support::Random;

class Buffers : public testing::TestWithParam<Level> {
protected:
    void SetUp() override {
        if (!level_.runs()) GTEST_SKIP() << "this processor or build lacks the level " << name(GetParam());
    }

private:
    support::ForcedLevel level_{GetParam()};
};

/// Samples and a table of them at the very end of memory that may be touched, or the table among the samples.
template <class Px>
void checkLookUps(void (*lookUp)(Px*, unsigned, unsigned, unsigned, unsigned, unsigned, unsigned, const Px*),
                  std::size_t entries) {
    support::Fenced samples(65536), tables(65536);
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        Random random(seed);
        const std::size_t n = random.below(200);
        const bool among = random.oneIn(3);
        const std::size_t size = among ? n + entries : n;
        Px* const data = reinterpret_cast<Px*>(samples.bytes().data() + samples.bytes().size()) - size;
        Px* table = reinterpret_cast<Px*>(tables.bytes().data() + tables.bytes().size()) - entries;
        if (among) table = data + random.below(static_cast<std::uint32_t>(n) + 1);
        for (std::size_t i = 0; i < entries; ++i) table[i] = static_cast<Px>(random.next() % entries);
        for (std::size_t i = 0; i < size; ++i) data[i] = static_cast<Px>(data[i] % entries);
        for (std::size_t i = 0; i < n; ++i) data[i] = static_cast<Px>(random.next() % entries);

        const std::vector<Px> before(data, data + size);
        for (std::size_t i = 0; i < n; ++i) data[i] = table[data[i]];
        const std::vector<Px> expected(data, data + size);
        std::copy(before.begin(), before.end(), data);
        lookUp(data, static_cast<unsigned>(n), 1, 0, 0, static_cast<unsigned>(n), 1, table);
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), data)) << "seed " << seed;
    }
}

TEST_P(Buffers, TablesAreReadToTheirEndAndNoFurtherAndMayLieAmongTheSamples) {
    checkLookUps<L08>(ApplyLUTToL08, 256);
    checkLookUps<L12>(ApplyLUTToL12, 4096);
}

TEST_P(Buffers, TablesAreReadWithoutPermutedBytes) {
    const bool before = omnar::permutesBytes();
    ASSERT_TRUE(omnar::usePermutedBytes(false));
    checkLookUps<L08>(ApplyLUTToL08, 256);
    EXPECT_FALSE(omnar::permutesBytes());
    omnar::usePermutedBytes(before);
}

TEST_P(Buffers, TrueColourIsPackedInPlace) {
    for (unsigned count = 0; count < 100; ++count) {
        std::vector<unsigned char> bytes(count * 4 + 4);
        std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(1));
        std::vector<unsigned char> expected = bytes;
        for (unsigned i = 0; i < count * 3; ++i) expected[i] = bytes[i / 3 * 4 + i % 3];
        std::vector<TRC> pixels(count + 1);
        std::memcpy(pixels.data(), bytes.data(), bytes.size());
        ConvertBufferFrom32To24Bits(pixels.data(), reinterpret_cast<unsigned char*>(pixels.data()), count);
        ASSERT_EQ(std::memcmp(pixels.data(), expected.data(), expected.size()), 0) << count;
    }
}

// Copies of this size are written in a way of their own.
TEST_P(Buffers, LargeCopiesEqualTheirSource) {
    constexpr unsigned width = 4099, height = 2051;  // more than 32 MiB
    std::vector<TRC> src(width * height), dst(src.size() + 2, 7);
    Random random(3);
    for (TRC& pixel : src) pixel = static_cast<TRC>(random.next());
    Copy2DTRCBufferToTRC(src.data(), width, height, 0, 0, dst.data() + 1, width, height, 0, 0, width, height);
    EXPECT_TRUE(std::equal(src.begin(), src.end(), dst.begin() + 1));
    EXPECT_EQ(dst.front(), 7U);
    EXPECT_EQ(dst.back(), 7U);
}

// With these settings each channel of black becomes the luminance and one more.
TEST_P(Buffers, RecolouringKnowsEveryLuminance) {
    constexpr unsigned n = 1 << 16;
    std::vector<TRC> src(n), dst(n);
    const std::vector<L08> alpha(n, 255);
    for (unsigned red = 0; red < 256; red += 5) {
        for (unsigned i = 0; i < n; ++i) src[i] = red << 16 | i;
        ChangeColorOfTRCWithAlpha(0, alpha.data(), n, 1, 0, 0, src.data(), dst.data(), n, 1, 0, 0, 255, n, 1, 101, 100);
        for (unsigned i = 0; i < n; ++i) {
            const unsigned luminance = (59 * (i >> 8) + 30 * red + 11 * (i & 255)) / 100;
            ASSERT_EQ(dst[i], std::min(luminance + 1, 255U) * 0x010101) << red << ' ' << i;
        }
    }
}

TEST_P(Buffers, RecolouringCutsTheLightTowardZero) {
    const TRC src[] = {0x7F7F7F, 0xFFFFFF, 0x000000, 0x808080};
    const L08 alpha[] = {255, 255, 255, 128};
    const auto recoloured = [&](int brightness, int contrast) {
        std::vector<TRC> dst{0xAA000000, 0, 0, 0};
        ChangeColorOfTRCWithAlpha(0xFF000000, alpha, 4, 1, 0, 0, src, dst.data(), 4, 1, 0, 0, 255, 9, 9, brightness,
                                  contrast);
        return dst;
    };
    EXPECT_EQ(recoloured(0, 100), (std::vector<TRC>{0xAA000000, 0x7F7F7F, 0, 0}));  // -0.5, 127.5, -127.5, 0.5
    EXPECT_EQ(recoloured(0, -100), (std::vector<TRC>{0xAA000000, 0, 0x7F7F7F, 0}));
    EXPECT_EQ(recoloured(INT_MAX, INT_MIN), (std::vector<TRC>{0xAAFFFFFF, 0, 0xFFFFFF, 0x808080}));  // the second -1.3
}

INSTANTIATE_TEST_SUITE_P(Levels, Buffers, testing::ValuesIn(omnar::allLevels),
                         [](const auto& level) { return std::string(name(level.param)); });

TEST(Chessboard, CountsItsRowsFromTheRegionAndItsColumnsFromTheBuffer) {
    std::vector<TRC> board(16 * 4, 9);
    ChessboardFillTRCBuffer(board.data(), 16, 4, 4, 1, 12, 9, 0, -1, 1, 2, 8);
    const std::vector<TRC> row{9, 9, 9, 9, 2, 2, 2, 2, 1, 1, 1, 1, 1, 1, 1, 1};  // one row above the board's origin
    EXPECT_TRUE(std::equal(row.begin(), row.end(), board.begin() + 16));
    EXPECT_EQ(board[2 * 16 + 4], 1U);
    EXPECT_EQ(board[2 * 16 + 8], 2U);
    EXPECT_TRUE(std::all_of(board.begin(), board.begin() + 16, [](TRC pixel) { return pixel == 9; }));
}

#if !defined(OMNAR_CHECKED)  // which refuses such calls
TEST(Fills, WriteTheirColumnsUncut) {
    std::vector<TRC> pixels(12, 9);
    FillTRCBuffer(pixels.data(), 4, 3, 2, 0, 3, 2, 1);
    EXPECT_EQ(pixels, (std::vector<TRC>{9, 9, 1, 1, 1, 9, 1, 1, 1, 9, 9, 9}));
    ChessboardFillTRCBuffer(pixels.data(), 4, 3, 0, 1, 6, 1, 0, 0, 5, 6, 2);
    EXPECT_EQ(pixels, (std::vector<TRC>{9, 9, 1, 1, 5, 5, 6, 6, 5, 5, 9, 9}));
}
#endif

}  // namespace
