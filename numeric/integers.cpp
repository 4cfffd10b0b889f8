// SPDX-License-Identifier: MIT

// Common divisors and multiples, factorials and binomial coefficients in 32 bits.

#include <algorithm>
#include <climits>
#include <numeric>

#include "buffers/host/contract.h"
#include "numeric/integers.h"

using namespace omnar;

namespace {

/// Euclid's algorithm with truncated division. A remainder has the sign of its dividend, so the result may be negative.
/// std::gcd is faster, but agrees only where no number is negative.
int signedGcd(int dividend, int divisor) {
    if (dividend >= 0 && divisor > 0) return std::gcd(dividend, divisor);
    while (const int remainder = dividend % divisor) {
        dividend = divisor;
        divisor = remainder;
    }
    return divisor;
}

/// first * ... * last modulo 2^32; 1 for an empty range. Stops at 0, which the product of any 34 consecutive numbers
/// is.
unsigned int product(unsigned int first, unsigned int last) {
    unsigned int result = 1;
    for (unsigned int factor = first; factor <= last && result != 0; ++factor) result *= factor;
    return result;
}

}  // namespace

/// Checks that no step of signedGcd() divides by 0 or -2147483648 by -1. Only the first two steps can do the latter.
#define OMNAR_EXPECT_DIVISOR()                                                    \
    OMNAR_EXPECT_AS(b, b != 0, "not 0");                                          \
    OMNAR_EXPECT_AS(a, a != INT_MIN || b != -1, "not -2147483648 where b is -1"); \
    OMNAR_EXPECT_AS(b, b != INT_MIN || a != -1, "not -2147483648 where a is -1")

int ggT(int a, int b) {
    OMNAR_EXPECT_DIVISOR();
    return signedGcd(a, b);
}

int kgV(int a, int b) {
    OMNAR_EXPECT_DIVISOR();
    const int multiple = (Wrapping(a) * b).value();
    const int divisor = signedGcd(a, b);
    OMNAR_EXPECT_AS(a, canDivide(multiple, divisor), "times b not -2147483648, wrapped, where ggT(a, b) is -1");
    return multiple / divisor;
}

unsigned int Fakultaet(unsigned int n) {
    OMNAR_EXPECT_AS(n, n != UINT_MAX, "not 4294967295");
    return product(2, n);
}

unsigned int NUeberK(unsigned int n, unsigned int k) {
    if (n <= k) return 1;
    const unsigned int smallerK = std::min(k, n - k);  // n over k equals n over n - k
    OMNAR_EXPECT_AS(n, n != UINT_MAX, "not 4294967295");
    OMNAR_EXPECT_AS(k, smallerK < 34, "below 34, unless n - k is");
    return product(n - smallerK + 1, n) / product(2, smallerK);
}
