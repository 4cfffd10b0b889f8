// Whole numbers, against 64 bits, the standard library and the triangle of binomial coefficients.
#include <cstdint>
#include <numeric>

#include "tests/support/calls.h"

namespace {

using support::Input;

constexpr std::uint64_t seed = 9;

std::int64_t wrap(std::int64_t a) { return static_cast<std::int32_t>(a); }

/// Euclid's steps from the last to the first.
std::int64_t lastDivisor(std::int64_t a, std::int64_t b) { return a % b == 0 ? b : lastDivisor(b, a % b); }

TEST(Divisors, AreThoseOfTheStandardLibraryWithTheSignOfTheLast) {
    EXPECT_EQ(ggT(12, -18), -6);
    EXPECT_EQ(ggT(INT_MIN, INT_MIN), INT_MIN);
    EXPECT_EQ(kgV(640, 480), 1920) << "the common repeat of two tiles";
    EXPECT_EQ(kgV(65536, 65536), 0) << "the product wraps";

    Input random(seed);
    for (int i = 0; i < 50000; ++i) {
        const std::int64_t a = random.position(), b = random.position();
        if (b == 0 || (a == INT_MIN && b == -1) || (a == -1 && b == INT_MIN)) continue;
        SCOPED_TRACE(testing::Message() << "seed " << seed << ": " << a << ", " << b);
        const std::int64_t divisor = lastDivisor(a, b);
        ASSERT_EQ(std::abs(divisor), std::gcd(a, b));
        ASSERT_EQ(ggT(int(a), int(b)), divisor);
        if (wrap(a * b) == INT_MIN && divisor == -1) continue;
        ASSERT_EQ(kgV(int(a), int(b)), wrap(a * b) / divisor);
    }
}

TEST(Fakultaet, IsTheFactorialModulo32Bits) {
    std::uint64_t factorial = 1;
    for (unsigned n = 0; n < 100; ++n) {
        factorial = static_cast<std::uint32_t>(factorial * std::max(n, 1U));
        EXPECT_EQ(Fakultaet(n), factorial) << n;
    }
    EXPECT_EQ(Fakultaet(13), 1932053504U);
    EXPECT_EQ(Fakultaet(UINT_MAX - 1), 0U);
}

TEST(NUeberK, IsTheTriangleOfBinomialCoefficients) {
    std::vector<std::uint64_t> row{1};
    for (unsigned n = 0; n < 100; ++n) {
        double numerator = 1;
        for (unsigned k = 0; k <= n / 2 && numerator <= UINT_MAX; numerator *= n - k++) {
            EXPECT_EQ(NUeberK(n, k), row[k]) << n << " over " << k;
            EXPECT_EQ(NUeberK(n, n - k), row[k]) << n << " over " << n - k;
        }
        row.insert(row.begin(), 0), row.push_back(0);
        std::transform(row.begin() + 1, row.end(), row.begin(), row.begin(), std::plus<>());
        row.pop_back();
    }
    EXPECT_EQ(NUeberK(3, 5), 1U);
    EXPECT_EQ(NUeberK(UINT_MAX, UINT_MAX), 1U);
    EXPECT_EQ(NUeberK(65536, 2), 2147450880U);
    EXPECT_EQ(NUeberK(65537, 2), 32768U) << "65537 * 65536 is 65536 modulo 2^32";
    EXPECT_EQ(NUeberK(4000000000U, 3999999999U), 4000000000U);
}

int sumDivisor(int a, unsigned b) { return ggT(a, int((b | 3) - 1)); }
int sumMultiple(int a, unsigned b) { return kgV(a, int((b | 3) - 1)); }
unsigned sumBinomial(unsigned n, unsigned k) {
    return NUeberK(n - 1, n % 2 == 0 ? k % 34 : n - 1 - std::min(n - 1, k % 34));
}

TEST(Integers, HaveTheCommittedChecksums) {
    using support::expectChecksum;
    expectChecksum("ggT", sumDivisor, 4485911713722389105U);
    expectChecksum("kgV", sumMultiple, 5181543839311868849U);
    expectChecksum("Fakultaet", Fakultaet, 2411095320807709300U);
    expectChecksum("NUeberK", sumBinomial, 11982915487673231619U);
}

#if defined(OMNAR_CHECKED)
TEST(Integers, ReportBrokenPreconditions) {
    support::expectReports({
        {"ggT", "b", "0", [] { ggT(7, 0); }},
        {"ggT", "a", "-2147483648", [] { ggT(INT_MIN, -1); }},
        {"ggT", "b", "-2147483648", [] { ggT(-1, INT_MIN); }},
        {"kgV", "a", "-2147483648", [] { kgV(INT_MIN, -3); }},
        {"Fakultaet", "n", "4294967295", [] { Fakultaet(UINT_MAX); }},
        {"NUeberK", "n", "4294967295", [] { NUeberK(UINT_MAX, 1); }},
        {"NUeberK", "k", "34", [] { NUeberK(68, 34); }},
    });
}
#endif

}  // namespace
