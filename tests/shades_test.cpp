// SPDX-License-Identifier: MIT

// Lighter and darker: the vector twins by the law, over the whole domain of each of their steps.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "tests/support/family.h"

namespace {

using omnar::Level;

template <class Px>
using Function = void(const L08*, unsigned, unsigned, unsigned, unsigned, Px*, unsigned, unsigned, unsigned, unsigned,
                      unsigned char, unsigned, unsigned, const bool*);

/// Light, middle, dark in bits 0 to 2.
constexpr unsigned middle = 2, dark = 4, every = 7;
constexpr unsigned edges[] = {0, 1, 128, 254, 255};

class ShadeTwins : public testing::TestWithParam<Level> {
protected:
    void SetUp() override {
        const support::ForcedLevel level(GetParam());
        if (!level.runs()) GTEST_SKIP() << "this processor or build lacks the level " << name(GetParam());
    }

    /// Shades every pixel under every alpha, by the scalar rule and by the level.
    template <class Px>
    void compare(Function<Px>* shade, const std::vector<Px>& pixels, unsigned opacity, unsigned bands) const {
        std::vector<Px> law;
        for (const Px pixel : pixels) law.insert(law.end(), 256, pixel);
        std::vector<L08> alpha(law.size());
        std::iota(alpha.begin(), alpha.end(), L08{0});
        std::vector<Px> twin = law;

        const auto run = [&](Level wanted, std::vector<Px>& dst) {
            const support::ForcedLevel level(wanted);
            const bool flags[] = {(bands & 1) != 0, (bands & middle) != 0, (bands & dark) != 0};
            const auto height = static_cast<unsigned>(pixels.size());
            shade(alpha.data(), 256, height, 0, 0, dst.data(), 256, height, 0, 0, static_cast<unsigned char>(opacity),
                  256, height, flags);
        };
        run(Level::scalar, law);
        run(GetParam(), twin);
        if (twin == law) return;
        const auto at =
            static_cast<std::size_t>(std::mismatch(twin.begin(), twin.end(), law.begin()).first - twin.begin());
        FAIL() << +pixels[at / 256] << " becomes " << +twin[at] << " instead of " << +law[at] << " under alpha "
               << at % 256 << ", opacity " << opacity << ", bands " << bands;
    }

    /// Opacities and bands that select another rule.
    template <class Px>
    void compareCases(Function<Px>* shade, const std::vector<Px>& pixels) const {
        for (const unsigned opacity : edges) {
            for (unsigned bands = 0; bands <= every; ++bands) {
                ASSERT_NO_FATAL_FAILURE(compare(shade, pixels, opacity, bands));
            }
        }
    }
};

template <class Px>
std::vector<Px> firstLevels(std::size_t count) {
    std::vector<Px> levels(count);
    std::iota(levels.begin(), levels.end(), Px{0});
    return levels;
}

// Under the middle and the dark band the weight takes all of its values.
TEST_P(ShadeTwins, EqualTheLawForEveryAlphaOpacityAndWeight) {
    const auto levels = firstLevels<L08>(256);
    for (Function<L08>* shade : {DarkerL08WithAlpha, LighterL08WithAlpha}) {
        ASSERT_NO_FATAL_FAILURE(compareCases(shade, levels));
        for (unsigned opacity = 0; opacity < 256; ++opacity) {
            for (const unsigned bands : {middle, dark}) ASSERT_NO_FATAL_FAILURE(compare(shade, levels, opacity, bands));
        }
    }
}

TEST_P(ShadeTwins, EqualTheLawFor12BitLevels) {
    auto levels = firstLevels<L12>(4100);
    levels.insert(levels.end(), {6142, 6143, 32767, 32768, 34815, 34816, 65281, 65535});
    ASSERT_NO_FATAL_FAILURE(compareCases(DarkerL12WithAlpha, levels));
    for (const unsigned opacity : edges) {
        ASSERT_NO_FATAL_FAILURE(compare(LighterL12WithAlpha, levels, opacity, every));
    }
}

/// A colour of a luminance, as near as its blue lets it come: just above the next lower or below the next higher one.
TRC colourOf(unsigned blue, unsigned luminance) {
    const unsigned rest = std::max(100 * luminance + (blue % 2 == 0 ? 29 : 99), 11 * blue) - 11 * blue;
    const unsigned green = std::min(rest / 89, 255U);
    return std::min((rest - 59 * green) / 30, 255U) << 16 | green << 8 | blue;
}

// With all bands, alphas are changes: every channel value is scaled by every ratio that there is.
TEST_P(ShadeTwins, EqualTheLawForEveryRatioOfLuminances) {
    for (Function<TRC>* shade : {DarkerTRCWithAlpha, LighterTRCWithAlpha}) {
        for (unsigned blue = 0; blue < 256; ++blue) {
            std::vector<TRC> colours;
            for (unsigned luminance = 0; luminance < 256; ++luminance) colours.push_back(colourOf(blue, luminance));
            ASSERT_NO_FATAL_FAILURE(compare(shade, colours, 255, every));
        }
        std::vector<TRC> greys;
        for (TRC grey = 0; grey < 256; ++grey) greys.push_back(grey << 24 | grey * 0x010101);
        ASSERT_NO_FATAL_FAILURE(compareCases(shade, greys));
    }
}

INSTANTIATE_TEST_SUITE_P(Levels, ShadeTwins, testing::ValuesIn(omnar::allLevels.begin() + 1, omnar::allLevels.end()),
                         [](const auto& level) { return std::string(name(level.param)); });

}  // namespace
