// SPDX-License-Identifier: MIT

// Blending into 24-bit and 32-bit bitmaps against a plain walk over bytes, at every level.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "tests/support/family.h"
#include "tests/support/fenced.h"
#include "tests/support/formulas.h"
#include "tests/support/random.h"

namespace {

using omnar::Level;
using support::Random;
using Byte = unsigned char;

struct Image {
    Byte* bytes;
    unsigned width, height, pixelBytes;

    std::size_t pitch() const { return pixelBytes == 4 ? std::size_t{width} * 4 : (std::size_t{width} * 3 + 3) & ~3U; }
    std::size_t size() const { return height == 0 ? 0 : (height - 1) * pitch() + std::size_t{width} * pixelBytes; }
    Byte* at(double x, double y) const {
        const double column = std::floor(std::min(x, width - 1.0));
        const double row = std::floor(std::min(y, height - 1.0));
        return bytes + static_cast<std::size_t>(row) * pitch() + static_cast<std::size_t>(column) * pixelBytes;
    }
};

struct Blend {
    Image src, dst;
    unsigned color;
    double scaleX, scaleY;

    void call() const {
        const auto function = dst.pixelBytes == 3 ? AlphaBlendBGR24AlphaToBGR24 : AlphaBlendBGR32AlphaToBGR32;
        function(src.bytes, src.width, src.height, color, dst.bytes, dst.width, dst.height, scaleX, scaleY);
    }

    void model() const {
        for (unsigned y = 0; y < dst.height; ++y) {
            for (unsigned x = 0; x < dst.width; ++x) {
                const Byte weight = *src.at(x * scaleX, y * scaleY);
                Byte* const pixel = dst.at(x, y);
                for (unsigned c = 0; c < 3; ++c) {
                    pixel[c] = static_cast<Byte>(support::moved(pixel[c], color >> 8 * c & 255, weight));
                }
            }
        }
    }
};

class Bitmaps : public testing::TestWithParam<Level> {
protected:
    void SetUp() override {
        if (!level_.runs()) GTEST_SKIP() << "this processor or build lacks the level " << name(GetParam());
    }

    std::span<Byte> arena(const support::Fenced& memory) const {
        return {reinterpret_cast<Byte*>(memory.bytes().data()), memory.bytes().size()};
    }

    /// A blend of images that end where nothing may be touched, or that share memory.
    Blend random(Random& random, bool shared) const {
        const unsigned bytes = 3 + random.below(2);
        Blend blend{{nullptr, 1 + random.below(40), 1 + random.below(9), bytes},
                    {nullptr, random.below(60), random.below(9), bytes},
                    static_cast<unsigned>(random.next()),
                    0,
                    0};
        if (random.oneIn(30)) blend.dst = {nullptr, 1000 + random.below(100), 2, bytes};
        constexpr double scales[] = {0, 0.1, 1.0 / 3, 0.5, 1, 1.5, 7, 1e12, 1e300};
        blend.scaleX = scales[random.below(9)];
        blend.scaleY = scales[random.below(9)];
        const auto first = arena(first_), second = arena(second_);
        blend.dst.bytes = first.data() + first.size() - blend.dst.size();
        blend.src.bytes = second.data() + second.size() - blend.src.size();
        if (shared) {
            blend.src.bytes = first.data() + 4 * random.below(100);
            blend.dst.bytes = first.data() + 4 * random.below(100);
        }
        return blend;
    }

    support::Fenced first_{65536}, second_{65536};

private:
    support::ForcedLevel level_{GetParam()};
};

TEST_P(Bitmaps, EqualTheirModelApartAndOverlapping) {
    for (std::uint64_t seed = 1; seed <= 1500; ++seed) {
        Random generator(seed);
        generator.fill(first_.bytes());
        generator.fill(second_.bytes());
        const Blend blend = random(generator, seed % 3 == 0);
        const auto memory = arena(first_);
        const std::vector<Byte> before(memory.begin(), memory.end());
        blend.model();
        const std::vector<Byte> expected(memory.begin(), memory.end());
        std::copy(before.begin(), before.end(), memory.begin());
        blend.call();
        ASSERT_EQ(std::memcmp(memory.data(), expected.data(), expected.size()), 0)
            << "seed " << seed << ": " << blend.src.width << "x" << blend.src.height << " to " << blend.dst.width << "x"
            << blend.dst.height << ", " << blend.dst.pixelBytes << " bytes a pixel, scales " << blend.scaleX << ", "
            << blend.scaleY;
    }
}

TEST_P(Bitmaps, HaveTheCommittedChecksums) {
    std::uint64_t sums[2] = {0xCBF29CE484222325U, 0xCBF29CE484222325U};
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        Random generator(seed);
        generator.fill(first_.bytes());
        generator.fill(second_.bytes());
        const Blend blend = random(generator, false);
        blend.call();
        std::uint64_t& sum = sums[blend.dst.pixelBytes - 3];
        for (std::size_t i = 0; i < blend.dst.size(); ++i) sum = (sum ^ blend.dst.bytes[i]) * 0x100000001B3U;
    }
    EXPECT_EQ(sums[0], 140702480279094307U) << "AlphaBlendBGR24AlphaToBGR24";
    EXPECT_EQ(sums[1], 6983096563511209911U) << "AlphaBlendBGR32AlphaToBGR32";
}

INSTANTIATE_TEST_SUITE_P(Levels, Bitmaps, testing::ValuesIn(omnar::allLevels),
                         [](const auto& level) { return std::string(name(level.param)); });

}  // namespace
