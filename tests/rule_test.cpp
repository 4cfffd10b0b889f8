// SPDX-License-Identifier: MIT

// The weighted step: the law by known answers and by its properties, its vector twins by the law over the whole domain.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <numeric>

#include "buffers/weighting.h"
#include "tests/support/family.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tests/rule_test.cpp"
#include "buffers/foreach_level.h"

#include "compositing/samples-inl.h"

#ifndef OMNAR_TESTS_RULE_TEST_ONCE
#define OMNAR_TESTS_RULE_TEST_ONCE
namespace rule {

using Bytes = std::array<std::uint8_t, 256>;
using Samples = std::array<std::uint16_t, 256>;

/// The twins of one level, on arrays.
struct Twins {
    void (*toward)(const Bytes& old, const Bytes& target, unsigned weight, Bytes& moved);
    void (*towardBelow255)(const Bytes& old, const Bytes& target, unsigned weight, Bytes& moved);
    void (*towardWide)(const Bytes& old, const Bytes& target, unsigned weight, Bytes& moved);
    void (*scaled)(const Bytes& alpha, unsigned opacity, Bytes& weight);
    void (*scaledBelow255)(const Bytes& alpha, unsigned opacity, Bytes& weight);
    std::uint16_t (*dividedBy255)(std::uint16_t v);
    void (*towardSamples)(std::uint16_t old, std::uint16_t firstTarget, unsigned weight, Samples& moved);
};

}  // namespace rule
#endif

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

void towardBytes(const rule::Bytes& old, const rule::Bytes& target, unsigned weight, rule::Bytes& moved) {
    static constexpr auto even = doubling(0xFFFFFFFF, 0);
    static constexpr auto odd = doubling(0xFFFFFFFF, 1);
    const D8 d;
    for (size_t i = 0; i < old.size(); i += hn::MaxLanes(d)) {
        const V8 result = toward(hn::LoadU(d, &old[i]), hn::LoadU(d, &target[i]), factorOf(weight), factorOf(weight),
                                 partOf(even, 0), partOf(odd, 0));
        hn::StoreU(result, d, &moved[i]);
    }
}

void towardBelow255Bytes(const rule::Bytes& old, const rule::Bytes& target, unsigned weight, rule::Bytes& moved) {
    const D8 d;
    const V16 by = multiplierOf(weight);
    for (size_t i = 0; i < old.size(); i += hn::MaxLanes(d)) {
        hn::StoreU(towardBelow255(hn::LoadU(d, &old[i]), hn::LoadU(d, &target[i]), by, by, 0xFFFFFFFF), d, &moved[i]);
    }
}

void towardWideBytes(const rule::Bytes& old, const rule::Bytes& target, unsigned weight, rule::Bytes& moved) {
    const D8 d;
    const V16 weights = hn::Set(D16(), static_cast<uint16_t>(weight));
    for (size_t i = 0; i < old.size(); i += hn::MaxLanes(d)) {
        hn::StoreU(towardWide(hn::LoadU(d, &old[i]), hn::LoadU(d, &target[i]), weights, everywhere(0xFFFFFFFF)), d,
                   &moved[i]);
    }
}

void scaledWeights(const rule::Bytes& alpha, unsigned opacity, rule::Bytes& weight) {
    alignas(64) uint16_t factors[hn::MaxLanes(D16())];
    for (size_t i = 0; i < alpha.size(); ++i) {
        const V16 doubled = hn::Set(D16(), static_cast<uint16_t>(alpha[i] * 257));
        hn::StoreU(factorOfHigh(hn::MulHigh(doubled, factorOf(opacity))), D16(), factors);
        EXPECT_EQ(factors[0] & 255, 1);
        weight[i] = static_cast<uint8_t>(factors[0] >> 8);
    }
}

void weightsBelow255(const rule::Bytes& alpha, unsigned opacity, rule::Bytes& weight) {
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

void towardSamples(uint16_t old, uint16_t firstTarget, unsigned weight, rule::Samples& moved) {
    const D16 d;
    const V16 weights = hn::Set(d, static_cast<uint16_t>(weight));
    for (size_t i = 0; i < moved.size(); i += hn::MaxLanes(d)) {
        const V16 targets = hn::Iota(d, static_cast<uint16_t>(firstTarget + i));
        hn::StoreU(toward(hn::Set(d, old), targets, weights), d, &moved[i]);
    }
}

extern constexpr rule::Twins twins{towardBytes, towardBelow255Bytes, towardWideBytes, scaledWeights, weightsBelow255,
                                   quotient,    towardSamples};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {
namespace {

constexpr rule::Twins twins{};  // the scalar level needs no twin
constexpr Levels<rule::Twins> levels{&twins OMNAR_VECTOR_TABLES(twins)};

TEST(Rule, KnownAnswers) {
    EXPECT_EQ(toward(200, 0, 1), 200);  // a quotient of -200/255 is cut to 0
    EXPECT_EQ(toward(0, 200, 128), 100);
    EXPECT_EQ(toward(200, 0, 128), 100);  // and -100.39 to -100
    EXPECT_EQ(scaled(255, 255), 255U);
    EXPECT_EQ(scaled(128, 1), 0U);
    EXPECT_EQ(colorToward(0x80000000U, 0x00FFFFFFU, 255), 0x80FFFFFFU);
}

TEST(Rule, StepsStayBetweenOldAndTarget) {
    for (int old = 0; old < 256; ++old) {
        for (int target = 0; target < 256; ++target) {
            ASSERT_EQ(toward(old, target, 0), old);
            ASSERT_EQ(toward(old, target, 255), target);
            for (int weight = 1; weight < 255; ++weight) {
                const int way = std::abs(target - old) - std::abs(toward(old, target, weight) - old);
                ASSERT_GE(way, 0);
                ASSERT_LE(std::abs(toward(old, target, weight) - old), std::abs(toward(old, target, weight + 1) - old));
            }
        }
    }
}

class RuleTwins : public testing::TestWithParam<Level> {
protected:
    void SetUp() override {
        if (!level_.runs()) GTEST_SKIP() << "this processor or build lacks the level " << name(GetParam());
        for (std::size_t i = 0; i < targets_.size(); ++i) targets_[i] = static_cast<std::uint8_t>(i);
    }

    void walk(void (*twin)(const rule::Bytes&, const rule::Bytes&, unsigned, rule::Bytes&), unsigned weights) const {
        rule::Bytes old, moved;
        for (unsigned weight = 0; weight < weights; ++weight) {
            for (unsigned from = 0; from < 256; ++from) {
                old.fill(static_cast<std::uint8_t>(from));
                twin(old, targets_, weight, moved);
                for (std::size_t to = 0; to < 256; ++to) {
                    const int law = toward(static_cast<int>(from), static_cast<int>(to), static_cast<int>(weight));
                    ASSERT_EQ(moved[to], law & 255) << from << " toward " << to << " by " << weight;
                }
            }
        }
    }

    rule::Bytes targets_;

private:
    support::ForcedLevel level_{GetParam()};
};

TEST_P(RuleTwins, EqualTheLawOverTheWholeDomain) {
    const rule::Twins& twin = levels.current();
    walk(twin.toward, 256);
    walk(twin.towardBelow255, 255);
    walk(twin.towardWide, 258);
    for (unsigned opacity = 0; opacity < 256; ++opacity) {
        rule::Bytes weights;
        twin.scaled(targets_, opacity, weights);
        for (unsigned alpha = 0; alpha < 256; ++alpha) ASSERT_EQ(weights[alpha], scaled(alpha, opacity));
        if (opacity == 255) continue;
        twin.scaledBelow255(targets_, opacity, weights);
        for (unsigned alpha = 0; alpha < 256; ++alpha) ASSERT_EQ(weights[alpha], scaled(alpha, opacity));
    }
    for (unsigned v = 0; v < 65536; ++v) ASSERT_EQ(twin.dividedBy255(static_cast<std::uint16_t>(v)), v / 255);
}

// All distances by all weights; the sign only chooses between adding and subtracting.
TEST_P(RuleTwins, EqualTheLawFor16BitSamples) {
    rule::Samples moved;
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

INSTANTIATE_TEST_SUITE_P(Levels, RuleTwins, testing::ValuesIn(allLevels.begin() + 1, allLevels.end()),
                         [](const auto& level) { return std::string(name(level.param)); });

}  // namespace
}  // namespace omnar
#endif
