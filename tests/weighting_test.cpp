// SPDX-License-Identifier: MIT

// The weighted step: the reference against known answers and properties, the vector kernels against the reference over
// their whole domain.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <numeric>

#include "buffers/weighting.h"
#include "tests/support/leveled_test.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tests/weighting_test.cpp"
#include "buffers/foreach_level.h"

#include "compositing/samples-inl.h"

#ifndef OMNAR_TESTS_WEIGHTING_TEST_ONCE
#define OMNAR_TESTS_WEIGHTING_TEST_ONCE
namespace weighting {

using Bytes = std::array<std::uint8_t, 256>;
using Samples = std::array<std::uint16_t, 256>;

/// The vector kernels of one level, applied to arrays.
struct Kernels {
    void (*toward)(const Bytes& old, const Bytes& target, unsigned weight, Bytes& moved);
    void (*towardBelow255)(const Bytes& old, const Bytes& target, unsigned weight, Bytes& moved);
    void (*towardWide)(const Bytes& old, const Bytes& target, unsigned weight, Bytes& moved);
    void (*scaled)(const Bytes& alpha, unsigned opacity, Bytes& weight);
    void (*scaledBelow255)(const Bytes& alpha, unsigned opacity, Bytes& weight);
    std::uint16_t (*dividedBy255)(std::uint16_t v);
    void (*towardSamples)(std::uint16_t old, std::uint16_t firstTarget, unsigned weight, Samples& moved);
};

}  // namespace weighting
#endif

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

void towardBytes(const weighting::Bytes& old, const weighting::Bytes& target, unsigned weight,
                 weighting::Bytes& moved) {
    static constexpr auto even = doubling(0xFFFFFFFF, 0);
    static constexpr auto odd = doubling(0xFFFFFFFF, 1);
    const D8 d;
    for (size_t i = 0; i < old.size(); i += hn::MaxLanes(d)) {
        const V8 result = toward(hn::LoadU(d, &old[i]), hn::LoadU(d, &target[i]), factorOf(weight), factorOf(weight),
                                 partOf(even, 0), partOf(odd, 0));
        hn::StoreU(result, d, &moved[i]);
    }
}

void towardBelow255Bytes(const weighting::Bytes& old, const weighting::Bytes& target, unsigned weight,
                         weighting::Bytes& moved) {
    const D8 d;
    const V16 by = multiplierOf(weight);
    for (size_t i = 0; i < old.size(); i += hn::MaxLanes(d)) {
        hn::StoreU(towardBelow255(hn::LoadU(d, &old[i]), hn::LoadU(d, &target[i]), by, by, 0xFFFFFFFF), d, &moved[i]);
    }
}

void towardWideBytes(const weighting::Bytes& old, const weighting::Bytes& target, unsigned weight,
                     weighting::Bytes& moved) {
    const D8 d;
    const V16 weights = hn::Set(D16(), static_cast<uint16_t>(weight));
    for (size_t i = 0; i < old.size(); i += hn::MaxLanes(d)) {
        hn::StoreU(towardWide(hn::LoadU(d, &old[i]), hn::LoadU(d, &target[i]), weights, everywhere(0xFFFFFFFF)), d,
                   &moved[i]);
    }
}

void scaledWeights(const weighting::Bytes& alpha, unsigned opacity, weighting::Bytes& weight) {
    alignas(64) uint16_t factors[hn::MaxLanes(D16())];
    for (size_t i = 0; i < alpha.size(); ++i) {
        const V16 doubled = hn::Set(D16(), static_cast<uint16_t>(alpha[i] * 257));
        hn::StoreU(factorOfHigh(hn::MulHigh(doubled, factorOf(opacity))), D16(), factors);
        EXPECT_EQ(factors[0] & 255, 1);
        weight[i] = static_cast<uint8_t>(factors[0] >> 8);
    }
}

void weightsBelow255(const weighting::Bytes& alpha, unsigned opacity, weighting::Bytes& weight) {
    const D8 d;
    for (size_t i = 0; i < alpha.size(); i += hn::MaxLanes(d)) {
        hn::StoreU(valuesOf(multipliersUnder(hn::LoadU(d, &alpha[i]), multiplierOf(opacity))), d, &weight[i]);
    }
}

uint16_t quotient(uint16_t v) {
    alignas(64) uint16_t quotients[hn::MaxLanes(D16())];
    hn::StoreU(dividedBy255(hn::Set(D16(), v)), D16(), quotients);
    return quotients[0];
}

void towardSamples(uint16_t old, uint16_t firstTarget, unsigned weight, weighting::Samples& moved) {
    const D16 d;
    const V16 weights = hn::Set(d, static_cast<uint16_t>(weight));
    for (size_t i = 0; i < moved.size(); i += hn::MaxLanes(d)) {
        const V16 targets = hn::Iota(d, static_cast<uint16_t>(firstTarget + i));
        hn::StoreU(toward(hn::Set(d, old), targets, weights), d, &moved[i]);
    }
}

extern constexpr weighting::Kernels kernels{
    towardBytes, towardBelow255Bytes, towardWideBytes, scaledWeights, weightsBelow255, quotient, towardSamples};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {
namespace {

constexpr weighting::Kernels kernels{};  // the scalar level has no vector kernels
constexpr Levels<weighting::Kernels> levels{&kernels OMNAR_VECTOR_TABLES(kernels)};

TEST(Weighting, KnownAnswers) {
    EXPECT_EQ(toward(200, 0, 1), 200);  // -200/255 truncates to 0
    EXPECT_EQ(toward(0, 200, 128), 100);
    EXPECT_EQ(toward(200, 0, 128), 100);  // -100.39 truncates to -100
    EXPECT_EQ(scaled(255, 255), 255U);
    EXPECT_EQ(scaled(128, 1), 0U);
    EXPECT_EQ(colorToward(0x80000000U, 0x00FFFFFFU, 255), 0x80FFFFFFU);
}

TEST(Weighting, StepsStayBetweenOldAndTarget) {
    for (int old = 0; old < 256; ++old) {
        for (int target = 0; target < 256; ++target) {
            ASSERT_EQ(toward(old, target, 0), old);
            ASSERT_EQ(toward(old, target, 255), target);
            for (int weight = 1; weight < 255; ++weight) {
                const int distance = std::abs(toward(old, target, weight) - old);
                ASSERT_LE(distance, std::abs(target - old));
                ASSERT_LE(distance, std::abs(toward(old, target, weight + 1) - old));
            }
        }
    }
}

class WeightingKernels : public support::LeveledTest {
protected:
    WeightingKernels() { std::iota(targets_.begin(), targets_.end(), std::uint8_t{0}); }

    /// Compares a kernel with the reference for all old values, all targets and the weights below `weights`.
    void compare(void (*kernel)(const weighting::Bytes&, const weighting::Bytes&, unsigned, weighting::Bytes&),
                 unsigned weights) const {
        weighting::Bytes old, moved;
        for (unsigned weight = 0; weight < weights; ++weight) {
            for (int value = 0; value < 256; ++value) {
                old.fill(static_cast<std::uint8_t>(value));
                kernel(old, targets_, weight, moved);
                for (int target = 0; target < 256; ++target) {
                    const int expected = toward(value, target, static_cast<int>(weight));
                    ASSERT_EQ(moved[static_cast<std::size_t>(target)], expected & 255)
                        << value << " toward " << target << " by " << weight;
                }
            }
        }
    }

    weighting::Bytes targets_;  ///< every value
};

TEST_P(WeightingKernels, EqualTheReferenceOverTheWholeDomain) {
    const weighting::Kernels& kernel = levels.current();
    compare(kernel.toward, 256);
    compare(kernel.towardBelow255, 255);
    compare(kernel.towardWide, 258);
    for (unsigned opacity = 0; opacity < 256; ++opacity) {
        weighting::Bytes weights;
        kernel.scaled(targets_, opacity, weights);
        for (unsigned alpha = 0; alpha < 256; ++alpha) ASSERT_EQ(weights[alpha], scaled(alpha, opacity));
        if (opacity == 255) continue;
        kernel.scaledBelow255(targets_, opacity, weights);
        for (unsigned alpha = 0; alpha < 256; ++alpha) ASSERT_EQ(weights[alpha], scaled(alpha, opacity));
    }
    for (unsigned v = 0; v < 65536; ++v) ASSERT_EQ(kernel.dividedBy255(static_cast<std::uint16_t>(v)), v / 255);
}

// All distances and all weights. The sign selects between addition and subtraction only.
TEST_P(WeightingKernels, EqualTheReferenceFor16BitSamples) {
    weighting::Samples moved;
    for (const int old : {0, 65535, 4095}) {
        for (int weight = 0; weight < 256; weight += old == 4095 ? 17 : 1) {
            for (int first = 0; first < 65536; first += 256) {
                levels.current().towardSamples(static_cast<std::uint16_t>(old), static_cast<std::uint16_t>(first),
                                               static_cast<unsigned>(weight), moved);
                for (int i = 0; i < 256; ++i) {
                    ASSERT_EQ(moved[static_cast<std::size_t>(i)], toward(old, first + i, weight) & 65535)
                        << old << " toward " << first + i << " by " << weight;
                }
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(VectorLevels, WeightingKernels, testing::ValuesIn(allLevels.begin() + 1, allLevels.end()),
                         support::nameOfLevel);

}  // namespace
}  // namespace omnar
#endif
