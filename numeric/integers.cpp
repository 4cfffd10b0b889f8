// SPDX-License-Identifier: MIT

// Whole-number arithmetic within the limits of 32 bits.

#include <algorithm>
#include <climits>
#include <numeric>

#include "buffers/host/contract.h"
#include "numeric/integers.h"

using namespace omnar;

namespace {

/// Euclid's algorithm. A remainder has the sign of what was divided, so the result may be negative; only numbers that
/// are not are left to the standard library, which is faster.
int lastDivisor(int dividend, int divisor) {
    if (dividend >= 0 && divisor > 0) return std::gcd(dividend, divisor);
    while (const int rest = dividend % divisor) {
        dividend = divisor;
        divisor = rest;
    }
    return divisor;
}

/// first * ... * last; 1 if there are none. A product that has wrapped around to 0 stays there, and that of 34 or more
/// numbers in a row always has: the end is near, however far away `last` is.
unsigned int product(unsigned int first, unsigned int last) {
    unsigned int result = 1;
    for (unsigned int factor = first; factor <= last && result != 0; ++factor) result *= factor;
    return result;
}

}  // namespace

/// Checks that no step divides by 0, nor -2147483648 by -1: that comes up at once, or in the second step.
#define OMNAR_EXPECT_DIVISOR()                                                    \
    OMNAR_EXPECT_AS(b, b != 0, "not 0");                                          \
    OMNAR_EXPECT_AS(a, a != INT_MIN || b != -1, "not -2147483648 where b is -1"); \
    OMNAR_EXPECT_AS(b, b != INT_MIN || a != -1, "not -2147483648 where a is -1")

int ggT(int a, int b) {
    OMNAR_EXPECT_DIVISOR();
    return lastDivisor(a, b);
}

int kgV(int a, int b) {
    OMNAR_EXPECT_DIVISOR();
    const int wrapped = (Wrapping(a) * b).value();
    const int divisor = lastDivisor(a, b);
    OMNAR_EXPECT_AS(a, divisible(wrapped, divisor), "times b not -2147483648, wrapped, where ggT(a, b) is -1");
    return wrapped / divisor;
}

unsigned int Fakultaet(unsigned int n) {
    OMNAR_EXPECT_AS(n, n != UINT_MAX, "not 4294967295");
    return product(2, n);
}

unsigned int NUeberK(unsigned int n, unsigned int k) {
    if (n <= k) return 1;  // for n < k, too
    const unsigned int fewer = std::min(k, n - k);
    OMNAR_EXPECT_AS(n, n != UINT_MAX, "not 4294967295");
    OMNAR_EXPECT_AS(k, fewer < 34, "below 34, unless n - k is");
    return product(n - fewer + 1, n) / product(2, fewer);
}
