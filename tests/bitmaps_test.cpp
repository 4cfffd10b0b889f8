// SPDX-License-Identifier: MIT

// Blending into 24-bit and 32-bit bitmaps against a model that walks over bytes, at every vector level.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "tests/support/checksums.h"
#include "tests/support/family.h"
#include "tests/support/fenced.h"
#include "tests/support/formulas.h"
#include "tests/support/leveled_test.h"
#include "tests/support/random.h"

namespace {

using support::Random;
using Byte = unsigned char;

constexpr std::size_t arenaSize = 65536;

struct Bitmap {
    Byte* bytes;
    unsigned width, height, pixelBytes;

    std::size_t pitch() const { return pixelBytes == 4 ? std::size_t{width} * 4 : (std::size_t{width} * 3 + 3) & ~3U; }
    std::size_t size() const { return height == 0 ? 0 : (height - 1) * pitch() + std::size_t{width} * pixelBytes; }
    Byte* pixel(double x, double y) const {
        const double column = std::floor(std::min(x, width - 1.0));
        const double row = std::floor(std::min(y, height - 1.0));
        return bytes + static_cast<std::size_t>(row) * pitch() + static_cast<std::size_t>(column) * pixelBytes;
    }
};

struct Blend {
    Bitmap src, dst;
    unsigned color;
    double scaleX, scaleY;

    void call() const {
        const auto function = dst.pixelBytes == 3 ? AlphaBlendBGR24AlphaToBGR24 : AlphaBlendBGR32AlphaToBGR32;
        function(src.bytes, src.width, src.height, color, dst.bytes, dst.width, dst.height, scaleX, scaleY);
    }

    void model() const {
        for (unsigned y = 0; y < dst.height; ++y) {
            for (unsigned x = 0; x < dst.width; ++x) {
                const Byte weight = *src.pixel(x * scaleX, y * scaleY);
                Byte* const pixel = dst.pixel(x, y);
                for (unsigned c = 0; c < 3; ++c) {
                    pixel[c] = static_cast<Byte>(support::moved(pixel[c], color >> 8 * c & 255, weight));
                }
            }
        }
    }
};

class Bitmaps : public support::LeveledTest {
protected:
    std::span<Byte> arena(const support::Fenced& memory) const {
        return {reinterpret_cast<Byte*>(memory.bytes().data()), memory.bytes().size()};
    }

    /// A random blend of bitmaps that end at fences or overlap.
    Blend randomBlend(Random& random, bool overlap) const {
        const unsigned bytes = 3 + random.below(2);
        Blend blend{};
        blend.src = {nullptr, 1 + random.below(40), 1 + random.below(9), bytes};
        blend.dst = {nullptr, random.below(60), random.below(9), bytes};
        blend.color = static_cast<unsigned>(random.next());
        if (random.oneIn(30)) blend.dst = {nullptr, 1000 + random.below(100), 2, bytes};
        constexpr double scales[] = {0, 0.1, 1.0 / 3, 0.5, 1, 1.5, 7, 1e12, 1e300};
        blend.scaleX = scales[random.below(std::size(scales))];
        blend.scaleY = scales[random.below(std::size(scales))];
        const auto first = arena(first_), second = arena(second_);
        blend.dst.bytes = first.data() + first.size() - blend.dst.size();
        blend.src.bytes = second.data() + second.size() - blend.src.size();
        if (overlap) {
            blend.src.bytes = first.data() + 4 * random.below(100);
            blend.dst.bytes = first.data() + 4 * random.below(100);
        }
        return blend;
    }

    support::Fenced first_{arenaSize}, second_{arenaSize};
};

TEST_P(Bitmaps, EqualTheirModelApartAndOverlapping) {
    for (std::uint64_t seed = 1; seed <= 1500; ++seed) {
        Random random(seed);
        random.fill(first_.bytes());
        random.fill(second_.bytes());
        const Blend blend = randomBlend(random, seed % 3 == 0);
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
    support::Fnv1a sums[2];
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        Random random(seed);
        random.fill(first_.bytes());
        random.fill(second_.bytes());
        const Blend blend = randomBlend(random, false);
        blend.call();
        sums[blend.dst.pixelBytes - 3].add({blend.dst.bytes, blend.dst.size()});
    }
    support::expectCommitted("AlphaBlendBGR24AlphaToBGR24", sums[0].value());
    support::expectCommitted("AlphaBlendBGR32AlphaToBGR32", sums[1].value());
}

INSTANTIATE_AT_EVERY_LEVEL(Bitmaps);

}  // namespace
