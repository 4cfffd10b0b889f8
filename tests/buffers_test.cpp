// SPDX-License-Identifier: MIT

// Conversions, look-ups, fills and marks: properties that the table of members does not cover.
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
#include "tests/support/leveled_test.h"

namespace {

using support::Random;

class Buffers : public support::LeveledTest {};

/// Looks up samples that end at a fence, in a table that ends at another fence or lies among the samples.
template <class Px>
void checkLookUps(void (*lookUp)(Px*, unsigned, unsigned, unsigned, unsigned, unsigned, unsigned, const Px*),
                  std::size_t entries) {
    constexpr std::size_t arenaSize = 65536;
    support::Fenced samples(arenaSize), tables(arenaSize);
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        Random random(seed);
        const std::size_t n = random.below(200);
        const bool among = random.oneIn(3);
        const std::size_t size = among ? n + entries : n;
        Px* const data = samples.values<Px>(size, true).data();
        Px* table = tables.values<Px>(entries, true).data();
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

// Above 32 MiB copies and fills use streaming stores, unless the rows are too short.
TEST_P(Buffers, LargeCopiesEqualTheirSourceAndLargeFillsTheirColor) {
    for (const auto& [width, height] : {std::pair{4099U, 2051U}, std::pair{101U, 84001U}}) {
        std::vector<TRC> src(std::size_t{width} * height), dst(src.size() + 2, 7);
        Random random(3);
        for (TRC& pixel : src) pixel = static_cast<TRC>(random.next());
        Copy2DTRCBufferToTRC(src.data(), width, height, 0, 0, dst.data() + 1, width, height, 0, 0, width - 1, height);
        for (std::size_t i = width - 1; i < src.size(); i += width) src[i] = 7;
        EXPECT_TRUE(std::equal(src.begin(), src.end(), dst.begin() + 1));
        FillTRCBuffer(dst.data() + 1, width, height, 1, 0, width - 2, height, 0x12345678);
        for (std::size_t i = 0; i < src.size(); ++i) {
            if (i % width != 0 && i % width != width - 1) src[i] = 0x12345678;
        }
        EXPECT_TRUE(std::equal(src.begin(), src.end(), dst.begin() + 1));
        EXPECT_EQ(dst.front(), 7U);
        EXPECT_EQ(dst.back(), 7U);
    }
}

// The alpha plane ends at a fence. The flags may lie among the samples, so that a call changes them.
TEST_P(Buffers, AnyNumberOfProtectedValuesIsKept) {
    constexpr unsigned width = 1100, height = 3;
    constexpr std::size_t size = std::size_t{width} * height;
    support::Fenced alphas(width * (2 * height + 1)), sources(size + 256), destinations(size);
    for (std::uint64_t seed = 1; seed <= 400; ++seed) {
        Random random(seed);
        const auto fill = [&](auto bytes) {
            for (auto& byte : bytes) byte = static_cast<std::byte>(random.next());
        };
        fill(alphas.bytes()), fill(sources.bytes()), fill(destinations.bytes());
        const unsigned alphaHeight = random.below(2 * height + 2);  // the alpha plane may end before the region
        const L08* const alpha = alphas.values<L08>(std::size_t{width} * alphaHeight, true).data();
        L08* const src = sources.values<L08>(size, false).data();
        L08* const dst = destinations.values<L08>(size, false).data();
        const bool among = random.oneIn(4);
        std::vector<unsigned char> apart(256);
        unsigned char* const flags = among ? src + random.below(size) : apart.data();
        const unsigned oneIn = 1U << random.below(10);
        for (unsigned i = 0; i < 256; ++i) flags[i] = random.oneIn(oneIn) ? 1 : 0;
        const unsigned cols = std::min(width, 1 + random.below(2 * width)),
                       opacity = random.oneIn(3) ? 255 : random.below(256);
        const bool hard = random.oneIn(3);

        const std::vector<L08> sourceBefore(src, src + size + 256), before(dst, dst + size);
        const std::vector<unsigned char> flagsBefore(apart);
        std::size_t offset = 0;  // in the alpha plane
        const auto scaled = [](unsigned a, unsigned b) { return a * b / 255; };
        for (std::size_t row = 0; row < std::min(height, alphaHeight); ++row, offset += width) {
            L08* const s = src + row * width;
            for (std::size_t i = 0; i < cols; ++i) {
                L08& d = dst[row * width + i];
                const unsigned a = offset < std::size_t{width} * alphaHeight ? alpha[offset] : 0,
                               k = scaled(a, opacity);
                if (hard) {
                    const auto remaining = static_cast<std::size_t>(src + size - s);
                    if (2 * i < remaining && scaled(s[2 * i], k) != 0) d = 255;
                    if (2 * i + 1 < remaining && flags[s[2 * i + 1]] == 0) s[2 * i + 1] = 0;
                    ++offset;
                } else {
                    const bool isKept = flags[s[i]] != 0;
                    d = static_cast<L08>(d + (s[i] - d) * k / 255);
                    if (!isKept) s[i] = static_cast<L08>(s[i] + (0U - a * s[i]) / 255);
                    if (!isKept) ++offset;
                }
            }
        }
        const std::vector<L08> sourceAfter(src, src + size + 256), after(dst, dst + size);
        std::copy(sourceBefore.begin(), sourceBefore.end(), src);
        std::copy(before.begin(), before.end(), dst);
        MoveToneL08ToL08Prot(alpha, width, alphaHeight, 0, 0, src, dst, width, height, 0, 0,
                             static_cast<unsigned char>(opacity), hard, cols, height, flags);
        ASSERT_TRUE(std::equal(after.begin(), after.end(), dst)) << "seed " << seed;
        ASSERT_TRUE(std::equal(sourceAfter.begin(), sourceAfter.end(), src)) << "seed " << seed;
    }
}

TEST_P(Buffers, ChessboardsOfAnyCellsEqualTheFloorOfTheirCoordinates) {
    constexpr int width = 150, height = 5;
    for (std::uint64_t seed = 1; seed <= 1500; ++seed) {
        Random random(seed);
        const auto cell = static_cast<int>(1 + random.below(random.oneIn(4) ? 100 : 35));
        const auto x = static_cast<int>(random.below(20)), w = static_cast<int>(random.below(width - 20));
        const int originX = static_cast<int>(random.below(200)) - 100,
                  originY = static_cast<int>(random.below(200)) - 100;
        std::vector<TRC> board(width * height, 9), expected = board;
        for (int i = 0; i < w * height; ++i) {
            const double column = std::floor(double(originX + x + i % w) / cell),
                         row = std::floor(double(originY + i / w) / cell);
            expected[std::size_t(i / w * width + x + i % w)] = std::fmod(column + row, 2) == 0 ? 1 : 2;
        }
        ChessboardFillTRCBuffer(board.data(), width, height, unsigned(x), 0, unsigned(w), height, originX, originY, 1,
                                2, unsigned(cell));
        ASSERT_EQ(board, expected) << "seed " << seed;
    }
}

// Every value with every coverage. The vector kernels do not compute in doubles.
TEST_P(Buffers, DivisionByAlphaEqualsThatOfDoubles) {
    std::vector<L08> values(65536), alphas(65536);
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = static_cast<L08>(i & 255);
        alphas[i] = static_cast<L08>(i >> 8);
    }
    InvertAlphaL08(values.data(), alphas.data(), 256, 256, 0, 0, false, 256, 256);
    for (unsigned i = 0; i < 65536; ++i) {
        const unsigned value = i & 255, alpha = i >> 8;
        double v = value;
        if (alpha != 0 && alpha != 255) {
            v = 255.0 / alpha * value;
            if (v - value < 1.0) v += 1.0;
        }
        ASSERT_EQ(values[i], static_cast<unsigned>(std::min(v, 255.0))) << value << " with coverage " << alpha;
    }
}

// Brightness 101 and contrast 100 turn black into the luminance plus 1.
TEST_P(Buffers, RecolouringIsRightForEveryLuminance) {
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

TEST_P(Buffers, RecolouringTruncatesTheLight) {
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
    EXPECT_EQ(recoloured(INT_MAX, INT_MIN),
              (std::vector<TRC>{0xAAFFFFFF, 0, 0xFFFFFF, 0x808080}));  // -1.3 for the second pixel
}

INSTANTIATE_AT_EVERY_LEVEL(Buffers);

TEST(Chessboard, HasRowsFromTheRegionsTopAndColumnsFromTheBuffersLeft) {
    std::vector<TRC> board(16 * 4, 9);
    ChessboardFillTRCBuffer(board.data(), 16, 4, 4, 1, 12, 9, 0, -1, 1, 2, 8);
    const std::vector<TRC> row{9, 9, 9, 9, 2, 2, 2, 2, 1, 1, 1, 1, 1, 1, 1, 1};  // the row above the board's origin
    EXPECT_TRUE(std::equal(row.begin(), row.end(), board.begin() + 16));
    EXPECT_EQ(board[2 * 16 + 4], 1U);
    EXPECT_EQ(board[2 * 16 + 8], 2U);
    EXPECT_TRUE(std::all_of(board.begin(), board.begin() + 16, [](TRC pixel) { return pixel == 9; }));
}

#if !defined(OMNAR_CHECKED)  // the checked build rejects these calls
TEST(Fills, DoNotCutTheirColumns) {
    std::vector<TRC> pixels(12, 9);
    FillTRCBuffer(pixels.data(), 4, 3, 2, 0, 3, 2, 1);
    EXPECT_EQ(pixels, (std::vector<TRC>{9, 9, 1, 1, 1, 9, 1, 1, 1, 9, 9, 9}));
    ChessboardFillTRCBuffer(pixels.data(), 4, 3, 0, 1, 6, 1, 0, 0, 5, 6, 2);
    EXPECT_EQ(pixels, (std::vector<TRC>{9, 9, 1, 1, 5, 5, 6, 6, 5, 5, 9, 9}));
}
#endif

}  // namespace
