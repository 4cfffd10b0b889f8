// SPDX-License-Identifier: MIT

// Integers, against models in 64 bits, the standard library and Pascal's triangle.
#include <cstdint>
#include <numeric>

#include "tests/support/calls.h"

namespace {

std::int64_t wrap(std::int64_t a) { return static_cast<std::int32_t>(a); }

std::int64_t signedGcd(std::int64_t a, std::int64_t b) { return a % b == 0 ? b : signedGcd(b, a % b); }

/// The second number, or 1 for a pair that breaches a precondition.
int validSecond(int a, int b) {
    const bool isBreach = b == 0 || (a == INT_MIN && b == -1) || (a == -1 && b == INT_MIN);
    return isBreach || (wrap(std::int64_t{a} * b) == INT_MIN && signedGcd(a, b) == -1) ? 1 : b;
}

TEST(Integers, EqualTheirDefinitions) {
    using support::expectChecksum;
    expectChecksum(
        "ggT", +[](int a, int b) { return ggT(a, validSecond(a, b)); }, 9147247330773458452U,
        [](int a, int b) {
            const std::int64_t divisor = signedGcd(a, validSecond(a, b));
            EXPECT_EQ(std::abs(divisor), std::gcd(std::int64_t{a}, std::int64_t{validSecond(a, b)}));
            return int(divisor);
        });
    expectChecksum(
        "kgV", +[](int a, int b) { return kgV(a, validSecond(a, b)); }, 4674811658252905498U,
        [](int a, int b) { return int(wrap(std::int64_t{a} * validSecond(a, b)) / signedGcd(a, validSecond(a, b))); });
    expectChecksum(
        "Fakultaet", +[](unsigned n) { return Fakultaet(n % 50); }, 1110944794974218008U,
        [](unsigned n) {
            std::uint32_t factorial = 1;
            for (n %= 50; n > 0; --n) factorial *= n;
            return factorial;
        });
    expectChecksum(
        "NUeberK", +[](unsigned n, unsigned k) { return NUeberK(n - 1, k % 34); }, 11982915487673231619U,
        [](unsigned n, unsigned k) {
            std::uint32_t numerator = 1, denominator = 1;
            for (std::uint64_t i = 1; n - 1 > k % 34 && i <= std::min<std::uint64_t>(k % 34, n - 1 - k % 34); ++i) {
                numerator *= static_cast<std::uint32_t>(n - i);
                denominator *= static_cast<std::uint32_t>(i);
            }
            return numerator / denominator;
        });
}

TEST(Integers, KnownAnswers) {
    EXPECT_EQ(ggT(12, -18), -6);
    EXPECT_EQ(ggT(INT_MIN, INT_MIN), INT_MIN);
    EXPECT_EQ(kgV(640, 480), 1920) << "the common repeat of two tiles";
    EXPECT_EQ(kgV(65536, 65536), 0) << "the product wraps";
    EXPECT_EQ(Fakultaet(13), 1932053504U);
    EXPECT_EQ(Fakultaet(UINT_MAX - 1), 0U);
    EXPECT_EQ(NUeberK(3, 5), 1U);
    EXPECT_EQ(NUeberK(UINT_MAX, UINT_MAX), 1U);
    EXPECT_EQ(NUeberK(65536, 2), 2147450880U);
    EXPECT_EQ(NUeberK(65537, 2), 32768U) << "65537 * 65536 is 65536 modulo 2^32";
    for (unsigned n = 1; n < 18; ++n) {  // Pascal's rule
        for (unsigned k = 1; k < n; ++k) EXPECT_EQ(NUeberK(n, k), NUeberK(n - 1, k - 1) + NUeberK(n - 1, k)) << n;
    }
}

}  // namespace
