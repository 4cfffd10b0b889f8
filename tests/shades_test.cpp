// SPDX-License-Identifier: MIT

// Lighter and darker: the vector kernels against the reference, over the whole domain of each step.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "tests/support/leveled_test.h"

namespace {

using omnar::Level;

template <class Px>
using Function = void(const L08*, unsigned, unsigned, unsigned, unsigned, Px*, unsigned, unsigned, unsigned, unsigned,
                      unsigned char, unsigned, unsigned, const bool*);

/// Sets of bands.
constexpr unsigned light = 1, middle = 2, dark = 4, allBands = light | middle | dark;
constexpr unsigned edgeOpacities[] = {0, 1, 128, 254, 255};

class ShadeKernels : public testing::TestWithParam<Level> {
protected:
    void SetUp() override {
        const support::ForcedLevel level(GetParam());
        if (!level.runs()) GTEST_SKIP() << "this processor or build lacks the vector level " << name(GetParam());
    }

    /// Compares the vector level with the reference for every pixel and every coverage.
    template <class Px>
    void compare(Function<Px>* shade, const std::vector<Px>& pixels, unsigned opacity, unsigned bands) const {
        constexpr unsigned coverages = 256;
        std::vector<Px> expected;
        for (const Px pixel : pixels) expected.insert(expected.end(), coverages, pixel);
        std::vector<L08> alpha(expected.size());
        std::iota(alpha.begin(), alpha.end(), L08{0});
        std::vector<Px> actual = expected;

        const auto run = [&](Level level, std::vector<Px>& dst) {
            const support::ForcedLevel forced(level);
            const bool flags[] = {(bands & light) != 0, (bands & middle) != 0, (bands & dark) != 0};
            const auto height = static_cast<unsigned>(pixels.size());
            shade(alpha.data(), coverages, height, 0, 0, dst.data(), coverages, height, 0, 0,
                  static_cast<unsigned char>(opacity), coverages, height, flags);
        };
        run(Level::scalar, expected);
        run(GetParam(), actual);
        if (actual == expected) return;
        const auto difference = std::mismatch(actual.begin(), actual.end(), expected.begin()).first - actual.begin();
        const auto i = static_cast<std::size_t>(difference);
        FAIL() << +pixels[i / coverages] << " becomes " << +actual[i] << " instead of " << +expected[i]
               << " with coverage " << i % coverages << ", opacity " << opacity << ", bands " << bands;
    }

    /// Opacities and bands that select another rule.
    template <class Px>
    void compareCases(Function<Px>* shade, const std::vector<Px>& pixels) const {
        for (const unsigned opacity : edgeOpacities) {
            for (unsigned bands = 0; bands <= allBands; ++bands) {
                ASSERT_NO_FATAL_FAILURE(compare(shade, pixels, opacity, bands));
            }
        }
    }
};

template <class Px>
std::vector<Px> valuesBelow(std::size_t count) {
    std::vector<Px> values(count);
    std::iota(values.begin(), values.end(), Px{0});
    return values;
}

// In the middle and the dark band the weight takes all its values.
TEST_P(ShadeKernels, EqualTheReferenceForEveryCoverageOpacityAndWeight) {
    const auto values = valuesBelow<L08>(256);
    for (Function<L08>* shade : {DarkerL08WithAlpha, LighterL08WithAlpha}) {
        ASSERT_NO_FATAL_FAILURE(compareCases(shade, values));
        for (unsigned opacity = 0; opacity < 256; ++opacity) {
            for (const unsigned bands : {middle, dark}) ASSERT_NO_FATAL_FAILURE(compare(shade, values, opacity, bands));
        }
    }
}

TEST_P(ShadeKernels, EqualTheReferenceFor12BitValues) {
    auto values = valuesBelow<L12>(4100);
    values.insert(values.end(), {6142, 6143, 32767, 32768, 34815, 34816, 65281, 65535});
    ASSERT_NO_FATAL_FAILURE(compareCases(DarkerL12WithAlpha, values));
    for (const unsigned opacity : edgeOpacities) {
        ASSERT_NO_FATAL_FAILURE(compare(LighterL12WithAlpha, values, opacity, allBands));
    }
}

/// A colour of the luminance, near the next lower one (even blue) or the next higher one (odd blue). Colours that blue
/// makes brighter than the luminance have no red and no green.
TRC colourOf(unsigned blue, unsigned luminance) {
    const unsigned redAndGreen = std::max(100 * luminance + (blue % 2 == 0 ? 29 : 99), 11 * blue) - 11 * blue;
    const unsigned green = std::min(redAndGreen / 89, 255U);
    return std::min((redAndGreen - 59 * green) / 30, 255U) << 16 | green << 8 | blue;
}

// With all bands the coverage is the change of luminance, so that channels are scaled by every ratio of two luminances.
TEST_P(ShadeKernels, EqualTheReferenceForEveryRatioOfLuminances) {
    for (Function<TRC>* shade : {DarkerTRCWithAlpha, LighterTRCWithAlpha}) {
        for (unsigned blue = 0; blue < 256; ++blue) {
            std::vector<TRC> colours;
            for (unsigned luminance = 0; luminance < 256; ++luminance) colours.push_back(colourOf(blue, luminance));
            ASSERT_NO_FATAL_FAILURE(compare(shade, colours, 255, allBands));
        }
        std::vector<TRC> greys;
        for (TRC grey = 0; grey < 256; ++grey) greys.push_back(grey << 24 | grey * 0x010101);
        ASSERT_NO_FATAL_FAILURE(compareCases(shade, greys));
    }
}

INSTANTIATE_TEST_SUITE_P(VectorLevels, ShadeKernels,
                         testing::ValuesIn(omnar::allLevels.begin() + 1, omnar::allLevels.end()), support::nameOfLevel);

}  // namespace
